// Two small plug-ins with data of their own, registered as a module would.
#pragma once

#include "host/base/text.h"
#include "support/common.h"

constexpr LONG kPayloadObject = 1099001, kPayloadPost = 1099002;

/** What the next Read or Write does besides its work. */
enum class Twist {
  None,
  RefuseWrite,
  IgnoreWriteError,
  LeaveChunkOpen,
  EndForeignChunk,
  RefuseRead,
  ReadTooMuch,
  ReadLess
};
inline Twist twist = Twist::None;

class Payload : public ObjectData {
public:
  static NodeData* Alloc() { return gNew Payload; }

  LONG number = 0;
  String text;
  std::vector<SReal> reals;
  BaseContainer extra;
  LONG levelRead = -1;

  Bool Init(GeListNode* node) override {
    ((BaseList2D*)node)->GetDataInstance()->SetReal(1000, 0.5);
    return TRUE;
  }
  Bool Write(GeListNode*, HyperFile* hf) override {
    if (twist == Twist::RefuseWrite) return FALSE;
    if (twist == Twist::EndForeignChunk) hf->WriteChunkEnd();
    if (twist == Twist::LeaveChunkOpen) hf->WriteChunkStart(5, 0);
    if (twist == Twist::IgnoreWriteError) hf->WriteArray(nullptr, HYPERFILEARRAY_LONG, 4, 3);
    return hf->WriteLong(number) && hf->WriteString(text) && hf->WriteLong((LONG)reals.size()) &&
           hf->WriteArray(reals.data(), HYPERFILEARRAY_SREAL, sizeof(SReal), (LONG)reals.size()) &&
           hf->WriteChunkStart(7, 2) && hf->WriteContainer(extra) && hf->WriteChunkEnd();
  }
  Bool Read(GeListNode*, HyperFile* hf, LONG level) override {
    LONG count = 0, id = 0;
    levelRead = level;
    if (twist == Twist::RefuseRead) return FALSE;
    if (!hf->ReadLong(&number) || !hf->ReadString(&text) || !hf->ReadLong(&count)) return FALSE;
    if (twist == Twist::ReadLess) return TRUE;
    if (count < 0 || count > 1000000) return FALSE;
    reals.resize((std::size_t)count);
    if (!hf->ReadArray(reals.data(), HYPERFILEARRAY_SREAL, sizeof(SReal), count)) return FALSE;
    if (!hf->ReadChunkStart(&id, &level) || !hf->ReadContainer(&extra, TRUE) || !hf->ReadChunkEnd())
      return FALSE;
    return twist != Twist::ReadTooMuch || hf->ReadLong(&count);
  }
};

class PayloadPost : public VideoPostData {
public:
  static NodeData* Alloc() { return gNew PayloadPost; }
  LONG number = 0;
  Bool Write(GeListNode*, HyperFile* hf) override { return hf->WriteLong(number); }
  Bool Read(GeListNode*, HyperFile* hf, LONG) override { return hf->ReadLong(&number); }
};

inline Bool RegisterPayloads() {
  return RegisterObjectPlugin(kPayloadObject, "Payload", OBJECT_GENERATOR, Payload::Alloc, String(), nullptr,
                              3) &&
         RegisterVideoPostPlugin(kPayloadPost, "Payload Post", 0, PayloadPost::Alloc, String(), 1, 0);
}

inline Payload& PayloadOf(BaseObject* op) {
  return *(Payload*)op->GetNodeData();
}

inline std::string Text(const String& s) {
  return host::Utf8(s);
}
