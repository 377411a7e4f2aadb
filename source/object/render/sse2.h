// Whether the compiler has the processor's 128-bit registers, as every 64-bit x86 has them.
#pragma once

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define KELVRA_SSE2 1
#endif
