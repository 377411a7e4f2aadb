#include "host/geometry/clone_tag.h"

#include "host/nodes/node.h"

namespace host {

namespace {

constexpr LONG kMostClones = 10000000;

class CloneTag : public Tag {
public:
  CloneTag() : Tag(ID_MOTAGDATA) {}
  CloneData clones;

  bool OwnMessage(LONG number, void* payload) override {
    GetMoDataMessage* asked = (GetMoDataMessage*)payload;
    if (number != MSG_GET_MODATA || !asked) return false;
    // The tag keeps its data: the asker does not own it.
    asked->modata = asked->index == 0 && !clones.matrices.empty() ? Api(&clones) : nullptr;
    asked->user_owned = FALSE;
    return true;
  }

  bool HasOwnData() const override { return true; }

  bool WriteOwn(HyperFile* hf) override {
    const LONG matrixCount = (LONG)clones.matrices.size(), flagCount = (LONG)clones.flags.size();
    if (!hf->WriteLong(matrixCount) || !hf->WriteLong(flagCount)) return false;
    return (matrixCount == 0 || hf->WriteArray(clones.matrices.data(), HYPERFILEARRAY_LREAL, sizeof(LReal),
                                               matrixCount * kReals)) &&
           (flagCount == 0 ||
            hf->WriteArray(clones.flags.data(), HYPERFILEARRAY_LONG, sizeof(LONG), flagCount));
  }

  bool ReadOwn(HyperFile* hf, LONG) override {
    LONG matrixCount = 0, flagCount = 0;
    if (!hf->ReadLong(&matrixCount) || !hf->ReadLong(&flagCount)) return false;
    if (matrixCount < 0 || matrixCount > kMostClones || flagCount < 0 || flagCount > kMostClones)
      return false;
    clones.matrices.assign((std::size_t)matrixCount, Matrix());
    clones.flags.assign((std::size_t)flagCount, 0);
    return (matrixCount == 0 || hf->ReadArray(clones.matrices.data(), HYPERFILEARRAY_LREAL, sizeof(LReal),
                                              matrixCount * kReals)) &&
           (flagCount == 0 ||
            hf->ReadArray(clones.flags.data(), HYPERFILEARRAY_LONG, sizeof(LONG), flagCount));
  }

  bool CopyOwn(Node& dest) const override {
    ((CloneTag&)dest).clones = clones;
    return true;
  }
  void SwapOwn(Node& other) override { std::swap(clones, ((CloneTag&)other).clones); }

private:
  static constexpr LONG kReals = sizeof(Matrix) / sizeof(LReal);
};

CloneTag* FindCloneTag(BaseObject* op) {
  return op ? (CloneTag*)Impl(op->GetTag(ID_MOTAGDATA)) : nullptr;
}

} // namespace

Node* MakeCloneTag(LONG) {
  return new CloneTag;
}

bool SetClones(BaseObject* carrier, const std::vector<Matrix>& matrices, const std::vector<LONG>& flags) {
  CloneTag* tag = FindCloneTag(carrier);
  if (!tag) tag = (CloneTag*)Impl(carrier->MakeTag(ID_MOTAGDATA));
  if (!tag) return false;
  tag->clones.matrices = matrices;
  tag->clones.flags = flags;
  ++tag->dataDirty;
  return true;
}

std::vector<Matrix> ObjectInstances(BaseObject* op) {
  BaseObject* carrier = op;
  const CloneTag* tag = FindCloneTag(op);
  if (!tag || tag->clones.matrices.empty()) {
    carrier = op->GetUp();
    tag = FindCloneTag(carrier);
  }
  if (!tag || tag->clones.matrices.empty()) return {op->GetMg()};
  std::vector<Matrix> globals;
  for (const Matrix& clone : tag->clones.matrices) globals.push_back(carrier->GetMg() * clone);
  return globals;
}

} // namespace host
