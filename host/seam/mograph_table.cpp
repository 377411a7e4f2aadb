// Entries for clone data.
#include "host/geometry/clone_tag.h"
#include "host/seam/os_tables.h"

namespace host {

namespace {

struct MoGraphEntries {
  static constexpr bool kDocumentThread = true;

  static MoData* Alloc() { return Api(new CloneData); }
  static void Free(MoData* data) { delete reinterpret_cast<CloneData*>(data); }
  static LONG GetCount(MoData* data) { return (LONG) reinterpret_cast<CloneData*>(data)->matrices.size(); }
  static void* GetArray(const MoData* data, LONG id, MD_TYPE type, LONG* count) {
    CloneData& clones = *reinterpret_cast<CloneData*>(const_cast<MoData*>(data));
    *count = 0;
    if (id == MODATA_MATRIX && (type == MD_NONE || type == MD_MATRIX)) return Content(clones.matrices, count);
    if (id == MODATA_FLAGS && (type == MD_NONE || type == MD_LONG)) return Content(clones.flags, count);
    return nullptr;
  }

private:
  template <class T>
  static void* Content(std::vector<T>& array, LONG* count) {
    *count = (LONG)array.size();
    return array.empty() ? nullptr : array.data();
  }
};

} // namespace

HOST_BIND(MoGraph, MoGraphEntries)

} // namespace host
