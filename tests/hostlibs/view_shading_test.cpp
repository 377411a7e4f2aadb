// Cameras that frame a box, and shading by depth.
#include "host/view/eye_dome.h"
#include "support/common.h"

#include <cmath>
#include <limits>

namespace host {
namespace {

/** Largest distance of the box's corners from the picture's middle; 1 is the edge. */
double Reach(const ViewCamera& camera, const Framing& framing) {
  ViewFrame frame = MakeFrame(camera, framing.aspect);
  FitRange(&frame, framing.box);
  float m[16];
  ClipMatrix(frame, Matrix(), m);
  double reach = 0.0;
  for (int i = 0; i < 8; ++i) {
    const Vector corner = framing.box.Corner(i);
    const double p[4] = {corner.x, corner.y, corner.z, 1.0};
    double clip[4] = {};
    for (int c = 0; c < 4; ++c)
      for (int row = 0; row < 4; ++row) clip[row] += (double)m[c * 4 + row] * p[c];
    EXPECT_LE(std::abs(clip[2]), clip[3] * 1.001) << "between the near and the far plane";
    reach = std::max({reach, std::abs(clip[0] / clip[3]), std::abs(clip[1] / clip[3])});
  }
  return reach;
}

TEST(Framing, ShowsTheFarWallOfARoomThatIsFarFromTheOrigin) {
  const Vector corner(4300, 50, 2800);
  const Box room = {corner, corner + Vector(6, 2.6, 4)};
  ViewCamera camera;
  camera.position = room.Centre();
  camera.target = camera.position + Vector(0, 0, 1);
  ViewFrame frame = MakeFrame(camera, 1.5);
  FitRange(&frame, room);
  float m[16];
  ClipMatrix(frame, Matrix(), m);
  for (int i = 0; i < 1000; ++i) {
    const float p[3] = {(float)(corner.x + i * 0.006), (float)(corner.y + i * 0.0026), (float)(corner.z + 4)};
    const auto row = [&](int r) { return m[r] * p[0] + m[4 + r] * p[1] + m[8 + r] * p[2] + m[12 + r]; };
    ASSERT_LT(row(2), row(3)) << i;
  }
}

TEST(Framing, HasTheWholeBoxInThePictureFromEverywhere) {
  for (const Vector& direction :
       {Framing::UsualDirection(), Vector(0, 0, 1), Vector(0, -1, 0), Vector(0, 1, 0), !Vector(-1, -0.8, 1)})
    for (const bool parallel : {false, true})
      for (const double size : {1.0, 0.5})
        for (const bool turn : {false, true}) {
          ViewCamera camera;
          camera.parallel = parallel;
          camera.roll = turn ? 0.0 : 25.0;
          Framing framing;
          framing.box = {Vector(-300, 5, 1000), Vector(100, 45, 1100)};
          framing.forward = direction;
          framing.aspect = 1.6;
          framing.size = size;
          framing.wholeTurn = turn;
          camera = FrameBox(camera, framing);
          double reach = 0.0;
          for (int angle = 0; angle < (turn ? 360 : 1); angle += 10)
            reach = std::max(reach, Reach(TurnedCamera(camera, angle), framing));
          EXPECT_LE(reach, 1.0) << parallel << turn << size;
          EXPECT_GT(reach, (parallel ? 0.9 : 0.6) * size) << parallel << turn << size;
        }
}

TEST(EyeDome, DarkensWhatLiesBehindAnEdgeAndNothingElse) {
  const float nothing = std::numeric_limits<float>::infinity();
  gl::Image image{9, 3, 3, std::vector<std::uint8_t>(9 * 3 * 3, 200)};
  std::vector<float> distances;
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 9; ++x) distances.push_back(x < 3 ? 10.0f : x < 7 ? 11.0f : nothing);
  EyeDome settings;
  settings.radius = 1.0;
  ShadeByDepth(&image, distances, settings);
  const int expected[9] = {200, 200, 200, -1, 200, 200, 200, 200, 200};
  for (int x = 0; x < 9; ++x)
    if (expected[x] >= 0) {
      EXPECT_EQ(image.At(x, 1)[0], expected[x]) << x;
    } else {
      EXPECT_LT(image.At(x, 1)[0], 150) << x;
    }
}

} // namespace
} // namespace host
