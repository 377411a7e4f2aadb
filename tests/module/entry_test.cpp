// The module's entry: what it registers, what it does when that is refused, and the calls that the host
// makes.
#include "support/module_fixture.h"

#include "c4d_os.h"
#include "host/seam/dynamic_library.h"

namespace {

using Lines = std::vector<std::string>;
const Lines kNoLines;

struct Registered {
  PLUGINTYPE kind;
  LONG id;
  const char* name;
  LONG info;
  const char* description;
  LONG diskLevel, sortId;
};

// In the order of registration.
const Registered kRegistered[] = {
    {PLUGINTYPE_OBJECT, kCloud, "Kelvra Point Cloud", 4, "Otallyframe", 0, 0},
    {PLUGINTYPE_VIDEOPOST, kRecorder, "Ondrix Tallyframe", 6, "", 10000, 0},
    {PLUGINTYPE_SHADER, kShader, "Kelvra Ray Colors", 0, "XKelvra_Shader", 0, 0},
    {PLUGINTYPE_VIDEOPOST, kVoxelPost, "Kelvra Render", 1, "VPkelvrarender", 1, 0},
    {PLUGINTYPE_VIDEOPOST, kBuilder, "Kelvra Render Builder", 268435458, "", 99999999, 0},
    {PLUGINTYPE_SCENEHOOK, kHook, "Kelvra Render Hook", 536870912, "", 0, 0},
    {PLUGINTYPE_COREMESSAGE, kTimer, "", 0, "", 0, 0},
    {PLUGINTYPE_PREFS, kPrefs, "Kelvra", 0, "KelvraPrefs", 0, 10000060},
};

TEST(Entry, RegistersEveryPlugInInOrderAndSaysSo) {
  host::Application application;
  std::string error;
  ASSERT_TRUE(application.LoadModule(kModule, &error)) << error;
  const std::vector<host::PluginInfo> plugins = application.Plugins();
  ASSERT_EQ(plugins.size(), std::size(kRegistered));
  for (std::size_t i = 0; i < plugins.size(); ++i) {
    const host::PluginInfo& found = plugins[i];
    const Registered& expected = kRegistered[i];
    EXPECT_EQ(std::tie(found.id, found.name, found.description),
              std::tuple(expected.id, expected.name, expected.description));
    EXPECT_EQ(std::tie(found.kind, found.info, found.diskLevel, found.sortId),
              std::tie(expected.kind, expected.info, expected.diskLevel, expected.sortId))
        << expected.id;
  }
  EXPECT_EQ(application.GetConsole().Lines(), Lines{"Kelvra Version 1.44 installed..."});
  EXPECT_EQ(application.Misbehaviour(), kNoLines);
  EXPECT_EQ(application.Close(), kNoLines);
}

class RefusedRegistration : public testing::TestWithParam<int> {};

TEST_P(RefusedRegistration, StopsOnlyWhatNeedsIt) {
  // What goes missing with each refusal: the voxel post takes builder and hook along, the builder the hook.
  const std::set<LONG> missing[] = {{kCloud},          {kRecorder}, {kShader}, {kVoxelPost, kBuilder, kHook},
                                    {kBuilder, kHook}, {kHook},     {kTimer},  {kPrefs}};
  // The chain's members are not even tried.
  host::Application application;
  application.GetFaults().FailAt(host::Fault::Registration, GetParam() + 1);
  std::string error;
  ASSERT_TRUE(application.LoadModule(kModule, &error)) << error;
  std::set<LONG> expected, found;
  for (const Registered& plugin : kRegistered)
    if (!missing[GetParam()].count(plugin.id)) expected.insert(plugin.id);
  for (const host::PluginInfo& plugin : application.Plugins()) found.insert(plugin.id);
  EXPECT_EQ(found, expected);
  EXPECT_EQ(application.GetFaults().Calls(host::Fault::Registration), (long long)expected.size() + 1);
  EXPECT_EQ(application.GetConsole().Lines(), Lines{"Kelvra Version 1.44 installed..."});
  EXPECT_EQ(application.Close(), kNoLines) << "a refused plug-in leaks";
}

INSTANTIATE_TEST_SUITE_P(Each, RefusedRegistration, testing::Range(0, 8));

TEST(Entry, EveryRefusedAllocationAtStartLeavesARunningApplication) {
  for (int n = 1; n < 400; ++n) {
    SCOPED_TRACE(n);
    host::Application application;
    application.GetFaults().FailAt(host::Fault::Allocation, n);
    std::string error;
    application.LoadModule(kModule, &error);
    const bool struck = application.GetFaults().Calls(host::Fault::Allocation) >= n;
    application.GetFaults().Clear();
    application.NewDocument();
    EXPECT_EQ(application.Close(), kNoLines);
    if (!struck) return;
  }
  FAIL() << "start-up never ran out of allocations";
}

TEST(Entry, LoadsAgainAfterUnloading) {
  host::Application application;
  for (int i = 0; i < 2; ++i) {
    std::string error;
    ASSERT_TRUE(application.LoadModule(kModule, &error)) << error;
    BaseDocument* doc = application.NewDocument();
    EXPECT_NE(host::CreateObjectFromMenu(doc, kCloud), nullptr);
    application.CloseDocument(doc);
    application.UnloadModules();
    EXPECT_EQ(application.Live().nodes + application.Live().nodeData + application.Live().bitmaps, 0);
    EXPECT_TRUE(application.Plugins().empty());
  }
  EXPECT_EQ(application.Misbehaviour(), kNoLines);
  EXPECT_EQ(application.Close(), kNoLines);
}

class EntryCalls : public testing::Test {
protected:
  void SetUp() override {
    std::string error;
    ASSERT_TRUE(library_.Open(kModule, &error)) << error;
    entry_ = (EntryPoint*)library_.Find("c4d_main");
    ASSERT_NE(entry_, nullptr);
  }
  void TearDown() override { application_.Close(); }

  LONG Initialise(OperatingSystem* os) { return entry_(1, os, nullptr, &file_); }
  LONG Message(LONG id) { return entry_(6, (void*)(VLONG)id, nullptr, nullptr); }
  LONG Call(LONG action) { return entry_(action, nullptr, nullptr, nullptr); }

  typedef LONG EntryPoint(LONG action, void* p1, void* p2, void* p3);
  host::DynamicLibrary library_;
  host::Application application_;
  Filename file_{kModule.c_str()};
  EntryPoint* entry_ = nullptr;
};

TEST_F(EntryCalls, AnOlderApplicationIsRefusedBeforeAnythingRuns) {
  OperatingSystem older = C4DOS;
  older.version = 13999;
  EXPECT_EQ(Initialise(&older), -3);
  EXPECT_EQ(Call(2), FALSE) << "a refused module does not start";
  EXPECT_TRUE(application_.Plugins().empty());
  EXPECT_EQ(application_.GetConsole().Lines(), kNoLines);
  older.version = 14000;
  EXPECT_EQ(Initialise(&older), 1) << "the first that is new enough";
  EXPECT_EQ(Call(3), 1);
}

TEST_F(EntryCalls, AnswersVersionQueriesAndUnknownActions) {
  EXPECT_EQ(Call(4), 5);
  for (const LONG action : {0, 5, 7, -1, 1000}) EXPECT_EQ(Call(action), -1) << action;
}

TEST_F(EntryCalls, MessagesAreAnsweredById) {
  ASSERT_EQ(Initialise(&C4DOS), 1);
  EXPECT_EQ(Message(0), 1);
  EXPECT_EQ(Message(1), 1);
  for (const LONG id : {2, -1, 1000, 1001, 1037073}) EXPECT_EQ(Message(id), -1) << id;
  EXPECT_EQ(Call(3), 1);

  file_ = Filename("/nowhere/kelvra.so");
  ASSERT_EQ(Initialise(&C4DOS), 1);
  EXPECT_EQ(Message(1), -1) << "no resources there";
  EXPECT_EQ(Call(3), 1);
}

TEST_F(EntryCalls, OnlyTheLastOfNestedEndsReleases) {
  ASSERT_EQ(Initialise(&C4DOS), 1);
  OperatingSystem older = C4DOS;
  older.version = 13999;
  EXPECT_EQ(Initialise(&older), 1) << "only the first of nested calls looks at the version";
  ASSERT_EQ(Message(1), 1);
  ASSERT_EQ(Call(2), TRUE);
  ASSERT_EQ(application_.Plugins().size(), std::size(kRegistered));
  const LLONG started = application_.Live().blocks;
  EXPECT_EQ(Call(3), 1);
  EXPECT_EQ(application_.Live().blocks, started);
  EXPECT_EQ(Message(0), 1) << "still initialised";
  EXPECT_EQ(Call(3), 1);
  EXPECT_LT(application_.Live().blocks, started);
  EXPECT_EQ(Message(0), -1);
}

} // namespace
