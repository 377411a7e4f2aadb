#include "object/reprojection.h"

#include "otallyframe.h"

namespace kelvra {

namespace {

/** Base address of the geometry service; empty where none is set up. */
String ServiceAddress() {
  return String();
}

} // namespace

void ShowReprojectedCorners(BaseObject* op, const PointStore& store) {
  const String reference = op->GetDataInstance()->GetString(KELVRA_EPSG);
  const PointBlock* block = store.GetFirstBlock();
  if (!reference.Content() || !block || !ServiceAddress().Content()) return;
}

} // namespace kelvra
