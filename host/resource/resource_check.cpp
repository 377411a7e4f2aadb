#include "host/resource/resource_check.h"

#include "host/resource/container_syntax.h"
#include "host/resource/resource_file.h"
#include "host/resource/resource_folder.h"

#include <algorithm>
#include <set>

namespace host::resource {
namespace {

using Path = std::filesystem::path;

class FolderChecker {
public:
  explicit FolderChecker(Path folder) : path_(std::move(folder)) {}

  std::vector<std::string> Run() {
    std::string error;
    if (!folder_.Open(path_, kFallbackLanguage, &error)) {
      complaints_.push_back(error);
      return complaints_;
    }
    for (const auto& [identifier, id] : folder_.Symbols().Entries()) {
      if (!folder_.FindString(id)) Complain("c4d_symbols.h", identifier + " has no text in strings_us");
    }
    for (const Path& file : FilesOf(path_ / "description", ".res")) CheckDescriptionFile(file);
    for (const Path& entry : ListFolder(path_)) {
      if (entry.filename().u8string().rfind("strings_", 0) == 0) CheckLanguage(entry);
    }
    return complaints_;
  }

private:
  void Complain(const std::string& where, const std::string& what) {
    complaints_.push_back(where + ": " + what);
  }

  /** What `folder` holds, in byte order; nothing when it cannot be listed. */
  static std::vector<Path> ListFolder(const Path& folder) {
    std::vector<Path> entries;
    std::error_code status;
    std::filesystem::directory_iterator entry(folder, status);
    for (; !status && entry != std::filesystem::directory_iterator(); entry.increment(status)) {
      entries.push_back(entry->path());
    }
    std::sort(entries.begin(), entries.end());
    return entries;
  }

  static std::vector<Path> FilesOf(const Path& folder, const char* suffix) {
    std::vector<Path> files = ListFolder(folder);
    const auto other = [suffix](const Path& file) { return file.extension() != suffix; };
    files.erase(std::remove_if(files.begin(), files.end(), other), files.end());
    return files;
  }

  void CheckDescriptionFile(const Path& file) {
    std::string text, error;
    ContainerSyntax syntax;
    if (!ReadResourceFile(file, &text, &error) || !ParseContainer(text, file.u8string(), &syntax, &error)) {
      complaints_.push_back(error);
      return;
    }
    const std::string& name = syntax.name.text;
    if (DescriptionFileStem(name) != file.stem()) {
      Complain(file.u8string(), "CONTAINER " + name + " belongs into " + DescriptionFileStem(name) + ".res");
      return;
    }
    const Description* description = folder_.LoadDescription(name, &error);
    if (!description) {
      complaints_.push_back(error);
      return;
    }
    known_[DescriptionFileStem(name)] = description;
    for (const std::string& identifier : description->missingTexts) {
      Complain(name, identifier + " has no text in strings_us");
    }
    for (const Parameter& parameter : description->parameters) CheckParameter(name, parameter);
  }

  void CheckParameter(const std::string& name, const Parameter& parameter) {
    if (parameter.origin != name) return;
    const std::string where = name + ": " + parameter.identifier;
    CheckOrder(where, "MIN", parameter.min, "MAX", parameter.max);
    CheckOrder(where, "MIN", parameter.min, "DEFAULT", parameter.defaultNumbers);
    CheckOrder(where, "DEFAULT", parameter.defaultNumbers, "MAX", parameter.max);
    if (parameter.defaultNumbers && Touches(parameter)) Complain(where, "DEFAULT is an excluded limit");
    const double choice = parameter.defaultNumbers ? (*parameter.defaultNumbers)[0] : 0.0;
    if (parameter.type == ElementType::kBool && choice != 0.0 && choice != 1.0) {
      Complain(where, "DEFAULT of a BOOL is 0 or 1");
    }
    CheckCycle(where, parameter);
  }

  static bool Touches(const Parameter& parameter) {
    return (parameter.minExclusive && parameter.min == parameter.defaultNumbers) ||
           (parameter.maxExclusive && parameter.max == parameter.defaultNumbers);
  }

  void CheckOrder(const std::string& where, const char* lowName, const std::optional<Numbers>& low,
                  const char* highName, const std::optional<Numbers>& high) {
    if (!low || !high) return;
    for (std::size_t axis = 0; axis < low->size(); ++axis) {
      if ((*low)[axis] <= (*high)[axis]) continue;
      Complain(where, std::string(lowName) + " " + std::to_string((*low)[axis]) + " is above " + highName +
                          " " + std::to_string((*high)[axis]));
      return;
    }
  }

  void CheckCycle(const std::string& where, const Parameter& parameter) {
    if (parameter.cycle.empty()) return;
    std::set<std::int32_t> numbers;
    std::set<std::string> texts;
    for (const CycleEntry& entry : parameter.cycle) {
      if (entry.isDivider) continue;
      if (!numbers.insert(entry.id).second)
        Complain(where, std::to_string(entry.id) + " is in the list twice");
      if (!texts.insert(entry.text).second) Complain(where, "\"" + entry.text + "\" is in the list twice");
    }
    if (!parameter.defaultNumbers || numbers.count(std::int32_t((*parameter.defaultNumbers)[0])) == 0) {
      Complain(where, "DEFAULT is not in the list");
    }
  }

  /** Texts that nothing shows, in any language. */
  void CheckLanguage(const Path& language) {
    const Path strings = language / "c4d_strings.str";
    std::error_code status;
    if (std::filesystem::exists(strings, status)) CheckTable(strings, "", folder_.Symbols());
    for (const Path& file : FilesOf(language / "description", ".str")) {
      const auto description = known_.find(file.stem().u8string());
      if (description == known_.end()) {
        Complain(file.u8string(), "belongs to no description that could be read");
      } else {
        CheckTable(file, description->second->name, description->second->symbols);
      }
    }
  }

  void CheckTable(const Path& file, const std::string& name, const SymbolTable& symbols) {
    std::string text, error;
    StringTable table;
    if (!ReadResourceFile(file, &text, &error) || !ParseStringTable(text, file.u8string(), &table, &error)) {
      complaints_.push_back(error);
      return;
    }
    if (table.name != name) {
      Complain(file.u8string(), "expected STRINGTABLE " + name + ", found STRINGTABLE " + table.name);
    }
    for (const auto& [identifier, texts] : table.texts) {
      if (identifier != name && !symbols.Find(identifier))
        Complain(file.u8string(), identifier + " is not defined");
    }
  }

  Path path_;
  ResourceFolder folder_;
  std::map<std::string, const Description*> known_; // by file stem
  std::vector<std::string> complaints_;
};

} // namespace

std::vector<std::string> CheckResourceFolder(const Path& folder) {
  return FolderChecker(folder).Run();
}

} // namespace host::resource
