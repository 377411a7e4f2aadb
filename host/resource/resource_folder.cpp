#include "host/resource/resource_folder.h"

#include "host/resource/builtin_descriptions.h"
#include "host/resource/description_builder.h"
#include "host/resource/resource_file.h"

#include <algorithm>

namespace host::resource {
namespace {

bool IsIdentifier(const std::string& name) {
  const auto isPart = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
  };
  return !name.empty() && std::all_of(name.begin(), name.end(), isPart);
}

bool Exists(const std::filesystem::path& path) {
  std::error_code status;
  return std::filesystem::exists(path, status);
}

bool ReadSymbols(const std::filesystem::path& path, SymbolTable* symbols, std::string* error) {
  std::string text;
  return ReadResourceFile(path, &text, error) && ParseSymbols(text, path.u8string(), symbols, error);
}

} // namespace

/** What one description is made of. */
struct ResourceFolder::Sources {
  std::string file;
  ContainerSyntax syntax;
  SymbolTable symbols;
  std::vector<StringTable> tables, help;
};

std::string DescriptionFileStem(const std::string& name) {
  if (!IsIdentifier(name)) return {};
  std::string stem = name;
  for (char& c : stem) {
    if (c >= 'A' && c <= 'Z') c = char(c - 'A' + 'a');
  }
  return stem;
}

bool ResourceFolder::Open(const std::filesystem::path& path, const std::string& language,
                          std::string* error) {
  *this = ResourceFolder();
  path_ = path;
  if (!IsIdentifier(language)) {
    *error = "'" + language + "' is not a language: expected letters and digits, as in \"us\"";
    return false;
  }
  languages_ = {language};
  if (language != kFallbackLanguage) languages_.emplace_back(kFallbackLanguage);

  if (!ReadSymbols(path / "c4d_symbols.h", &symbols_, error)) return false;
  for (const auto& [identifier, id] : symbols_.Entries()) identifiers_.emplace(id, identifier);
  return ReadTables("c4d_strings.str", &strings_, error);
}

const std::string* ResourceFolder::FindString(std::int32_t id) const {
  const auto identifier = identifiers_.find(id);
  const Texts* texts = identifier == identifiers_.end() ? nullptr : FindTexts(strings_, identifier->second);
  return texts ? &texts->longText : nullptr;
}

std::string ResourceFolder::LoadString(std::int32_t id) const {
  const std::string* text = FindString(id);
  return text ? *text : PlaceholderText(std::to_string(id));
}

const Description* ResourceFolder::LoadDescription(const std::string& name, std::string* error) {
  const auto known = descriptions_.find(name);
  if (known != descriptions_.end()) return known->second.get();
  if (std::find(loading_.begin(), loading_.end(), name) != loading_.end()) {
    *error = name + " includes itself";
    return nullptr;
  }
  if (loading_.size() >= kMaxIncludeDepth) {
    *error = "descriptions include each other deeper than the " + std::to_string(kMaxIncludeDepth) +
             " levels allowed";
    return nullptr;
  }
  Sources sources;
  if (!ReadSources(name, &sources, error)) return nullptr;

  auto description = std::make_unique<Description>();
  const IncludeLoader include = [this](const std::string& included, std::string* includeError) {
    return LoadDescription(included, includeError);
  };
  loading_.push_back(name);
  const bool built = BuildDescription(
      {sources.file, &sources.syntax, &sources.symbols, &sources.tables, &sources.help, include},
      description.get(), error);
  loading_.pop_back();
  if (!built) return nullptr;
  return (descriptions_[name] = std::move(description)).get();
}

bool ResourceFolder::ReadSources(const std::string& name, Sources* sources, std::string* error) const {
  const bool isBuiltin = FindBuiltinDescription(name) != nullptr;
  if (!(isBuiltin ? ReadBuiltin(name, sources, error) : ReadFiles(name, sources, error))) return false;
  if (sources->syntax.name.text != name) {
    *error =
        sources->file + ": expected CONTAINER " + name + ", found CONTAINER " + sources->syntax.name.text;
    return false;
  }
  return true;
}

bool ResourceFolder::ReadBuiltin(const std::string& name, Sources* sources, std::string* error) const {
  const BuiltinDescription& builtin = *FindBuiltinDescription(name);
  sources->file = "(built in)/" + name;
  sources->tables.resize(1);
  return ParseSymbols(builtin.header, sources->file + ".h", &sources->symbols, error) &&
         ParseContainer(builtin.container, sources->file + ".res", &sources->syntax, error) &&
         ParseStringTable(builtin.strings, sources->file + ".str", &sources->tables[0], error);
}

bool ResourceFolder::ReadFiles(const std::string& name, Sources* sources, std::string* error) const {
  const std::string stem = DescriptionFileStem(name);
  if (stem.empty()) {
    *error = "'" + name + "' is not a description's name: expected letters, digits and '_'";
    return false;
  }
  const std::filesystem::path file = path_ / "description" / (stem + ".res");
  sources->file = file.u8string();
  std::string text;
  return ReadResourceFile(file, &text, error) &&
         ParseContainer(text, file.u8string(), &sources->syntax, error) &&
         ReadSymbols(path_ / "description" / (stem + ".h"), &sources->symbols, error) &&
         ReadTables("description/" + stem + ".str", &sources->tables, error) &&
         (!Exists(path_ / ("strings_" + std::string(kFallbackLanguage)) / "help" / (stem + ".str")) ||
          ReadTables("help/" + stem + ".str", &sources->help, error));
}

bool ResourceFolder::ReadTables(const std::string& relative, std::vector<StringTable>* tables,
                                std::string* error) const {
  for (const std::string& language : languages_) {
    const std::filesystem::path file = path_ / ("strings_" + language) / relative;
    // A language may lack a file, as it may lack a text; the fallback has them all.
    if (language != kFallbackLanguage && !Exists(file)) continue;
    std::string text;
    tables->emplace_back();
    if (!ReadResourceFile(file, &text, error) ||
        !ParseStringTable(text, file.u8string(), &tables->back(), error)) {
      return false;
    }
  }
  return true;
}

} // namespace host::resource
