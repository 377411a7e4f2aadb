// Memory that the point library falls back on, so that no refused request interrupts it. An installed library
// knows nothing of it and throws. Only for a build with LASlib.
#pragma once

#if KELVRA_LASLIB_BUILT
#include "laslib_memory.h"
#endif

#include <new>

namespace kelvra {

class LibraryReserve {
public:
  /** To be called whenever the library returned: throws std::bad_alloc if it ran out of memory. */
  void Check() const {
#if KELVRA_LASLIB_BUILT
    if (reserve_.Spent()) throw std::bad_alloc();
#endif
  }

#if KELVRA_LASLIB_BUILT
private:
  kelvra_las::Reserve reserve_;
#endif
};

} // namespace kelvra
