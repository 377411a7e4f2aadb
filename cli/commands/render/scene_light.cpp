#include "cli/commands/render/scene_light.h"

#include "cli/session/cloud_session.h"
#include "host/render.h"

#include <cmath>
#include <regex>
#include <sstream>

namespace cli {

const std::vector<std::string> kDefaultLights = {"sun:300,38:1.45", "ambient:0.5:#e4ebff"};

namespace {

/** Coordinates and brightnesses beyond this are slips of the keyboard. */
const double kMost = 1e12;

const char* const kForms = "expected sun:AZIMUTH,ELEVATION, point:X,Y,Z or ambient, then :BRIGHTNESS and "
                           ":#RRGGBB if you like";

[[noreturn]] void Refuse(const std::string& text, const std::string& why) {
  throw UsageError{"--light " + text + ": " + why};
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

double Number(const std::string& text, const std::string& part) {
  static const std::regex form("[-+]?([0-9]+\\.?[0-9]*|\\.[0-9]+)([eE][-+]?[0-9]{1,3})?");
  if (!std::regex_match(part, form)) Refuse(text, "\"" + part + "\" is no number; " + kForms);
  const double value = std::strtod(part.c_str(), nullptr);
  if (!(std::abs(value) <= kMost)) Refuse(text, "\"" + part + "\" is out of range");
  return value;
}

struct LightText {
  std::string kind;
  std::vector<double> place;
  double brightness = 1.0;
  Vector color{1.0};
};

LightText Parse(const std::string& text) {
  LightText light;
  const std::vector<std::string> parts = Split(text, ':');
  light.kind = parts.empty() ? "" : parts[0];
  const std::size_t numbers = light.kind == "sun" ? 2 : light.kind == "point" ? 3 : 0;
  if (numbers == 0 && light.kind != "ambient") Refuse(text, kForms);
  std::size_t next = 1;
  if (numbers > 0) {
    const std::vector<std::string> place =
        next < parts.size() ? Split(parts[next], ',') : std::vector<std::string>();
    if (place.size() != numbers) Refuse(text, kForms);
    for (const std::string& part : place) light.place.push_back(Number(text, part));
    ++next;
  }
  if (next < parts.size() && parts[next][0] != '#') {
    light.brightness = Number(text, parts[next++]);
    if (light.brightness < 0.0) Refuse(text, "a brightness is 0 or more");
  }
  if (next < parts.size() && !ParseColor(parts[next++], &light.color))
    Refuse(text, "\"" + parts[next - 1] + "\" is no colour, expected #RRGGBB");
  if (next < parts.size()) Refuse(text, kForms);
  return light;
}

/** Axes of a light that shines from that compass direction. */
Matrix SunMatrix(double azimuth, double elevation) {
  const double a = Rad(azimuth), e = Rad(elevation);
  const Vector from(std::sin(a) * std::cos(e), std::sin(e), std::cos(a) * std::cos(e));
  Matrix m;
  m.v3 = -from;
  m.v1 = !(Vector(0, 1, 0) % m.v3);
  if (m.v1 == Vector()) m.v1 = Vector(1, 0, 0);
  m.v2 = m.v3 % m.v1;
  return m;
}

} // namespace

bool ParseColor(const std::string& text, Vector* color) {
  static const std::regex form("#[0-9a-fA-F]{6}");
  if (!std::regex_match(text, form)) return false;
  for (int i = 0; i < 3; ++i)
    (*color)[i] = (double)std::stoi(text.substr(1 + (std::size_t)i * 2, 2), nullptr, 16) / 255.0;
  return true;
}

void CheckLights(const std::vector<std::string>& texts) {
  for (const std::string& text : texts) Parse(text);
}

void AddLights(BaseDocument* doc, const std::vector<std::string>& texts) {
  for (const std::string& text : texts) {
    const LightText parsed = Parse(text);
    BaseObject* light = BaseObject::Alloc(Olight);
    if (!light) throw std::bad_alloc();
    BaseContainer* data = light->GetDataInstance();
    data->SetVector(host::kLightColor, parsed.color);
    data->SetReal(host::kLightBrightness, parsed.brightness);
    if (parsed.kind == "sun") {
      data->SetLong(host::kLightType, RT_LT_DISTANT);
      light->SetMl(SunMatrix(parsed.place[0], parsed.place[1]));
    } else if (parsed.kind == "point") {
      data->SetLong(host::kLightType, RT_LT_OMNI);
      light->SetMl(MatrixMove(Vector(parsed.place[0], parsed.place[1], parsed.place[2])));
    } else {
      data->SetLong(host::kLightType, RT_LT_AMBIENT);
    }
    doc->InsertObject(light, NULL, NULL);
  }
}

} // namespace cli
