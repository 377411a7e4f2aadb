// Turns the shape of a description file into a Description: numbers for names, texts, includes, stored units.
#pragma once

#include "host/resource/container_syntax.h"
#include "host/resource/description.h"
#include "host/resource/string_table.h"

#include <functional>
#include <string>
#include <vector>

namespace host::resource {

/** A description may hold this many parameters and groups, included ones counted. */
constexpr std::size_t kMaxElements = 4096;

/** Gives the description that an INCLUDE names; null with one line in `error`. The result stays valid. */
using IncludeLoader = std::function<const Description*(const std::string& name, std::string* error)>;

struct BuildInput {
  std::string file; // named in messages
  const ContainerSyntax* syntax = nullptr;
  const SymbolTable* symbols = nullptr;             // the description's own header
  const std::vector<StringTable>* tables = nullptr; // preferred language first
  const std::vector<StringTable>* help = nullptr;   // sentences, as the texts; null for none
  IncludeLoader include;
};

/** Returns false with "file:line:column: ..." in `error`. A missing text is not a failure: see missingTexts.
 */
bool BuildDescription(const BuildInput& input, Description* description, std::string* error);

} // namespace host::resource
