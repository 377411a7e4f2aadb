// Resource text: every parser gives the same result for a text as for its tokens written one per line.
#include "host/resource/description_builder.h"

#include <cstdlib>

using namespace host::resource;

static std::string Spell(const Token& token) {
  if (token.kind != TokenKind::kText) return token.text + "\n";
  std::string spelled = "\"";
  for (const char c : token.text) {
    if (c == '"' || c == '\\') spelled += '\\';
    spelled += c == '\n' ? std::string("\\n") : std::string(1, c);
  }
  return spelled + "\"\n";
}

/** Results of the three parsers and the builder for `text`; every name in `names` has a number. */
static std::string Outcome(const std::string& text, const SymbolTable& names) {
  std::string outcome, error;
  SymbolTable symbols;
  if (ParseSymbols(text, "x.h", &symbols, &error)) {
    for (const auto& [name, value] : symbols.Entries()) outcome += name + "=" + std::to_string(value) + ";";
  }
  StringTable table;
  if (ParseStringTable(text, "x.str", &table, &error)) {
    for (const auto& [name, texts] : table.texts)
      outcome += name + texts.longText + "|" + texts.shortText + ";";
  }
  ContainerSyntax syntax;
  Description built;
  const std::vector<StringTable> tables = {table};
  const IncludeLoader include = [](const std::string&, std::string*) { return nullptr; };
  if (!ParseContainer(text, "x.res", &syntax, &error)) return outcome + "no container";
  if (!BuildDescription({"x.res", &syntax, &names, &tables, &tables, include}, &built, &error))
    return outcome + "not built";
  for (const Parameter& each : built.parameters) {
    outcome += each.identifier + std::to_string(each.id) + each.longName +
               std::to_string(each.min.value_or(Numbers{})[0]) + std::to_string(each.cycle.size()) + ";";
  }
  return outcome + std::to_string(built.groups.size());
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::string respelled, error;
  SymbolTable names;
  CatchParseError(&error, [&] {
    for (Lexer lexer(text, "x"); lexer.Peek().kind != TokenKind::kEnd;) {
      if (lexer.Peek().kind == TokenKind::kName)
        names.Add(lexer.Peek().text, int(names.Entries().size()) + 1);
      respelled += Spell(lexer.Take());
    }
  });
  if (!error.empty()) respelled = "?"; // text that cannot be split into tokens is not a file of any kind
  if (Outcome(text, names) != Outcome(respelled, names)) std::abort();
  return 0;
}
