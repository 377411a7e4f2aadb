// Environment variables of this process, the same way on every system.
#pragma once

#include <cstdlib>

/** NULL takes the variable away. */
inline void SetVariable(const char* name, const char* value) {
#ifdef _WIN32
  _putenv_s(name, value ? value : "");
#else
  value ? ::setenv(name, value, 1) : ::unsetenv(name);
#endif
}
