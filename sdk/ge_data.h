// Values, containers and description ids.
#pragma once

#include "ge_filename.h"
#include "ge_time.h"
#include "ge_vector.h"

class BaseContainer;
class BaseDocument;
class BaseList2D;
class BaseObject;
class C4DAtomGoal;

enum {
  DA_NIL = 0,
  DA_VOID = 14,
  DA_LONG = 15,
  DA_REAL = 19,
  DA_TIME = 22,
  DA_VECTOR = 23,
  DA_MATRIX = 25,
  DA_LLONG = 26,
  DA_BYTEARRAY = 128,
  DA_STRING = 130,
  DA_FILENAME = 131,
  DA_CONTAINER = 132,
  DA_ALIASLINK = 133,
  DA_CUSTOMDATATYPE = 1000000
};

enum VOIDVALUE {
  VOIDVALUE_0 // ours
};
enum LLONGVALUE {
  LLONGVALUE_0 // ours
};

/** Link to a node that outlives the node: it resolves to NULL once the node is gone. */
class BaseLink {
public:
  BaseLink() {}
  static BaseLink* Alloc() { return gNew BaseLink; }
  static void Free(BaseLink*& link) { gDelete(link); }
  BaseList2D* GetLink(const BaseDocument* doc, LONG instanceof = 0) const;
  void SetLink(C4DAtomGoal* target);

  /** Number of the node, unique for the life of the process, 0 for none. */
  LULONG target = 0;
};

/**
 * Base of the larger types of values, whose numbers are DA_CUSTOMDATATYPE and above. There are no virtual
 * functions: a value outlives the module that made it.
 */
class CustomDataType {
protected:
  CustomDataType() {}
  ~CustomDataType() {}
};

/** One value of any type. Larger payloads live in host memory; a refused allocation leaves DA_NIL. */
class GeData {
public:
  GeData() {}
  GeData(double n) { SetReal(n); }
  GeData(int n) { SetLong(n); }
  GeData(SReal n) { SetReal(n); }
  GeData(const Vector& v) { SetVector(v); }
  GeData(const Matrix& m) { SetMatrix(m); }
  GeData(const CHAR* s) { SetString(String(s)); }
  GeData(const String& s) { SetString(s); }
  GeData(const Filename& f) { SetFilename(f); }
  GeData(const BaseTime& t) { SetBaseTime(t); }
  GeData(const BaseContainer& bc) { SetContainer(bc); }
  GeData(const BaseLink* link) { SetBaseLink(link); }
  GeData(void* p, VOIDVALUE) { SetVoid(p); }
  GeData(LONG type, const CustomDataType& data) { SetCustomDataType(type, data); }
  GeData(LLONG n, LLONGVALUE) { SetLLong(n); }
  GeData(const GeData& d) { *this = d; }
  GeData(GeData&& d) noexcept { Swap(d); }
  ~GeData() { Free(); }
  GeData& operator=(const GeData& d);
  GeData& operator=(GeData&& d) noexcept {
    Swap(d);
    return *this;
  }
  void Free();

  LONG GetType() const { return type_; }
  Bool GetBool() const { return GetLong() != 0; }
  /** Numbers convert between the numeric types, saturating; other types give the default. */
  LONG GetLong() const;
  LLONG GetLLong() const;
  Real GetReal() const;
  void* GetVoid() const { return type_ == DA_VOID ? value_.pointer : NULL; }
  /** References are valid while the value lives unchanged; another type gives an empty one. */
  const Vector& GetVector() const;
  const Matrix& GetMatrix() const;
  const String& GetString() const;
  const Filename& GetFilename() const;
  const BaseTime& GetTime() const;
  BaseContainer* GetContainer() const;
  BaseLink GetBaseLink() const;
  /** NULL for another type. */
  CustomDataType* GetCustomDataType(LONG type) const;
  BaseList2D* GetLink(const BaseDocument* doc, LONG instanceof = 0) const;

  void SetLong(LONG n);
  void SetLLong(LLONG n);
  void SetReal(Real n);
  void SetVoid(void* p);
  void SetVector(const Vector& v) { SetPayload(DA_VECTOR, v); }
  void SetMatrix(const Matrix& m) { SetPayload(DA_MATRIX, m); }
  void SetString(const String& s) { SetPayload(DA_STRING, s); }
  void SetFilename(const Filename& f) { SetPayload(DA_FILENAME, f); }
  void SetBaseTime(const BaseTime& t) { SetPayload(DA_TIME, t); }
  void SetContainer(const BaseContainer& bc);
  void SetBaseLink(const BaseLink* link);
  /** Takes a copy; unknown types leave DA_NIL. */
  void SetCustomDataType(LONG type, const CustomDataType& data);

  bool operator==(const GeData& d) const;
  bool operator!=(const GeData& d) const { return !(*this == d); }

private:
  template <class T>
  void SetPayload(LONG type, const T& payload) {
    T* copy = gNew T(payload); // before Free: the payload may be our own
    Free();
    if (copy) {
      type_ = type;
      value_.pointer = copy;
    }
  }
  template <class T>
  const T& Payload(LONG type) const;
  void Swap(GeData& d) noexcept {
    std::swap(type_, d.type_);
    std::swap(value_, d.value_);
  }

  LONG type_ = DA_NIL;
  union {
    LONG number;
    Real real;
    void* pointer;
    LLONG wide;
  } value_ = {};
};

/** Values under numeric ids, in order of insertion. */
class BaseContainer {
public:
  BaseContainer() {}
  explicit BaseContainer(LONG id) : id_(id) {}
  BaseContainer(const BaseContainer& bc) { *this = bc; }
  ~BaseContainer() { FlushAll(); }
  BaseContainer& operator=(const BaseContainer& bc);

  LONG GetId() const { return id_; }
  void SetId(LONG id) { id_ = id; }
  void FlushAll();
  /** Grows with every change. */
  ULONG GetDirty() const { return dirty_; }

  LONG GetCount() const { return count_; }
  LONG FindIndex(LONG id, GeData** data = NULL) const;
  LONG GetIndexId(LONG index) const { return index >= 0 && index < count_ ? entries_[index].id : NOTOK; }
  GeData* GetIndexData(LONG index) const {
    return index >= 0 && index < count_ ? &entries_[index].data : NULL;
  }
  const GeData* GetDataPointer(LONG id) const;
  const GeData& GetData(LONG id) const;
  /** NULL when memory is refused; the entry then keeps its old value. */
  GeData* SetData(LONG id, const GeData& data);
  Bool RemoveData(LONG id);
  Bool RemoveIndex(LONG index);
  void MergeContainer(const BaseContainer& src);

  Bool GetBool(LONG id, Bool preset = FALSE) const { return GetLong(id, preset) != 0; }
  LONG GetLong(LONG id, LONG preset = 0) const;
  LLONG GetLLong(LONG id, LLONG preset = 0) const;
  Real GetReal(LONG id, Real preset = 0.0) const;
  void* GetVoid(LONG id, void* preset = NULL) const;
  Vector GetVector(LONG id, const Vector& preset = Vector()) const;
  Matrix GetMatrix(LONG id, const Matrix& preset = Matrix()) const;
  String GetString(LONG id, const String& preset = String()) const;
  Filename GetFilename(LONG id, const Filename& preset = Filename()) const;
  BaseTime GetTime(LONG id, const BaseTime& preset = BaseTime()) const;
  BaseContainer GetContainer(LONG id) const;
  BaseContainer* GetContainerInstance(LONG id) const;
  /** The live value; NULL when there is no entry or one of another type. */
  CustomDataType* GetCustomDataType(LONG id, LONG datatype) const;
  LONG GetType(LONG id) const;
  BaseList2D* GetLink(LONG id, const BaseDocument* doc, LONG instanceof = 0) const;
  BaseObject* GetObjectLink(LONG id, const BaseDocument* doc) const;

  void SetBool(LONG id, Bool b) { SetData(id, GeData(b ? 1 : 0)); }
  void SetLong(LONG id, LONG n) { SetData(id, GeData(n)); }
  void SetLLong(LONG id, LLONG n) { SetData(id, GeData(n, LLONGVALUE_0)); }
  void SetReal(LONG id, Real n) { SetData(id, GeData(n)); }
  void SetVoid(LONG id, void* p) { SetData(id, GeData(p, VOIDVALUE_0)); }
  void SetVector(LONG id, const Vector& v) { SetData(id, GeData(v)); }
  void SetMatrix(LONG id, const Matrix& m) { SetData(id, GeData(m)); }
  void SetString(LONG id, const String& s) { SetData(id, GeData(s)); }
  void SetFilename(LONG id, const Filename& f) { SetData(id, GeData(f)); }
  void SetTime(LONG id, const BaseTime& t) { SetData(id, GeData(t)); }
  void SetContainer(LONG id, const BaseContainer& bc) { SetData(id, GeData(bc)); }
  void SetLink(LONG id, C4DAtomGoal* target);

  bool operator==(const BaseContainer& bc) const;
  bool operator!=(const BaseContainer& bc) const { return !(*this == bc); }

private:
  struct Entry {
    LONG id;
    GeData data;
  };
  Bool Reserve(LONG total);

  Entry* entries_ = NULL;
  LONG count_ = 0, total_ = 0;
  LONG id_ = 0;
  ULONG dirty_ = 0;
};

struct DescLevel {
  LONG id = 0, dtype = 0, creator = 0;
  DescLevel() {}
  DescLevel(LONG i) : id(i) {}
  DescLevel(LONG i, LONG datatype, LONG c) : id(i), dtype(datatype), creator(c) {}
  bool operator==(const DescLevel& d) const { return id == d.id && dtype == d.dtype && creator == d.creator; }
  bool operator!=(const DescLevel& d) const { return !(*this == d); }
};

/** Path to a parameter: its id, then for parts of a value their ids (VECTOR_X...). */
class DescID {
public:
  DescID() {}
  DescID(LONG id) { PushId(DescLevel(id)); }
  DescID(const DescLevel& a) { PushId(a); }
  DescID(const DescLevel& a, const DescLevel& b) {
    PushId(a);
    PushId(b);
  }
  DescID(const DescLevel& a, const DescLevel& b, const DescLevel& c) : DescID(a, b) { PushId(c); }
  void SetId(const DescLevel& level) {
    depth_ = 0;
    PushId(level);
  }
  void PushId(const DescLevel& level) {
    if (depth_ < kMaxDepth) levels_[depth_++] = level;
  }
  void PopId() {
    if (depth_ > 0) --depth_;
  }
  /** A missing level has id 0. */
  const DescLevel& operator[](LONG pos) const {
    static const DescLevel none;
    return pos >= 0 && pos < depth_ ? levels_[pos] : none;
  }
  LONG GetDepth() const { return depth_; }
  /** Compares the ids of the levels only. */
  bool operator==(const DescID& d) const {
    if (depth_ != d.depth_) return false;
    for (LONG i = 0; i < depth_; ++i)
      if (levels_[i].id != d.levels_[i].id) return false;
    return true;
  }
  bool operator!=(const DescID& d) const { return !(*this == d); }

private:
  static const LONG kMaxDepth = 4;
  DescLevel levels_[kMaxDepth];
  LONG depth_ = 0;
};

enum {
  VECTOR_X = 1000,
  VECTOR_Y = 1001, // ours
  VECTOR_Z = 1002, // ours
  ID_USERDATA = 700
};
