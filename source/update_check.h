// The update check: asks the maker's server for the latest version and, if the user wants it, for a mail with
// the download link. Main thread: it shows dialogs, and the caller waits for the requests.
#pragma once

#include "c4d.h"

namespace kelvra {

/**
 * Hundredths of a version: the number that the text begins with, times 100, without its fraction; 0 when
 * there is none. 1.449 counts as 144: the third decimal place counts repairs, which nobody is asked to
 * download.
 */
LONG VersionHundredths(const CHAR* text);
/** TRUE when a reply names a version above this one; compared as 32-bit floats. */
Bool IsNewerVersion(const CHAR* reply);

/** Appends "?name=value" to an address without parameters, else "&name=value". The value is not escaped. */
void AppendQuery(String& url, const String& name, const String& value);

/**
 * Shows the result in a dialog, unless the user says "no" to the download. Without an order reference, and
 * when the server does not answer or its answer is empty, nothing is shown. Returns KELVRA_UPDATE_...
 */
LONG CheckForUpdate(const String& orderReference);

} // namespace kelvra
