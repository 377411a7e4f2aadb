// Faults that can be made to happen at the n-th call, for tests and for users who want to see a failure path.
#pragma once

#include <atomic>
#include <string>

namespace host {

enum class Fault {
  Allocation,     ///< host memory, any block of a module
  LargeBlock,     ///< host memory, blocks of 1 GiB and more
  Registration,   ///< RegisterPlugin
  VertexBuffer,   ///< GetVertexBuffer
  ProgramFactory, ///< GetFactory
  TemporaryBlock, ///< host memory asked for while a view draws
  SubBuffer,      ///< AllocSubBuffer
  Compile,        ///< CompilePrograms
  FileWrite,      ///< writing to a file, as a full disk does
  FileRename,     ///< GeFRename, as a file that is open elsewhere refuses it
  UserBreak,      ///< TestBreak answers TRUE from then on
  Count
};

/** Counts calls and fails chosen ones. Safe from any thread. */
class Faults {
public:
  /** Fails the n-th call from now (1 = next) and the following ones, `times` in all; -1 = all from then on.
   */
  void FailAt(Fault fault, long long n, long long times = 1);
  void Clear();
  /** Counts one call; true when it must fail. */
  bool Strikes(Fault fault);
  long long Calls(Fault fault) const { return slots_[(int)fault].calls; }
  /** "allocation=3" or "write=2:5" (n, times); false with a line naming what is known. */
  bool Parse(const std::string& text, std::string* error);

private:
  struct Slot {
    std::atomic<long long> calls{0}, first{0}, last{0};
  };
  Slot slots_[(int)Fault::Count];
};

} // namespace host
