#pragma once

namespace kelvra {

/** Shown at start-up and on the preferences page, and compared by the update check. */
constexpr const char* kVersionText = "1.44";

/** String resources. */
enum { kStringObject = 10000, kStringShader = 10001, kStringRender = 10002, kStringPreferences = 10003 };

} // namespace kelvra
