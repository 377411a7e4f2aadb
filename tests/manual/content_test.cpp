// The manual's tables against the resources and the sources: nothing is missing, nothing is invented.
#include "host/resource/resource_folder.h"
#include "manual/manual_text.h"

#include <regex>
#include <unistd.h>

namespace manual_test {
namespace {

namespace fs = std::filesystem;
using namespace host::resource;

std::string Short(double value, bool percent) {
  std::ostringstream out;
  out << (percent ? value * 100.0 : value);
  return out.str();
}

/** What the default column says. */
std::string DefaultOf(const Parameter& p) {
  static const std::map<ElementType, std::string> fixed = {
      {ElementType::kButton, "button"}, {ElementType::kLink, "none"}, {ElementType::kSpline, "no curve"}};
  const auto found = fixed.find(p.type);
  if (found != fixed.end()) return found->second;
  if (p.type == ElementType::kString) return p.defaultText.value_or("").empty() ? "empty" : *p.defaultText;
  const bool percent = p.unit == Unit::kPercent;
  const Numbers numbers = p.defaultNumbers.value_or(Numbers{});
  for (const CycleEntry& entry : p.cycle)
    if (entry.id == (std::int32_t)numbers[0]) return entry.text;
  if (p.type == ElementType::kBool) return numbers[0] != 0.0 ? "on" : "off";
  if (p.type == ElementType::kVector)
    return Short(numbers[0], false) + ", " + Short(numbers[1], false) + ", " + Short(numbers[2], false);
  return Short(numbers[0], percent) + (percent ? " %" : "");
}

/** What the range column says. */
std::string RangeOf(const Parameter& p) {
  static const std::map<ElementType, std::string> fixed = {
      {ElementType::kButton, "–"},    {ElementType::kLink, "link"},    {ElementType::kSpline, "curve"},
      {ElementType::kString, "text"}, {ElementType::kBool, "on, off"}, {ElementType::kVector, "any"}};
  const auto found = fixed.find(p.type);
  if (found != fixed.end()) return found->second;
  if (!p.cycle.empty()) return "list";
  if (!p.min) return "any";
  const bool percent = p.unit == Unit::kPercent;
  const std::string low = Short((*p.min)[0], percent), unit = percent ? " %" : "";
  return p.max ? low + " to " + Short((*p.max)[0], percent) + unit : "from " + low + unit;
}

/** Name as --set and prefs take it. */
std::string NameOf(const Parameter& p, const std::string& prefix) {
  std::string name = p.identifier.substr(prefix.size());
  for (char& c : name) c = (char)std::tolower((unsigned char)c);
  return "`" + name + "`";
}

TEST(ManualContent, TablesShowEveryParameterAsTheResourcesDeclareIt) {
  const struct {
    const char *description, *heading, *prefix;
  } cases[] = {{"Otallyframe", "The point cloud", "KELVRA_"},
               {"VPkelvrarender", "The video post", "KELVRA_"},
               {"XKelvra_Shader", "The shader", "KELVRA_"},
               {"Prefsmyprefs", "The preferences", "KELVRA_PREFS_"}};
  const ManualText manual;
  ResourceFolder folder;
  std::string error;
  ASSERT_TRUE(folder.Open(fs::path(KELVRA_SOURCE_DIR) / "res", "us", &error)) << error;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.heading);
    const Section* section = manual.Find(c.heading);
    ASSERT_TRUE(section);
    std::map<std::string, std::vector<std::string>> rows;
    for (const std::string& line : section->lines)
      if (const std::vector<std::string> cells = Cells(line); cells.size() == 6) rows[cells[0]] = cells;
    const Description* description = folder.LoadDescription(c.description, &error);
    ASSERT_TRUE(description) << error;
    std::size_t own = 0;
    for (const Parameter& p : description->parameters) {
      if (p.origin != c.description) continue;
      SCOPED_TRACE(p.identifier);
      ++own;
      const std::vector<std::string>& row = rows[std::to_string(p.id)];
      const std::vector<std::string> expected = {std::to_string(p.id), NameOf(p, c.prefix), p.longName,
                                                 DefaultOf(p), RangeOf(p)};
      ASSERT_EQ(row.size(), 6u) << "no row";
      EXPECT_EQ(std::vector<std::string>(row.begin(), row.begin() + 5), expected);
      EXPECT_FALSE(row[5].empty());
      EXPECT_EQ(p.help.empty(), p.hidden || p.type == ElementType::kButton) << "a sentence for each value";
      EXPECT_EQ(row[5].find("(hidden)") != std::string::npos, p.hidden) << row[5];
      for (const CycleEntry& entry : p.cycle)
        EXPECT_TRUE(p.hidden || row[5].find('"' + entry.text + '"') != std::string::npos) << entry.text;
    }
    EXPECT_EQ(rows.size(), own + 2) << "head, line and a row for each parameter";
  }
}

/** The sources' files as one text each. */
std::vector<std::string> Sources(const std::vector<std::string>& folders) {
  std::vector<std::string> texts;
  for (const std::string& folder : folders)
    for (const fs::directory_entry& entry :
         fs::recursive_directory_iterator(fs::path(KELVRA_SOURCE_DIR) / folder))
      if (entry.path().extension() == ".cpp" || entry.path().extension() == ".h")
        texts.push_back(ReadText(entry.path().string()));
  return texts;
}

/** String literals as the compiler joins them, quotes without backslashes. No regular expression: long
 * matches would take much stack. */
std::vector<std::string> Literals(const std::string& code) {
  std::vector<std::string> literals;
  std::size_t last = std::string::npos; // behind the previous literal
  for (std::size_t at = code.find('"'); at != std::string::npos; at = code.find('"', at + 1)) {
    if (at > 0 && code[at - 1] == '\'') continue; // a character
    std::string text;
    std::size_t i = at + 1;
    for (; i < code.size() && code[i] != '"'; ++i) {
      if (code[i] == '\\') ++i;
      if (i < code.size()) text += code[i];
    }
    const bool joined = last <= at && code.find_first_not_of(" \n", last) == at;
    if (joined && !literals.empty())
      literals.back() += text;
    else
      literals.push_back(text);
    at = i;
    last = at + 1;
  }
  return literals;
}

/** What the user is shown: the calls that show something, up to their end. */
std::string ShowingCode(const std::string& code) {
  static constexpr const char* kCalls[] = {"GePrint(",       "MessageDialog(", "QuestionDialog(",
                                           "StatusSetText(", "PrintLine(",     ".Note(",
                                           "Refuse(",        "refusal = "};
  // Whole files whose functions put a reason together.
  if (code.find("std::string LoadLine(") != std::string::npos ||
      code.find("String ReasonOf(") != std::string::npos || code.find("String Record(") != std::string::npos)
    return code;
  std::string shown;
  for (const char* call : kCalls)
    for (std::size_t at = code.find(call); at != std::string::npos; at = code.find(call, at + 1))
      shown += code.substr(at, code.find(";\n", at) - at) + ";\n";
  return shown;
}

/** Pieces shorter than this are joints of a message, not the message. */
constexpr std::size_t kLeastPiece = 6;

TEST(ManualContent, MessagesOfTheModuleAreExplained) {
  const ManualText manual;
  int checked = 0;
  for (const std::string& code : Sources({"source"}))
    for (const std::string& literal : Literals(ShowingCode(code))) {
      const std::string piece = std::regex_replace(literal, std::regex("^[ .:;,]+|[ .:;,]+$"), "");
      if (piece.size() < kLeastPiece || piece.find(' ') == std::string::npos) continue;
      EXPECT_TRUE(manual.Has(piece)) << piece;
      ++checked;
    }
  EXPECT_GT(checked, 40);
}

/** What stands between … and punctuation in the quoted messages of a table's cell. */
std::vector<std::string> Pieces(const std::string& cell) {
  std::vector<std::string> pieces;
  const std::regex quoted("`([^`]*)`"), joint(" *(?:…|, |: |; ) *");
  for (std::sregex_iterator m(cell.begin(), cell.end(), quoted), end; m != end; ++m) {
    const std::string message = (*m)[1];
    for (std::sregex_token_iterator p(message.begin(), message.end(), joint, -1), last; p != last; ++p)
      if (p->length() >= (std::ptrdiff_t)kLeastPiece) pieces.push_back(*p);
  }
  return pieces;
}

TEST(ManualContent, MessagesAreThoseOfThePrograms) {
  std::string all;
  for (const std::string& code : Sources({"source", "host", "cli"}))
    for (const std::string& literal : Literals(code)) all += literal + "\n";
  all = std::regex_replace(all, std::regex("%[a-z]+"), "…");
  const ManualText manual;
  const Section* messages = manual.Find("Messages");
  ASSERT_TRUE(messages);
  int checked = 0;
  for (const std::string& line : messages->lines) {
    const std::vector<std::string> cells = Cells(line);
    if (cells.size() != 3) continue;
    for (const std::string& piece : Pieces(cells[0])) {
      EXPECT_NE(all.find(piece), std::string::npos) << piece;
      ++checked;
    }
  }
  EXPECT_GT(checked, 100);
}

/** Links, pictures, scripts and files that a page names, as paths. */
std::vector<fs::path> PathsIn(const fs::path& page) {
  const std::string text = ReadText(page.string());
  const fs::path root(KELVRA_SOURCE_DIR);
  std::vector<fs::path> paths;
  const auto collect = [&](const char* form, const fs::path& from) {
    const std::regex regex(form);
    for (std::sregex_iterator m(text.begin(), text.end(), regex), end; m != end; ++m)
      paths.push_back(from / (*m)[1].str());
  };
  collect("\\]\\(([^)#:]+)", page.parent_path());
  collect("`((?:bench|cli|cmake|docs|fuzz|host|res|scripts|sdk|source|tests|tools|vendor)/[^`*<]*)`", root);
  collect("\n *\\./([a-z_]+\\.sh)", root);
  return paths;
}

TEST(Pages, NameFilesThatAreThere) {
  const fs::path root(KELVRA_SOURCE_DIR);
  std::vector<fs::path> pages;
  for (const fs::directory_entry& entry : fs::directory_iterator(root)) {
    if (fs::exists(entry.path() / "README.md")) pages.push_back(entry.path() / "README.md");
    if (entry.path().filename() == "README.md") pages.push_back(entry.path());
  }
  for (const fs::directory_entry& entry : fs::directory_iterator(root / "docs"))
    if (entry.path().extension() == ".md") pages.push_back(entry.path());
  std::size_t named = 0;
  for (const fs::path& page : pages)
    for (const fs::path& path : PathsIn(page)) {
      EXPECT_TRUE(fs::exists(path)) << page << " names " << path;
      EXPECT_TRUE(path.extension() != ".png" || fs::file_size(path) < 300000)
          << path << " is too large for a package";
      EXPECT_TRUE(path.extension() != ".sh" || access(path.c_str(), X_OK) == 0) << path << " cannot be run";
      ++named;
    }
  EXPECT_GT(named, 80u);
}

} // namespace
} // namespace manual_test
