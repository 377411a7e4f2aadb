// The corners of a cloud in degrees: the request's text, the answer cut apart, and the six texts of the
// object.
#include "object/reprojection.h"

#include "host/base/text.h"
#include "support/loopback.h"
#include "support/object_fixture.h"

namespace kelvra {
namespace {

using host::Utf8;

constexpr const char* kAnswer =
    R"({"geometryType":"esriGeometryPoint","geometries":[{"x":12.5,"y":47.25},{"x":-13.125,"y":-48.5}]})";

class Reprojection : public ObjectTest {
protected:
  void SetUp() override {
    ObjectTest::SetUp();
    ClearProxies();
  }
  void TearDown() override {
    ::unsetenv("KELVRA_GEOMETRY_SERVICE");
    ObjectTest::TearDown();
  }
  std::string Shown(LONG id) { return Utf8(op_->GetDataInstance()->GetString(id)); }
  std::vector<std::string> AllShown() {
    return {Shown(1603), Shown(1604), Shown(1605), Shown(1606), Shown(1607), Shown(1608)};
  }
  void SetReference(const char* text) {
    EXPECT_TRUE(op_->SetParameter(DescID(1601), GeData(String(text)), DESCFLAGS_SET_0));
  }
};

TEST_F(Reprojection, PointsAreWrittenWithNineDecimals) {
  const struct {
    LReal x, y;
    const char* text;
  } cases[] = {{12.5, -47.25, R"({"x":12.500000000,"y":-47.250000000})"},
               {636975.0449999999, 1e15, R"({"x":636975.045000000,"y":1000000000000000.000000000})"},
               {0.0, -1e-12, R"({"x":0.000000000,"y":-0.000000000})"}};
  for (const auto& c : cases) EXPECT_EQ(Utf8(FormatPoint(c.x, c.y)), c.text);
  EXPECT_EQ(
      Utf8(ProjectRequest("http://h", -2994, {1, 2, 3, 4})),
      "http://h/ArcGIS/rest/services/Geometry/GeometryServer/project?f=json&inSR=-2994&outSR=4326&geometries="
      "{\"geometryType\":\"esriGeometryPoint\",\"geometries\":[{\"x\":1.000000000,\"y\":2.000000000},"
      "{\"x\":3.000000000,\"y\":4.000000000}]}");
}

TEST_F(Reprojection, AnswersChangeAsMuchAsTheyHold) {
  const struct {
    const char* answer;
    LReal a1, a2, b1, b2; ///< 1 to 4 where nothing is read
    const char* read;
  } cases[] = {
      {kAnswer, 12.5, 47, -13.125, -48, "1111"},
      {R"({"geometries":[{"x":12.5,"y":47.25}]})", 12.5, 47, 3, 4, "1100"},
      {R"({"error":{"x":12.5,"y":47.25}})", 1, 2, 3, 4, "0000"},
      {R"([{"x":9,"y":9}] geometries {"x":5.25,"y":6.75} {"x":7})", 5.25, 6, 3, 4, "1100"},
      {R"(geometries {"x":5,"q"} {"x":7,"y":8.5})", 5, 2, 7, 8, "1011"}, // no second number in the first
      {R"(geometries {} {"x":7,"y":8.25})", 1, 2, 7, 8, "0011"},         // a negative length is not a text
      {R"(geometries {"x":5,"y":6.25)", 1, 2, 3, 4, "0000"},             // no closing brace
      {R"(geometries {"x":5,"y":61})", 5, 2, 3, 4, "1000"},              // both digits are cut off
      {R"(geometries {"x":,"y":12} {"x": 1e2 ,"y": -3 "})", 1, 2, 100, -3, "0011"},
      {R"(geometries {"x":NaN,"y":-Infinity00} {"x":"7","y":300})", 1, 2, 3, 3, "0001"},
      {R"(geometries {a:1:2,b:34,c:4} {,"x":12.5})", 1, 34, 3, 4, "1100"},
      {"geometrie", 1, 2, 3, 4, "0000"},
      {"", 1, 2, 3, 4, "0000"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.answer);
    CornerPair corners{1, 2, 3, 4};
    const CoordinatesRead read = ReadProjectAnswer(c.answer, corners);
    EXPECT_EQ((std::vector<LReal>{corners.a1, corners.a2, corners.b1, corners.b2}),
              (std::vector<LReal>{c.a1, c.a2, c.b1, c.b2}));
    std::string flags;
    for (const Bool flag : {read.a1, read.a2, read.b1, read.b2}) flags += flag ? '1' : '0';
    EXPECT_EQ(flags, c.read);
  }
}

TEST_F(Reprojection, ReferenceZeroAsksNobody) {
  WebServer server([](const httplib::Request&, httplib::Response& response) { response.body = kAnswer; });
  ::setenv("KELVRA_GEOMETRY_SERVICE", server.Address().c_str(), 1);
  LReal a1 = 1, a2 = 2, b1 = 3, b2 = 4;
  EXPECT_FALSE(Reproject(0, a1, a2, b1, b2));
  EXPECT_EQ(server.Requests(), 0);
  EXPECT_EQ(a1, 1);
  EXPECT_TRUE(Reproject(2994, a1, a2, b1, b2));
  EXPECT_EQ(server.Requests(), 1);
  EXPECT_EQ((std::vector<LReal>{a1, a2, b1, b2}), (std::vector<LReal>{12.5, 47, -13.125, -48}));
}

TEST_F(Reprojection, NoAnswerChangesNothingAndIsNoError) {
  WebServer server([](const httplib::Request&, httplib::Response& response) {
    response.status = 500;
    response.body = kAnswer;
  });
  for (const std::string& address : {server.Address(), std::string("http://127.0.0.1:1")}) {
    ::setenv("KELVRA_GEOMETRY_SERVICE", address.c_str(), 1);
    LReal a1 = 1, a2 = 2, b1 = 3, b2 = 4;
    EXPECT_TRUE(Reproject(2994, a1, a2, b1, b2));
    EXPECT_EQ((std::vector<LReal>{a1, a2, b1, b2}), (std::vector<LReal>{1, 2, 3, 4}));
  }
}

TEST_F(Reprojection, ObjectAsksForItsFirstBlockAndShowsSixTexts) {
  std::string body = kAnswer;
  RawServer server([&](int s) { RawServer::Send(s, Head(body.size()) + body); });
  ::setenv("KELVRA_GEOMETRY_SERVICE", (server.Address() + "/").c_str(), 1);
  SetReference("2994");
  EXPECT_EQ(server.RequestLines().size(), 0u) << "nothing to ask for without a point";
  PointGroup group = Group({Vector(10, 20, 30), Vector(11, 21, 31)});
  group.blocks[0].header.SetBounds(LVector(100, 200, 0), LVector(300, 400, 9));
  ASSERT_TRUE(Cloud(op_).store.Merge(group));

  for (const char* noNumber : {"", "EPSG:2994", "0", "2994x"}) SetReference(noNumber);
  EXPECT_EQ(server.RequestLines().size(), 0u);
  Cloud(op_).settingsChanged = 0;
  SetReference("2994");
  EXPECT_EQ(Cloud(op_).settingsChanged, 1);
  ASSERT_EQ(server.RequestLines().size(), 1u);
  EXPECT_NE(
      server.RequestLines()[0].find("inSR=2994&outSR=4326&geometries={\"geometryType\":\"esriGeometryPoint\","
                                    "\"geometries\":[{\"x\":100.000000000,\"y\":200.000000000},"
                                    "{\"x\":300.000000000,\"y\":400.000000000}]} HTTP/1.1"),
      std::string::npos)
      << server.RequestLines()[0];
  const std::vector<std::string> shown = {"47.00000000",  "-13.12500000", "12.50000000",
                                          "-48.00000000", "-48.00000000", "12.50000000"};
  EXPECT_EQ(AllShown(), shown);
  const PointHeader& header = Cloud(op_).store.GetFirstBlock()->header;
  EXPECT_EQ(header.slots[kSlotMinX], 100) << "the block's own header stays as it is";
  body = R"(geometries {"x":1,"y":2.25})";
  SetReference("2995");
  EXPECT_EQ(server.RequestLines().size(), 2u);
  EXPECT_EQ(AllShown(), shown) << "one point is not enough";
}

} // namespace
} // namespace kelvra
