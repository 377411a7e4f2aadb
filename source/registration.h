// The registration gate: may this copy convert clouds to host geometry?
#pragma once

#include "c4d.h"

namespace kelvra {

/** What the gate says. A build with a licence of its own replaces registration.cpp and nothing else. */
struct RegistrationState {
  Bool mayConvert;        ///< asked by the conversion before it builds anything
  const CHAR* statusText; ///< shown on the preferences page
};

/** No server is asked, and nothing depends on time. */
RegistrationState GetRegistrationState();

} // namespace kelvra
