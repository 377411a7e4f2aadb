// The registration gate: may this copy convert clouds to host geometry?
#pragma once

#include "c4d.h"

namespace kelvra {

/** The gate's answer. A build with a licence of its own replaces registration.cpp and nothing else. */
struct RegistrationState {
  Bool mayConvert;        ///< checked before a conversion builds anything
  const CHAR* statusText; ///< shown on the preferences page
};

/** Asks no server and does not depend on the time. */
RegistrationState GetRegistrationState();

} // namespace kelvra
