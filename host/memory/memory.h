// Memory that crosses the boundary between host and modules. Any thread.
#pragma once

#include "c4d.h"

#include <string>
#include <vector>

namespace host {

class Faults;

/** Blocks of this size and more are address space that costs memory only where it is touched. */
constexpr VLONG kLargeBlock = (VLONG)1 << 30;
/** Nothing larger is ever handed out. */
constexpr VLONG kLargestBlock = (VLONG)1 << 40;

namespace memory {

/** NULL when the size is below 1 or above the largest, when a fault strikes, or when the system refuses. */
void* Allocate(VLONG size, bool clear, LONG line, const CHAR* file);
/** As sdk/tables/general.inc says; a foreign block is reported and refused. */
void* Reallocate(void* block, VLONG size, LONG line, const CHAR* file);
/** Reports an address that is not a live block. NULL is allowed. */
void Free(void* block);

/**
 * From kCheckedBlock on, a block that is larger than what the machine has free is refused, even where its
 * pages would cost nothing before they are touched. Off until asked for.
 */
void RefuseBeyondFree(bool refuse);
constexpr VLONG kCheckedBlock = (VLONG)16 << 20;
/** The last block refused so: its size, and what was free. Zeros without one. */
struct Shortage {
  LLONG wanted = 0, free = 0;
};
Shortage LastShortage();

/** How many requests were refused so far, whatever the reason. */
LLONG RefusedRequests();

/** Injected refusals; NULL for none. */
void SetFaults(Faults* faults);

LLONG LiveBlocks();
LLONG LiveBytes();

/** Blocks that module code asked for at one place and nobody has freed. */
struct Survivor {
  std::string place; ///< file:line
  LLONG blocks = 0, bytes = 0;
};
std::vector<Survivor> ModuleSurvivors();
/** The names of source files belong to the modules: call this before one is unloaded. Survivors keep their
 * names. */
void ForgetSites();

/** Marks what is asked for on this thread as temporary blocks of drawing. */
class DrawScope {
public:
  DrawScope();
  ~DrawScope();

private:
  bool previous_;
};

} // namespace memory
} // namespace host
