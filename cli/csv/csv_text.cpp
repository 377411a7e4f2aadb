#include "cli/csv/csv_text.h"

#include "host/base/printable.h"
#include "host/base/user_break.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <regex>
#include <stdexcept>
#include <vector>

namespace cli {

namespace {

enum Column { kX, kY, kZ, kRed, kGreen, kBlue, kIntensity, kColumns };

struct ColumnName {
  const char* name;
  Column column;
};

const ColumnName kNames[] = {{"x", kX},         {"easting", kX}, {"east", kX},    {"y", kY},
                             {"northing", kY},  {"north", kY},   {"z", kZ},       {"height", kZ},
                             {"elevation", kZ}, {"r", kRed},     {"red", kRed},   {"g", kGreen},
                             {"green", kGreen}, {"b", kBlue},    {"blue", kBlue}, {"intensity", kIntensity}};

/** Names that mean something else beside those above: taken for a coordinate that none of them names. */
const ColumnName kShortNames[] = {{"e", kX},    {"n", kY},        {"h", kZ},
                                  {"elev", kZ}, {"altitude", kZ}, {"alt", kZ}};

/** Longest line that a table can have. */
constexpr std::size_t kMostLineBytes = 64 * 1024;
constexpr std::size_t kShownCharacters = 40;
constexpr int kMissing = -1;

struct TableError {
  std::string text;
};

std::string Trimmed(const std::string& text) {
  const char* const blanks = " \t\r\"";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string::npos) return std::string();
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string Lower(std::string text) {
  for (char& c : text) c = c >= 'A' && c <= 'Z' ? (char)(c + 32) : c;
  return text;
}

/** In lower case, without a unit behind it: "Easting [m]" is easting. */
std::string PlainName(const std::string& written) {
  const std::size_t bracket = written.find_first_of("([");
  return Lower(Trimmed(bracket == 0 ? written : written.substr(0, bracket)));
}

std::vector<std::string> Fields(const std::string& line, char separator) {
  std::vector<std::string> fields;
  for (std::size_t from = 0;;) {
    const std::size_t end = line.find(separator, from);
    fields.push_back(Trimmed(line.substr(from, end - from)));
    if (end == std::string::npos) return fields;
    from = end + 1;
  }
}

/** Where a field stands, for people. */
std::string Place(std::int64_t line, std::size_t column) {
  return "line " + std::to_string(line) + ", column " + std::to_string(column + 1) + ": ";
}

class Table {
public:
  explicit Table(std::istream& in) : in_(in) { ReadHeader(); }

  bool Has(Column column) const { return places_[column] != kMissing; }
  bool HasColor() const { return Has(kRed) && Has(kGreen) && Has(kBlue); }

  /** Goes to the next row that is not empty; false behind the last one. */
  bool Next() {
    std::string line;
    while (ReadLine(line)) {
      if (host::Interrupted()) throw TableError{"stopped; nothing of it was loaded"};
      if (Trimmed(line).empty()) continue;
      fields_ = Fields(line, separator_);
      return true;
    }
    return false;
  }
  /** The number as it stands in the row, with a decimal point. */
  std::string Text(Column column, double* value) const {
    const std::size_t place = (std::size_t)places_[column];
    if (place >= fields_.size())
      throw TableError{"line " + std::to_string(line_) + " has " + std::to_string(fields_.size()) +
                       " columns, expected at least " + std::to_string(place + 1) + " as in the header"};
    std::string text = fields_[place];
    if (separator_ != ',') std::replace(text.begin(), text.end(), ',', '.');
    if (!text.empty() && text[0] == '+') text.erase(0, 1);
    const std::from_chars_result read = std::from_chars(text.data(), text.data() + text.size(), *value);
    if (read.ec != std::errc() || read.ptr != text.data() + text.size() || !std::isfinite(*value))
      throw TableError{Place(line_, place) + "\"" + host::Shortened(fields_[place], kShownCharacters) +
                       "\" is not a number"};
    return text;
  }
  double Number(Column column) const {
    double value = 0.0;
    Text(column, &value);
    return value;
  }
  void GoBack() {
    in_.clear();
    in_.seekg(0);
    line_ = 0;
    std::string header;
    ReadLine(header);
  }

private:
  bool ReadLine(std::string& line) {
    if (!std::getline(in_, line)) return false;
    ++line_;
    if (line.size() > kMostLineBytes)
      throw TableError{"line " + std::to_string(line_) + " is longer than " + std::to_string(kMostLineBytes) +
                       " bytes"};
    return true;
  }

  void ReadHeader() {
    std::string header;
    places_.fill(kMissing);
    if (!ReadLine(header)) throw TableError{"the file is empty"};
    if (header.rfind("\xEF\xBB\xBF", 0) == 0) header.erase(0, 3);
    for (const char separator : {',', ';', '\t'})
      if (std::count(header.begin(), header.end(), separator) >
          std::count(header.begin(), header.end(), separator_))
        separator_ = separator;
    const std::vector<std::string> names = Fields(header, separator_);
    for (std::size_t i = 0; i < names.size(); ++i) TakeName(names[i], (int)i);
    TakeShortNames(names);
    if (!Has(kX) || !Has(kY) || !Has(kZ)) throw TableError{"line 1: " + FaultOfHeader(header, names)};
  }

  /** Why a first line without x, y and z cannot be used, and what to do about it. */
  std::string FaultOfHeader(const std::string& header, const std::vector<std::string>& names) const {
    const std::string expected =
        "expected the names of the columns, x, y and z among them (or easting, northing and height; or e, n "
        "and h), separated by commas, semicolons or tabs";
    const auto startsWith = [&](const char* start) {
      return std::any_of(names.begin(), names.end(),
                         [&](const std::string& name) { return Lower(name).rfind(start, 0) == 0; });
    };
    if (startsWith("lat") && (startsWith("lon") || startsWith("lng")))
      return "latitudes and longitudes are degrees, expected x, y and z in metres or feet: reproject the "
             "file with a tool for coordinate systems";
    if (header.find_first_not_of("0123456789+-.,;eE \t\r\"") != std::string::npos)
      return "no column is named " + std::string(!Has(kX) ? "x" : !Has(kY) ? "y" : "z") + "; " + expected;
    if (names.size() < 3) return "holds numbers; " + expected + " (--as xyz reads numbers between blanks)";
    // Commas are decimal where something else is between the numbers.
    const bool semicolons = header.find(';') != std::string::npos,
               tabs = header.find('\t') != std::string::npos;
    return "holds numbers; " + expected + ": add the line " +
           (semicolons ? "x;y;z"
            : tabs     ? "x, y, z with tabs between them"
                       : "x,y,z") +
           " above it";
  }

  void TakeName(const std::string& written, int place) {
    const std::string name = PlainName(written);
    for (const auto& known : kNames) {
      if (name != known.name) continue;
      if (Has(known.column))
        throw TableError{Place(1, (std::size_t)place) + "the second " + name + " of the header"};
      places_[known.column] = place;
    }
  }

  void TakeShortNames(const std::vector<std::string>& names) {
    const std::array<int, kColumns> named = places_;
    for (std::size_t i = 0; i < names.size(); ++i)
      for (const ColumnName& known : kShortNames) {
        if (PlainName(names[i]) != known.name || named[known.column] != kMissing) continue;
        if (Has(known.column))
          throw TableError{Place(1, i) + "both \"" + names[(std::size_t)places_[known.column]] + "\" and \"" +
                           names[i] + "\" could be " + "xyz"[known.column] + "; name one of them " +
                           "xyz"[known.column]};
        places_[known.column] = (int)i;
      }
  }

  std::istream& in_;
  char separator_ = ',';
  std::array<int, kColumns> places_;
  std::int64_t line_ = 0;
  std::vector<std::string> fields_;
};

/** What a channel's value is multiplied by to be one of 0 to 255. */
double ScaleOf(double highest, bool decimals) {
  if (highest <= 1.0 && decimals) return 255.0;
  return highest > 255.0 ? 255.0 / 65535.0 : 1.0;
}

/** Reads every number once, so that nothing is written of a table with a mistake. */
double FindScale(Table& table) {
  double highest = 0.0, ignored = 0.0;
  bool decimals = false;
  while (table.Next()) {
    for (const Column column : {kX, kY, kZ}) table.Text(column, &ignored);
    if (table.HasColor())
      for (const Column column : {kRed, kGreen, kBlue}) {
        double value = 0.0;
        decimals = table.Text(column, &value).find('.') != std::string::npos || decimals;
        highest = std::max(highest, value);
      }
    else if (table.Has(kIntensity))
      highest = std::max(highest, table.Number(kIntensity));
  }
  if (table.HasColor()) return ScaleOf(highest, decimals);
  return highest > 0.0 ? 255.0 / highest : 0.0;
}

int Channel(double value, double scale) {
  return (int)std::lround(std::clamp(value * scale, 0.0, 255.0));
}

void WriteRows(Table& table, double scale, std::ostream& out) {
  double ignored = 0.0;
  while (table.Next()) {
    out << table.Text(kX, &ignored) << ' ' << table.Text(kY, &ignored) << ' ' << table.Text(kZ, &ignored);
    if (table.HasColor())
      for (const Column column : {kRed, kGreen, kBlue}) out << ' ' << Channel(table.Number(column), scale);
    else if (table.Has(kIntensity))
      for (int i = 0; i < 3; ++i) out << ' ' << Channel(table.Number(kIntensity), scale);
    out << '\n';
  }
}

/** A longer line is none of numbers. */
constexpr std::size_t kMostOfLine = 1000;

} // namespace

bool ConvertTable(std::istream& in, std::ostream& out, std::string* error) {
  try {
    Table table(in);
    const double scale = FindScale(table);
    table.GoBack();
    WriteRows(table, scale, out);
  } catch (const TableError& e) {
    *error = e.text;
    return false;
  }
  return true;
}

std::string WayToLoadAsTable(std::istream& in) {
  static const std::regex decimalCommas("\\s*([-+]?[0-9]+,[0-9]+[ \t]+){2}[-+]?[0-9]+,[0-9]+\\s*.*");
  std::string first;
  std::getline(in, first);
  if (first.size() < kMostOfLine && std::regex_match(first, decimalCommas))
    return "to load it, write points in place of its decimal commas";
  in.clear();
  in.seekg(0);
  try {
    Table table(in);
    return table.Next() ? "to load it, name it .csv" : std::string();
  } catch (const TableError& e) {
    const std::size_t line = e.text.find("add the line ");
    return line == std::string::npos ? std::string() : "to load it, name it .csv and " + e.text.substr(line);
  }
}

} // namespace cli
