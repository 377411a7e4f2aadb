#include "host/base/user_break.h"
#include "support/folder.h"
#include "support/probe_plugins.h"

namespace {

class HostServices : public HostTest {};

TEST_F(HostServices, DialogsTakeTheirAnswersInOrder) {
  host::Dialogs& dialogs = application_->GetDialogs();
  dialogs.AnswerFile("/tmp/a.las");
  dialogs.AnswerFile("");
  dialogs.AnswerFile("/tmp/x.y/out.dat");
  dialogs.AnswerQuestion(GEMB_R_NO);
  Filename name;
  EXPECT_TRUE(name.FileSelect(FILESELECTTYPE_ANYTHING, FILESELECT_LOAD, "Open"));
  EXPECT_EQ(Text(name.GetString()), "/tmp/a.las");
  EXPECT_FALSE(name.FileSelect(FILESELECTTYPE_ANYTHING, FILESELECT_LOAD, "Again"));
  EXPECT_EQ(Text(name.GetString()), "/tmp/a.las") << "a cancelled dialog touches nothing";
  EXPECT_TRUE(name.FileSelect(FILESELECTTYPE_ANYTHING, FILESELECT_SAVE, "Save", "txt"));
  EXPECT_EQ(Text(name.GetString()), "/tmp/x.y/out.txt");
  EXPECT_FALSE(name.FileSelect(FILESELECTTYPE_ANYTHING, FILESELECT_LOAD, "No answer left"));
  MessageDialog("told");
  EXPECT_FALSE(QuestionDialog("sure?")) << "the message took no answer away";
  EXPECT_TRUE(QuestionDialog("really?")) << "without an answer a question is confirmed";
  ASSERT_EQ(dialogs.Shown().size(), 7u);
  EXPECT_EQ(dialogs.Shown()[4].text, "told");
  EXPECT_FALSE(dialogs.Shown()[4].file);
}

TEST_F(HostServices, FaultTextsAreChecked) {
  const auto parse = [](const char* text) {
    host::Faults parsed;
    std::string reason;
    const bool taken = parsed.Parse(text, &reason);
    EXPECT_EQ(taken, reason.empty()) << text;
    return taken;
  };
  for (const char* good : {"allocation=3", "write=2:5", "userbreak=1"}) EXPECT_TRUE(parse(good)) << good;
  for (const char* bad : {"allocation=0", "allocation=", "write=1:0", "write=a", "nothing=1", "", "write=-1",
                          "write=99999999999999999999"})
    EXPECT_FALSE(parse(bad)) << bad;
  host::Faults faults;
  std::string error, struck;
  ASSERT_TRUE(faults.Parse("write=2:2", &error));
  for (int i = 0; i < 5; ++i) struck += faults.Strikes(host::Fault::FileWrite) ? '1' : '0';
  EXPECT_EQ(struck, "01100");
}

TEST_F(HostServices, RegistrationsThatAreWrongAreRefused) {
  cleanExpected_ = false;
  OBJECTPLUGIN sound = {};
  const auto submit = [&](PLUGINTYPE type, LONG id, LONG size) {
    return C4DOS.general->RegisterPlugin(type, id, "x", &sound, size);
  };
  EXPECT_FALSE(submit(PLUGINTYPE_OBJECT, 5, sizeof sound)) << "no functions";
  EXPECT_FALSE(submit(PLUGINTYPE_OBJECT, 5, sizeof sound - 8)) << "a short structure";
  EXPECT_FALSE(submit(PLUGINTYPE_LIBRARY, 5, sizeof sound)) << "a kind that is not taken";
  EXPECT_FALSE(C4DOS.general->RegisterPlugin(PLUGINTYPE_OBJECT, 5, "x", nullptr, sizeof sound));
  EXPECT_FALSE(RegisterObjectPlugin(5, "x", 0, nullptr, String(), nullptr, 0)) << "no allocator";
  EXPECT_FALSE(RegisterObjectPlugin(kProbe, "x", 0, Probe::Alloc, String(), nullptr, 0)) << "the id is taken";
  EXPECT_FALSE(RegisterVideoPostPlugin(kProbe, "x", 0, ProbePost::Alloc, String(), 0, 0))
      << "by another kind too";
  EXPECT_FALSE(RegisterMessagePlugin(5, "x", 0, nullptr));
  EXPECT_EQ(application_->Misbehaviour().size(), 7u) << "the interface itself refused the last";
  EXPECT_FALSE(RegisterObjectPlugin(6, "x", 0, Probe::Alloc, "Onothing", nullptr, 0))
      << "no such description";
  application_->GetFaults().FailAt(host::Fault::Registration, 1);
  EXPECT_FALSE(RegisterObjectPlugin(7, "x", 0, Probe::Alloc, String(), nullptr, 0));
  EXPECT_TRUE(RegisterObjectPlugin(7, "x", 0, Probe::Alloc, String(), nullptr, 0));
}

TEST_F(HostServices, AClearedStatusLineKeepsNoText) {
  std::string shown;
  application_->GetConsole().SetProgressSink(
      [&](const std::string& text, int percent) { shown = text + std::to_string(percent); });
  StatusSetText("loading ");
  StatusSetBar(40);
  EXPECT_EQ(shown, "loading 40");
  StatusClear();
  StatusSetBar(5);
  EXPECT_EQ(shown, "5");
}

TEST_F(HostServices, WorkCanBeStopped) {
  EXPECT_EQ(GeGetCurrentThread(), nullptr);
  std::string answers;
  BaseObject* op = Add(kProbe, "op");
  Probe::onMessage = [&](Probe&, GeListNode*, LONG, void*) {
    for (int i = 0; i < 4; ++i) answers += GeGetCurrentThread()->TestBreak() ? '1' : '0';
    return TRUE;
  };
  application_->GetFaults().FailAt(host::Fault::UserBreak, 3);
  application_->PressButton(op, 1);
  application_->PressButton(op, 1);
  EXPECT_EQ(answers, "00110000") << "stopped once struck, until the work ends";
  host::RequestInterrupt();
  application_->PressButton(op, 1);
  host::ClearInterrupt();
  EXPECT_EQ(answers, "001100001111");
}

TEST(Preferences, ComeBackInTheNextRun) {
  const TempFolder folder;
  {
    host::Application application(folder.Name());
    EXPECT_EQ(GetWorldPluginData(44), nullptr);
    BaseContainer bc, inner;
    bc.SetString(1, "\xe6\x97\xa5 \"quoted\"");
    bc.SetReal(2, 0.1);
    bc.SetLLong(3, (LLONG)1 << 62);
    bc.SetVector(4, Vector(1, -2, 3e-300));
    inner.SetFilename(7, Filename("/a/b"));
    bc.SetContainer(5, inner);
    bc.SetVoid(6, &bc);
    SplineData curve;
    EXPECT_NE(curve.InsertKnot(0.5, -3), NOTOK);
    bc.SetData(9, GeData(CUSTOMDATATYPE_SPLINE, curve));
    EXPECT_TRUE(SetWorldPluginData(44, bc, FALSE));
    GetWorldPluginData(44)->SetTime(8, BaseTime(1, 25));
  }
  {
    host::Application application(folder.Name());
    BaseContainer* bc = GetWorldPluginData(44);
    ASSERT_NE(bc, nullptr);
    EXPECT_EQ(Text(bc->GetString(1)), "\xe6\x97\xa5 \"quoted\"");
    EXPECT_EQ(bc->GetReal(2), 0.1);
    EXPECT_EQ(bc->GetLLong(3), (LLONG)1 << 62);
    EXPECT_EQ(bc->GetVector(4), Vector(1, -2, 3e-300));
    EXPECT_EQ(Text(bc->GetContainer(5).GetFilename(7).GetString()), "/a/b");
    EXPECT_EQ(bc->GetType(6), DA_NIL) << "a pointer means nothing in another run";
    EXPECT_EQ(bc->GetTime(8), BaseTime(1, 25));
    const CustomDataType* curve = bc->GetCustomDataType(9, CUSTOMDATATYPE_SPLINE);
    ASSERT_NE(curve, nullptr);
    EXPECT_EQ(((const SplineData*)curve)->GetKnot(0).y, -3);
  }
}

} // namespace
