// The module's side of the fence: every call from the host into plug-in code runs through here, so that no
// exception crosses the seam.
// ours: this file
#pragma once

#include "c4d_os.h"

#include <exception>

namespace sdk {

/** Remembers the plug-in's file; its folder holds the resources. */
void SetPluginFile(const Filename& file);

/** What the host gets in place of a result when the plug-in threw. */
template <class R>
inline R Failure() {
  return R();
}
template <>
inline RENDERRESULT Failure() {
  return RENDERRESULT_OUTOFMEMORY;
}
template <>
inline INITRENDERRESULT Failure() {
  return INITRENDERRESULT_OUTOFMEMORY;
}

/** Off, an exception that reaches the seam ends the program: tests that the plug-in has a fence of its own.
 */
inline bool fenceOn = true;

/** Runs work and reports an exception to the host under the name given. */
template <class Work>
auto Fence(const char* where, Work work) noexcept -> decltype(work()) {
  if (!fenceOn) return work();
  try {
    return work();
  } catch (const std::exception& e) {
    C4DOS.general->ReportException(where, e.what());
  } catch (...) {
    C4DOS.general->ReportException(where, "unknown exception");
  }
  return Failure<decltype(work())>();
}

/** Plain function that calls a virtual of the plug-in behind the fence. */
template <auto Method>
struct Thunk;
template <class R, class C, class... A, R (C::*Method)(A...)>
struct Thunk<Method> {
  template <class Base>
  static R Call(Base* self, A... arguments) noexcept {
    return Fence(__PRETTY_FUNCTION__, [&]() -> R { return (static_cast<C*>(self)->*Method)(arguments...); });
  }
};

} // namespace sdk
