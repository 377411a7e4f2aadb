// Values of parameters as users type them. Main thread.
#pragma once

#include "host/nodes/node.h"
#include "host/resource/description.h"

#include <string>

namespace host {

/** By identifier, or by its end after the first underscore in any case; NULL when there is none. */
const resource::Parameter* FindParameterByName(const resource::Description& description,
                                               const std::string& name);
/** False with one line naming the value and what is expected. Links name an object of the document, or
 * nothing. */
bool ParseParameter(const resource::Parameter& parameter, const std::string& text, Document* doc,
                    GeData* value, std::string* error);

} // namespace host
