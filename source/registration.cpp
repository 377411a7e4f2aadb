#include "registration.h"

namespace kelvra {

RegistrationState GetRegistrationState() {
  return {TRUE, "Unregistered"};
}

} // namespace kelvra
