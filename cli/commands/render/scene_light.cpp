#include "cli/commands/render/scene_light.h"

#include "cli/commands/options/number.h"
#include "cli/system/exit_status.h"
#include "host/render.h"

#include <cmath>

namespace cli {

namespace {

constexpr const char* kForms =
    "expected sun:AZIMUTH,ELEVATION, point:X,Y,Z or ambient, each with :BRIGHTNESS and :#RRGGBB if you like";

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

Matrix ParseSun(const std::string& text) {
  const std::vector<std::string> angles = Split(text, ',');
  if (angles.size() != 2) throw UsageError{kForms};
  const double azimuth = ParseNumber(angles[0]), elevation = ParseNumber(angles[1]);
  if (std::abs(elevation) > 90.0) throw UsageError{"the elevation of a sun is from -90 to 90 degrees"};
  return SunMatrix(azimuth, elevation);
}

} // namespace

SceneLight ParseLight(const std::string& text) {
  const std::vector<std::string> parts = Split(text, ':');
  const std::string kind = parts.empty() ? "" : parts[0];
  std::size_t next = 1;
  const auto take = [&] { return next < parts.size() ? parts[next++] : std::string(); };

  SceneLight light;
  if (kind == "sun") {
    light.type = RT_LT_DISTANT;
    light.place = ParseSun(take());
  } else if (kind == "point") {
    light.type = RT_LT_OMNI;
    light.place = MatrixMove(ParsePosition(take()));
  } else if (kind != "ambient") {
    throw UsageError{kForms};
  }

  if (next < parts.size() && parts[next][0] != '#') light.brightness = ParseNumber(take());
  if (light.brightness < 0.0) throw UsageError{"a brightness is 0 or more"};
  if (next < parts.size()) light.color = ParseColor(take());
  if (next < parts.size()) throw UsageError{kForms};
  return light;
}

std::vector<SceneLight> DefaultLights() {
  return {ParseLight("sun:300,38:1.45"), ParseLight("ambient:0.5:#e4ebff")};
}

void AddLights(BaseDocument* doc, const std::vector<SceneLight>& lights) {
  for (const SceneLight& light : lights) {
    BaseObject* op = BaseObject::Alloc(Olight);
    if (!op) throw std::bad_alloc();
    BaseContainer* data = op->GetDataInstance();
    data->SetVector(host::kLightColor, light.color);
    data->SetReal(host::kLightBrightness, light.brightness);
    data->SetLong(host::kLightType, light.type);
    op->SetMl(light.place);
    doc->InsertObject(op, nullptr, nullptr);
  }
}

} // namespace cli
