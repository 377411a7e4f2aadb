// The base descriptions that the application itself brings: Obase, Tbase, Xbase, VPbase and Mpreview.
#pragma once

#include <string_view>

namespace host::resource {

/** The three files of one description, as text. */
struct BuiltinDescription {
  const char* name;
  const char* header;
  const char* container;
  const char* strings;
};

/** Null when the application has no description of this name. */
const BuiltinDescription* FindBuiltinDescription(std::string_view name);

} // namespace host::resource
