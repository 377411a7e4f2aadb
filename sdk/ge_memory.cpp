#include "c4d_os.h"

#include <cstdio>
#include <cstdlib>

namespace sdk {

void* Alloc(VLONG size, LONG line, const CHAR* file) {
  return C4DOS.general->Alloc(size, line, file);
}
void* AllocNC(VLONG size, LONG line, const CHAR* file) {
  return C4DOS.general->AllocNC(size, line, file);
}
void* ReallocNC(void* block, VLONG size, LONG line, const CHAR* file) {
  return C4DOS.general->ReallocNC(block, size, line, file);
}
void Free(void* block) {
  if (block) C4DOS.general->Free(block);
}
void EndMisuse(const CHAR* what, LONG line, const CHAR* file) {
  std::fprintf(stderr, "module misbehaves: %s (%s, line %d)\n", what, file, (int)line);
  std::abort();
}
void ReportRefusedGrow(LONG line, const CHAR* file) {
  C4DOS.general->Assert("array could not grow", line, file);
}

} // namespace sdk

void* operator new(std::size_t size, const sdk::HostMemory& where) noexcept {
  return sdk::AllocNC((VLONG)size, where.line, where.file);
}
void operator delete(void* block, const sdk::HostMemory&) noexcept {
  sdk::Free(block);
}
