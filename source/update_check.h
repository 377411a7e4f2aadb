// The update check: asks the maker's server for the latest version and, when the user wants it, for a mail
// with the download link. Main thread: dialogs, and the caller waits for the requests.
#pragma once

#include "c4d.h"

namespace kelvra {

/**
 * Hundredths of a version text: the number that it begins with, times 100, without its fraction; 0 when it is
 * none. 1.449 is deliberately 144: the third decimal place counts repairs that nobody is asked to download.
 */
LONG VersionHundredths(const CHAR* text);
/** TRUE when a reply names a version above this one; compared as 32-bit floats. */
Bool IsNewerVersion(const CHAR* reply);

/** Appends "?name=value" to an address without parameters, else "&name=value". The value is not escaped. */
void AppendQuery(String& url, const String& name, const String& value);

/**
 * Without an order reference, and when the server does not answer or answers nothing, it ends without a
 * message; else every way through ends in one, but for "no".
 */
void CheckForUpdate(const String& orderReference);

} // namespace kelvra
