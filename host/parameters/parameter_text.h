// Values of parameters as users type them. Main thread.
#pragma once

#include "host/nodes/node.h"
#include "host/resource/description.h"

#include <string>

namespace host {

/** By identifier, or by its end after the first underscore in any case; NULL when there is none. */
const resource::Parameter* FindParameterByName(const resource::Description& description,
                                               const std::string& name);
/** As users type it: the end of its identifier in lower case ("point_size"). */
std::string ParameterName(const resource::Parameter& parameter);
/** The same for an entry of its list; its number where the identifiers share no start. */
std::string EntryName(const resource::Parameter& parameter, const resource::CycleEntry& entry);
/** "from 0 to 1, or from 0% to 100%"; empty where any number will do. */
std::string RangeText(const resource::Parameter& parameter, std::size_t axis = 0);
/** False with what is expected instead; the caller knows what the user wrote, and where. Links name an object
 * of the document, or nothing. */
bool ParseParameter(const resource::Parameter& parameter, const std::string& text, Document* doc,
                    GeData* value, std::string* error);

} // namespace host
