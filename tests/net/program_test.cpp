// The commands that ask services, run as a user runs them.
#include "support/loopback.h"
#include "support/program_run.h"

#include <mutex>

namespace cli_test {
namespace {

class ServiceCommands : public testing::Test {
protected:
  void SetUp() override {
    ClearProxies();
    for (const char* name : {"KELVRA_UPDATE_SERVER", "KELVRA_GEOMETRY_SERVICE", "KELVRA_CA_FILE"})
      ::unsetenv(name);
  }
  Result Run(const std::vector<std::string>& arguments, const std::string& input = "") {
    return RunProgram("kelvra", arguments, folder_ / "config", input);
  }
  void Set(const std::string& name, const std::string& value) {
    const Result result = Run({"prefs", "set", name, value});
    EXPECT_EQ(result.status, 0) << result.err;
  }
  const TempFolder folder_;
};

TEST_F(ServiceCommands, PreferencesSurviveARestart) {
  Set("order_reference", "K-17 \xc3\xa4\"\\");
  Set("1023", "42");
  EXPECT_EQ(Run({"prefs", "get", "order_reference"}).out, "K-17 \xc3\xa4\"\\\n");
  EXPECT_EQ(Run({"prefs", "get", "1001"}).out, "K-17 \xc3\xa4\"\\\n");
  EXPECT_EQ(
      Run({"prefs", "list"}).out,
      "version = 1.44\norder_reference = K-17 \xc3\xa4\"\\\nregistration_key = \nstatus = Unregistered\n"
      "geometry_service = \nupdate_server = \nca_file = \nproduct = 42\n");
  const std::string file = folder_ / "config/kelvra/preferences.json";
  const auto written = std::filesystem::last_write_time(file);
  EXPECT_EQ(Run({"info", folder_.Write("p.xyz", "1 2 3\n")}).status, 0);
  EXPECT_EQ(std::filesystem::last_write_time(file), written) << "only what changed is written";
  std::ofstream(file) << "{";
  const Result damaged = Run({"prefs", "get", "order_reference"});
  EXPECT_EQ(damaged.out, "\n");
  EXPECT_NE(damaged.err.find("preferences.json.damaged"), std::string::npos) << damaged.err;
}

TEST_F(ServiceCommands, WrongUseIsNamed) {
  const std::vector<std::vector<std::string>> wrong = {{"prefs"},
                                                       {"prefs", "get", "speed"},
                                                       {"prefs", "get", "register"},
                                                       {"prefs", "set", "version", "2"},
                                                       {"prefs", "set", "1006", "x"},
                                                       {"prefs", "set", "product", "many"},
                                                       {"update-check", "--yes", "--no"},
                                                       {"reproject", "x.xyz"},
                                                       {"reproject", "x.xyz", "--sr", "0"},
                                                       {"reproject", "x.xyz", "--sr", "EPSG:2994"}};
  for (const auto& arguments : wrong) {
    const Result result = Run(arguments);
    EXPECT_EQ(result.status, 2) << arguments.back();
    EXPECT_EQ(result.err.rfind("kelvra: ", 0), 0u) << result.err;
  }
  const Result result = RunProgram("kelvra", {"prefs", "set", "order_reference", "K-17"},
                                   folder_.Write("file", "where the folder should be"));
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("preferences.json"), std::string::npos) << result.err;
}

TEST_F(ServiceCommands, UpdateCheckIsAnsweredOnTheTerminalOrByAFlag) {
  WebServer server([](const httplib::Request&, httplib::Response& response) { response.body = "1.45"; });
  const Result unregistered = Run({"update-check"});
  EXPECT_EQ(unregistered.status, 1);
  EXPECT_TRUE(Holds(unregistered.err, "order reference"));
  Set("order_reference", "K-17");
  const Result unset = Run({"update-check"});
  EXPECT_EQ(unset.status, 1);
  EXPECT_TRUE(Holds(unset.err, "KELVRA_UPDATE_SERVER")) << unset.err;
  Set("update_server", server.Address());
  const std::string question = "Do you want to download Kelvra 1.45 ",
                    sent = "An email, with a download link, has been sent. (to the email address used for "
                           "your order)\n";
  const struct {
    std::vector<std::string> arguments;
    const char* input;
    std::string out;
  } cases[] = {{{"update-check", "--yes"}, "", question + "yes\n" + sent},
               {{"update-check", "--no"}, "", question + "no\n"},
               {{"update-check"}, "maybe\ny\n", question + "[y/n]  [y/n] " + sent},
               {{"update-check"}, "no\n", question + "[y/n] "},
               {{"update-check"}, "", question + "[y/n] \n"}};
  for (const auto& c : cases) {
    const Result result = Run(c.arguments, c.input);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, c.out);
  }
  Set("order_reference", "K 17");
  EXPECT_EQ(Run({"update-check", "--yes"}).status, 1) << "no mail was sent";
}

TEST_F(ServiceCommands, ReprojectPrintsSixTextsOrThatNothingWasAnswered) {
  std::mutex guard; // the server answers on a thread of its own
  std::string answer = R"({"geometries":[{"x":12.5,"y":47.25},{"x":13.125,"y":48.5}]})";
  const TestCertificate certificate;
  certificate.WritePem(folder_ / "ca.pem");
  WebServer server(
      [&](const httplib::Request&, httplib::Response& response) {
        const std::lock_guard<std::mutex> lock(guard);
        response.body = answer;
      },
      &certificate);
  const std::vector<std::string> command = {"reproject", folder_.Write("p.xyz", "1 2 3\n4 5 6\n"), "--sr",
                                            "2994"};
  const Result unset = Run(command);
  EXPECT_EQ(unset.status, 1);
  EXPECT_NE(unset.err.find("KELVRA_GEOMETRY_SERVICE"), std::string::npos) << unset.err;
  Set("geometry_service", server.Address());
  EXPECT_EQ(Run(command).status, 1) << "an authority that nobody trusts";
  EXPECT_EQ(server.Requests(), 0);
  Set("ca_file", folder_ / "ca.pem");
  const Result whole = Run(command);
  EXPECT_EQ(whole.status, 0) << whole.err;
  EXPECT_NE(whole.out.find("south-west longitude 12.50000000\nsouth-west latitude 47.00000000\n"
                           "north-east longitude 13.12500000\nnorth-east latitude 48.00000000\n"
                           "north-west longitude 12.50000000\nnorth-west latitude 48.00000000\n"),
            std::string::npos)
      << whole.out;
  for (const char* bad : {R"({"geometries":[{"x":12.5,"y":47.25}]})",
                          R"({"geometries":[{"x":12.5,"y":47.25},{"x":"NaN","y":"NaN"}]})"}) {
    {
      const std::lock_guard<std::mutex> lock(guard);
      answer = bad;
    }
    const Result result = Run(command);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out.find("longitude"), std::string::npos);
    EXPECT_EQ(result.err, "kelvra: the geometry service gave no answer with both corners\n");
  }
}

} // namespace
} // namespace cli_test
