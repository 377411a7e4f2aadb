#include "support/probe_plugins.h"

namespace {

const std::filesystem::path kFolder = std::filesystem::absolute(HOST_TEST_MODULES).make_preferred();

/** Path of a test module, as the host names it. */
std::string Module(const std::string& name) {
  return (kFolder / ("host_test_" + name + ".so")).u8string();
}

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

struct BrokenModule {
  const char* name;
  const char* message;      ///< part of the one line
  const char* misbehaviour; ///< part of the report, empty for none
  bool ends;                ///< its PluginEnd must have run
};

class BrokenModules : public testing::TestWithParam<BrokenModule> {};

TEST_P(BrokenModules, GiveOneLineAndLeaveNothing) {
  host::Application application;
  const std::string path = Module(GetParam().name);
  std::string error;
  EXPECT_FALSE(application.LoadModule(path, &error));
  EXPECT_EQ(error.find(path + ": "), 0u) << error;
  EXPECT_TRUE(Contains(error, GetParam().message)) << error;
  EXPECT_EQ(error.find('\n'), std::string::npos);
  EXPECT_TRUE(application.Plugins().empty()) << "what it had registered is gone";
  EXPECT_EQ(application.GetConsole().Lines().size(), GetParam().ends ? 1u : 0u);
  const std::vector<std::string> reports = application.Misbehaviour();
  EXPECT_EQ(reports.size(), *GetParam().misbehaviour ? 1u : 0u);
  for (const std::string& report : reports) EXPECT_TRUE(Contains(report, GetParam().misbehaviour)) << report;
  EXPECT_EQ(application.Close(), std::vector<std::string>());
}

INSTANTIATE_TEST_SUITE_P(
    Modules, BrokenModules,
    testing::Values(
        BrokenModule{"missing", "cannot be opened", "", false},
        BrokenModule{"no_entry", "found no exported function c4d_main", "", false},
        BrokenModule{"wrong_version", "loader version: found 4, expected 5", "", false},
        BrokenModule{"newer_host", "needs a newer application", "", false},
        BrokenModule{"entry_throws", "system initialisation refused", "left c4d_main: no mood", false},
        BrokenModule{"message_refused", "found answer -1 to the initialisation message", "", true},
        BrokenModule{"start_refused", "start refused", "", true},
        BrokenModule{"start_throws", "start refused", "in PluginStart: bad start", true}),
    [](const auto& broken) { return std::string(broken.param.name); });

class SoundModule : public testing::Test {
protected:
  void SetUp() override {
    std::string error;
    ASSERT_TRUE(application_.LoadModule(Module("sound"), &error)) << error;
    doc_ = application_.NewDocument();
    op_ = host::CreateObjectFromMenu(doc_, 1099101);
    ASSERT_NE(op_, nullptr);
  }

  host::Application application_;
  BaseDocument* doc_ = nullptr;
  BaseObject* op_ = nullptr;
};

TEST_F(SoundModule, RegistersWorksAndLeavesNothingAlive) {
  const std::vector<host::PluginInfo> plugins = application_.Plugins();
  ASSERT_EQ(plugins.size(), 2u);
  EXPECT_EQ(plugins[0].id, 1099101);
  EXPECT_EQ(plugins[0].name, "Worker");
  EXPECT_EQ(plugins[0].diskLevel, 2);
  EXPECT_EQ(plugins[0].module, Module("sound"));
  EXPECT_EQ(application_.GetConsole().Lines(),
            (std::vector<std::string>{"initialise", "priority 0", "start"}));
  std::string error;
  EXPECT_FALSE(application_.LoadModule(Module("sound"), &error));
  EXPECT_TRUE(Contains(error, "loaded already"));
  application_.PressButton(op_, 5);
  EXPECT_EQ(application_.GetConsole().Lines().back(), kFolder.u8string()) << "the module knows its folder";

  EXPECT_EQ(application_.Live().nodeData, 1);
  application_.CloseDocument(doc_);
  application_.UnloadModules();
  EXPECT_EQ(application_.GetConsole().Lines().back(), "end");
  EXPECT_EQ(application_.Live().nodes + application_.Live().nodeData + application_.Live().bitmaps, 0);
  EXPECT_EQ(application_.Close(), std::vector<std::string>());
}

struct Fault {
  LONG button;
  std::vector<const char*> parts; ///< of the one line that is reported when all is closed
};

class FaultyModule : public SoundModule, public testing::WithParamInterface<Fault> {};

TEST_P(FaultyModule, IsReportedOnceAndLeavesNothing) {
  application_.PressButton(op_, GetParam().button);
  std::vector<std::string> lines = application_.Misbehaviour();
  for (const std::string& line : application_.Close()) lines.push_back(line);
  ASSERT_EQ(lines.size(), 1u) << testing::PrintToString(lines);
  for (const char* part : GetParam().parts) EXPECT_TRUE(Contains(lines[0], part)) << lines[0];
  EXPECT_EQ(application_.Live().nodeData, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Modules, FaultyModule,
    testing::Values(Fault{1, {"module misbehaves: 1 block ", "modules/plugin_module.cpp:"}}, // never freed
                    Fault{2, {"1 node of type 1099101 is still alive"}},
                    Fault{3, {"button of doom", "Message"}},    // an exception
                    Fault{4, {"module misbehaves: free of"}})); // freed twice

} // namespace
