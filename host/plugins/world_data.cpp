#include "host/plugins/world_data.h"

#include "host/base/data_types.h"
#include "host/base/printable.h"
#include "host/base/replacing_file.h"
#include "host/base/text.h"

#include <cerrno>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>

namespace host {

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

constexpr int kDeepest = 32;

json ToJson(const BaseContainer& bc);

json ToJson(const Vector& v) {
  return json::array({v.x, v.y, v.z});
}

/** Null for what has no meaning in another run: links and pointers. */
json ToJson(const GeData& value) {
  return VisitData(
      value,
      Overloaded{
          [](LONG number) {
            return json{{"long", number}};
          },
          [](LLONG number) {
            return json{{"llong", number}};
          },
          [](Real number) {
            return json{{"real", number}};
          },
          [](const Vector& v) {
            return json{{"vector", ToJson(v)}};
          },
          [](const Matrix& m) {
            return json{{"matrix", json::array({ToJson(m.off), ToJson(m.v1), ToJson(m.v2), ToJson(m.v3)})}};
          },
          [](const String& text) {
            return json{{"string", Utf8(text)}};
          },
          [](const Filename& path) {
            return json{{"filename", Utf8(path)}};
          },
          [](const BaseTime& time) {
            return json{{"time", json::array({time.GetNumerator(), time.GetDenominator()})}};
          },
          [](const BaseContainer& inner) {
            return json{{"container", ToJson(inner)}};
          },
          [](const SplineData& curve) {
            json knots = json::array();
            for (LONG i = 0; i < curve.GetKnotCount(); ++i)
              knots.push_back(json::array({curve.GetKnot(i).x, curve.GetKnot(i).y}));
            return json{{"curve", knots}};
          },
          [](const auto&) { return json(); },
      });
}

json ToJson(const BaseContainer& bc) {
  json object = json::object();
  for (LONG i = 0; i < bc.GetCount(); ++i) {
    json value = ToJson(*bc.GetIndexData(i));
    if (!value.is_null()) object[std::to_string(bc.GetIndexId(i))] = std::move(value);
  }
  return object;
}

/** A number that is not finite has no JSON form: it was written as null. */
double ToReal(const json& v) {
  return v.is_null() ? std::numeric_limits<double>::quiet_NaN() : v.get<double>();
}

LLONG ToInteger(const json& v, LLONG least, LLONG most) {
  const bool tooLarge = v.is_number_unsigned() && v.get<std::uint64_t>() > (std::uint64_t)most;
  if (!v.is_number_integer() || tooLarge || v.get<LLONG>() < least || v.get<LLONG>() > most)
    throw std::runtime_error("found " + (v.is_number() ? v.dump() : std::string(v.type_name())) +
                             ", expected an integer from " + std::to_string(least) + " to " +
                             std::to_string(most));
  return v.get<LLONG>();
}

/** A container's or value's number: nothing but digits, perhaps with a sign. */
LONG ToId(const std::string& text) {
  LONG id = 0;
  const std::from_chars_result end = std::from_chars(text.data(), text.data() + text.size(), id);
  if (end.ec != std::errc() || end.ptr != text.data() + text.size())
    throw std::runtime_error("found the key \"" + Shortened(text, 40) + "\", expected a 32-bit number");
  return id;
}

Vector ToVector(const json& v) {
  return Vector(ToReal(v.at(0)), ToReal(v.at(1)), ToReal(v.at(2)));
}

GeData ToCurve(const json& knots) {
  SplineData curve;
  for (const json& knot : knots)
    if (curve.InsertKnot(ToReal(knot.at(0)), ToReal(knot.at(1))) == NOTOK)
      throw std::runtime_error("found a knot out of range, expected x from 0 to 1 and a finite value");
  return GeData(CUSTOMDATATYPE_SPLINE, curve);
}

BaseContainer ToContainer(const json& object, int depth);

GeData ToValue(const json& value, int depth) {
  if (!value.is_object() || value.size() != 1)
    throw std::runtime_error(std::string("found ") + value.type_name() +
                             ", expected one value with its kind");
  const auto entry = value.begin();
  const std::string& kind = entry.key();
  const json& v = entry.value();
  if (kind == "long") return GeData((LONG)ToInteger(v, -0x80000000LL, 0x7fffffffLL));
  if (kind == "llong")
    return GeData(ToInteger(v, LLONG(~0ULL >> 1) * -1 - 1, LLONG(~0ULL >> 1)), LLONGVALUE_0);
  if (kind == "real") return GeData(ToReal(v));
  if (kind == "vector") return GeData(ToVector(v));
  if (kind == "matrix")
    return GeData(Matrix(ToVector(v.at(0)), ToVector(v.at(1)), ToVector(v.at(2)), ToVector(v.at(3))));
  if (kind == "string") return GeData(FromUtf8(v.get<std::string>()));
  if (kind == "filename") return GeData(Filename(FromUtf8(v.get<std::string>())));
  if (kind == "time") return GeData(BaseTime(ToReal(v.at(0)), ToReal(v.at(1))));
  if (kind == "curve") return ToCurve(v);
  if (kind == "container") return GeData(ToContainer(v, depth + 1));
  throw std::runtime_error(
      "found a value of kind " + kind +
      ", expected long, llong, real, vector, matrix, string, filename, time, curve or container");
}

BaseContainer ToContainer(const json& object, int depth) {
  if (depth > kDeepest) throw std::runtime_error("containers nest deeper than " + std::to_string(kDeepest));
  if (!object.is_object())
    throw std::runtime_error(std::string("found ") + object.type_name() + ", expected a container");
  BaseContainer bc;
  for (const auto& [id, value] : object.items()) bc.SetData(ToId(id), ToValue(value, depth));
  return bc;
}

std::string Dump(const json& root) {
  return root.dump(1, ' ', false, json::error_handler_t::replace);
}

/** No preferences come near this size. */
constexpr std::uintmax_t kMostBytes = 16 << 20;

/** The content of a regular file; false with the reason. */
bool ReadWhole(const fs::path& path, std::string* text, std::string* reason) {
  std::error_code code;
  const std::uintmax_t size = fs::is_regular_file(path, code) ? fs::file_size(path, code) : 0;
  if (code || !fs::is_regular_file(path, code)) {
    *reason = code ? code.message() : "it is not a regular file";
    return false;
  }
  if (size > kMostBytes) {
    *reason = "it holds " + std::to_string(size) + " bytes, expected at most " + std::to_string(kMostBytes);
    return false;
  }
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    *reason = errno != 0 ? std::generic_category().message(errno) : "it cannot be opened";
    return false;
  }
  text->assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  return true;
}

/** A name beside the file that nothing has yet. */
fs::path FreeName(const std::string& path) {
  std::error_code ignored;
  fs::path name = fs::u8path(path + ".damaged");
  for (int n = 2; fs::exists(fs::symlink_status(name, ignored)); ++n)
    name = fs::u8path(path + ".damaged" + std::to_string(n));
  return name;
}

std::map<LONG, BaseContainer> Parse(const std::string& text) {
  const json root = json::parse(text);
  if (!root.is_object())
    throw std::runtime_error(std::string("found ") + root.type_name() + ", expected containers by number");
  std::map<LONG, BaseContainer> read;
  for (const auto& [id, container] : root.items()) read[ToId(id)] = ToContainer(container, 0);
  return read;
}

} // namespace

void WorldData::Open(const std::string& folder, std::string* error) {
  if (folder.empty()) return;
  const fs::path path = fs::u8path(folder) / "preferences.json";
  path_ = path.u8string();
  std::error_code ignored;
  if (!fs::exists(fs::symlink_status(path, ignored))) return;
  std::string text, reason;
  if (!ReadWhole(path, &text, &reason)) {
    *error = path_ + ": " + reason + "; the preferences of this run are neither read nor saved";
    path_.clear();
    return;
  }
  try {
    containers_ = Parse(text);
    saved_ = Text();
  } catch (const std::exception& e) {
    const fs::path aside = FreeName(path_);
    std::error_code failed;
    fs::rename(path, aside, failed);
    *error = path_ + ": the preferences cannot be read and start empty, the file " +
             (failed ? "stays and nothing is saved" : "is now " + aside.u8string()) + ": " + e.what();
    if (failed) path_.clear();
  }
}

bool WorldData::Save(std::string* error) {
  if (path_.empty() || containers_.empty()) return true;
  const std::string text = Text();
  if (text == saved_ || (saved_.empty() && text == Dump(json::object()) + "\n")) return true;
  std::error_code ignored;
  fs::create_directories(fs::u8path(path_).parent_path(), ignored);
  ReplacingFile file(path_);
  std::string reason;
  bool saved = file.Open(&reason);
  if (saved) {
    file.NeverStop();
    file.MakePrivate();                          // plug-ins keep keys of their registration here
    file.File().Write(text.data(), text.size()); // a failure is remembered up to the commit
    saved = file.Commit(&reason);
  }
  if (!saved) {
    *error = path_ + ": " + reason;
    return false;
  }
  saved_ = text;
  return true;
}

/** Empty containers say nothing and are left out. */
std::string WorldData::Text() const {
  json root = json::object();
  for (const auto& entry : containers_)
    if (entry.second.GetCount() > 0) root[std::to_string(entry.first)] = ToJson(entry.second);
  return Dump(root) + "\n";
}

BaseContainer* WorldData::Get(LONG id) {
  const auto found = containers_.find(id);
  return found == containers_.end() ? nullptr : &found->second;
}

void WorldData::Set(LONG id, const BaseContainer& bc, bool add) {
  BaseContainer& own = containers_[id];
  if (add)
    own.MergeContainer(bc);
  else
    own = bc;
}

} // namespace host
