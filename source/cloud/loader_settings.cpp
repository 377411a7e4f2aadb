#include "cloud/loader_settings.h"

namespace kelvra {

namespace {

constexpr LONG kVersion = 1;

} // namespace

Bool LoaderSettings::Write(HyperFile* hf) const {
  return hf->WriteLong(kVersion) && hf->WriteString(name) && hf->WriteLVector(boxMin) &&
         hf->WriteLVector(boxMax) && hf->WriteLong(reader.kind) && hf->WriteLong(reader.everyNth) &&
         hf->WriteLong(reader.budget) && hf->WriteLong(reader.colorMultiplier) &&
         hf->WriteLLong(counts.read) && hf->WriteLLong(counts.kept) && hf->WriteLLong(counts.rejected) &&
         hf->WriteLLong(counts.dropped);
}

Bool LoaderSettings::Read(HyperFile* hf) {
  LONG version = 0;
  if (!hf->ReadLong(&version)) return FALSE;
  if (version < 1 || version > kVersion) {
    GePrint("the scene has loader settings of version " + LongToString(version) + ", expected 1 to " +
            LongToString(kVersion));
    return FALSE;
  }
  return hf->ReadString(&name) && hf->ReadLVector(&boxMin) && hf->ReadLVector(&boxMax) &&
         hf->ReadLong(&reader.kind) && hf->ReadLong(&reader.everyNth) && hf->ReadLong(&reader.budget) &&
         hf->ReadLong(&reader.colorMultiplier) && hf->ReadLLong(&counts.read) &&
         hf->ReadLLong(&counts.kept) && hf->ReadLLong(&counts.rejected) && hf->ReadLLong(&counts.dropped);
}

} // namespace kelvra
