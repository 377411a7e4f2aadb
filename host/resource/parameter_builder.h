// Fills one parameter from the attributes in a description file.
#pragma once

#include "host/resource/container_syntax.h"
#include "host/resource/description.h"

#include <functional>
#include <string>

namespace host::resource {

/** What the attributes need from the description around them. All throw ParseError. */
struct ParameterContext {
  std::string file;
  std::function<std::int32_t(const Token&)> resolveId;   // identifier or number
  std::function<std::string(const std::string&)> textOf; // long text, or the placeholder
};

/** Applies every attribute of `element` to `parameter`, whose type is set. Throws ParseError on values out of
 * place. */
void FillParameter(const ParameterContext& context, const ElementSyntax& element, Parameter* parameter);

} // namespace host::resource
