// The list of parameters, and what is said about wrong ones.
#include "support/program_run.h"

namespace cli_test {
namespace {

TEST(Params, TellNumberRangeAndPurpose) {
  const Result text = Kelvra({"params", "Transparency"});
  EXPECT_TRUE(
      Holds(text.out, "transparency (1252): from 0 to 1, or from 0% to 100%; default 0%\n      Light "))
      << text.out;
  const nlohmann::json all = Kelvra({"params", "--json"}).Json();
  std::set<std::string> places;
  for (const nlohmann::json& parameter : all) {
    places.insert(parameter["of"].get<std::string>());
    EXPECT_FALSE(parameter["sentence"].get<std::string>().empty()) << parameter["name"];
  }
  EXPECT_EQ(places, (std::set<std::string>{"object", "preferences", "video post"}));
  for (const auto& [word, first] :
       {std::pair("1009", "object_size"), std::pair("class", "load_color"), std::pair("thin", "thin_view"),
        std::pair("step", "load_nth"), std::pair("classes", "load_color"), std::pair("Grey", "ramp"),
        std::pair("decimate", "point_share"), std::pair("max points", "load_budget")})
    EXPECT_EQ(Kelvra({"params", "--json", word}).Json()[0]["name"], first) << word;
}

TEST(Params, WrongOnesAreAnsweredWithTheNearestOrTheRange) {
  const TempFolder folder;
  const std::string cloud = folder.Write("c.xyz", "1 2 3\n");
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"params", "transparancy"}, "did you mean transparency?"},
      {{"info", cloud, "--set", "transparancy=1"}, "did you mean transparency?"},
      {{"info", cloud, "--set", "radius=1"}, "falloff_radius, point_radius or radius_variation?"},
      {{"info", cloud, "--set", "99999=1"}, "unknown parameter (kelvra params lists them)"},
      {{"info", cloud, "--set", "transparency=150%"}, "expected a number from 0 to 1, or from 0% to 100%"},
      {{"info", cloud, "--set", "color_mode=plaid"}, "expected one of point, red,"},
      {{"info", cloud, "--set", "point_radius=0,5"}, "expected a number from 0, with a decimal point"},
      {{"info", cloud, "--set", "load_nth=4,5"}, "expected a whole number from 1\n"},
      {{"snapshot", cloud, "--ouput", "x.png"}, "there is no option --ouput; did you mean --output?"},
      {{"snapshot", cloud, "-o", "x.png", "--view", "top", "--view", "left"}, "expected 1 value, found 2"},
      {{"snapshot", cloud, "-o", "x.png", "--background"},
       "expected #RRGGBB, found nothing; put it in quotes"},
      {{"prefs", "get", "ca_fil"},
       "unknown preference; did you mean ca_file? (kelvra prefs list shows them)"},
      {{"convert", cloud, "--mode", "hair", "--ratio", "10"}, "did you mean 10%?"},
      {{"render", cloud, "-o", "x.png", "--threads", "0"},
       "--threads 0: expected a whole number from 1 to 64"},
      {{"render", cloud, "-o", "x.png", "--depth", "12"}, "--depth 12: expected 8, 16 or 32"},
      {{"render", cloud, "-o", "x.png", "--view", "top", "--camera", "0,0,0", "--target", "1,0,0"},
       "cannot be given together with"},
      {{"sequence", cloud, "-o", "x_#.png", "--frames", "0-1", "--set", "light=maybe"},
       "--set light=maybe: expected"},
      {{"rendr"}, "did you mean render?"}};
  for (const auto& [arguments, part] : cases) {
    const Result result = Kelvra(arguments);
    EXPECT_EQ(result.status, 2);
    EXPECT_TRUE(Holds(result.err, part)) << result.err;
    EXPECT_FALSE(Holds(result.err, "KELVRA_")) << result.err;
  }
}

} // namespace
} // namespace cli_test
