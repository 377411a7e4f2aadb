// Stands in for R's header of this name: where the library prints, its text goes to messages.cpp.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif
void REprintf(const char* format, ...);
void Rprintf(const char* format, ...);
#ifdef __cplusplus
}
#endif
