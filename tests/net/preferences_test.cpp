// The preferences page and its buttons, in this process.
#include "host/base/text.h"
#include "kelvra_prefs.h"
#include "registration.h"
#include "support/loopback.h"
#include "support/object_fixture.h"
#include "update_check.h"

namespace kelvra {
namespace {

using host::Utf8;

class Preferences : public ObjectTest {
protected:
  void SetUp() override {
    ObjectTest::SetUp();
    ClearProxies();
    page_ = application_->PreferencesPage(kPreferencesId);
    ASSERT_NE(page_, nullptr);
  }
  void TearDown() override {
    for (const char* name : {"KELVRA_UPDATE_SERVER", "KELVRA_GEOMETRY_SERVICE"}) ::unsetenv(name);
    ObjectTest::TearDown();
  }
  bool Set(LONG element, const GeData& value) {
    return page_->SetParameter(DescID(element), value, DESCFLAGS_SET_0) != FALSE;
  }
  std::string Get(LONG element) {
    GeData value;
    EXPECT_TRUE(page_->GetParameter(DescID(element), value, DESCFLAGS_GET_0)) << element;
    return Utf8(value.GetString());
  }
  static std::string Stored(LONG key) { return Utf8(GetWorldPluginData(kPreferencesId)->GetString(key)); }
  /** Presses a button; the texts of the dialogs that it showed. */
  std::vector<std::string> Press(LONG element) {
    application_->GetDialogs().Clear();
    application_->PressButton(page_, element);
    std::vector<std::string> texts;
    for (const host::DialogRecord& dialog : application_->GetDialogs().Shown()) texts.push_back(dialog.text);
    return texts;
  }
  BaseList2D* page_ = nullptr;
};

TEST_F(Preferences, ElementsLieUnderKeysOfTheirOwn) {
  const struct {
    LONG element, key;
    const char* preset;
  } cases[] = {{1000, 1002, "1.44"}, {1001, 1000, ""}, {1002, 1001, ""}, {1006, 1003, "Unregistered"},
               {1020, 2000, ""},     {1021, 2001, ""}, {1022, 2002, ""}};
  for (const auto& c : cases) {
    EXPECT_EQ(Get(c.element), c.preset) << c.element;
    EXPECT_EQ(Stored(c.key), c.preset) << c.key;
    EXPECT_TRUE(Set(c.element, GeData(String("value ") + LongToString(c.element))));
  }
  for (const auto& c : cases) {
    EXPECT_EQ(Stored(c.key), "value " + std::to_string(c.element));
    EXPECT_EQ(Get(c.element), "value " + std::to_string(c.element));
  }
  EXPECT_FALSE(Set(1001, GeData((LONG)7))) << "a reference is a text";
  EXPECT_FALSE(Set(1003, GeData(String("x")))) << "a button has no value";
  EXPECT_EQ(Stored(1000), "value 1001");
}

TEST_F(Preferences, MissingAndStaleValuesAreMadeAnew) {
  BaseContainer old;
  old.SetString(1000, "K-17");
  old.SetString(1002, "1.40");
  old.SetLong(1001, 5);
  SetWorldPluginData(kPreferencesId, old, FALSE);
  MyPrefs again; // as when the dialog is opened another time
  ASSERT_TRUE(again.Init(page_));
  EXPECT_EQ(Stored(1000), "K-17");
  EXPECT_EQ(Stored(1001), "") << "of another type";
  EXPECT_EQ(Stored(1002), "1.44") << "this version speaks, not the one that wrote the file";
}

TEST_F(Preferences, RegisterShowsTheGateAndNothingElse) {
  const BaseContainer before = *GetWorldPluginData(kPreferencesId);
  const std::vector<std::string> shown = Press(1003);
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_NE(shown[0].find("Unregistered"), std::string::npos);
  EXPECT_TRUE(GetRegistrationState().mayConvert);
  EXPECT_TRUE(*GetWorldPluginData(kPreferencesId) == before);
}

TEST_F(Preferences, ServicesAreAskedWhereTheEnvironmentElseThePageSays) {
  EXPECT_EQ(Utf8(GeometryServiceAddress()), "");
  EXPECT_TRUE(Set(1020, GeData(String("http://page//"))));
  EXPECT_EQ(Utf8(GeometryServiceAddress()), "http://page");
  ::setenv("KELVRA_GEOMETRY_SERVICE", "http://environment/", 1);
  EXPECT_EQ(Utf8(GeometryServiceAddress()), "http://environment");
  ::setenv("KELVRA_GEOMETRY_SERVICE", "", 1);
  EXPECT_EQ(Utf8(GeometryServiceAddress()), "http://page");
  EXPECT_EQ(ProductIdentifier(), kProductIdentifier);
  EXPECT_TRUE(Set(1023, GeData((LONG)77)));
  EXPECT_EQ(ProductIdentifier(), 77);
}

TEST(UpdateVersion, CountsHundredthsOnly) {
  const struct {
    const char* reply;
    Bool newer;
  } cases[] = {{"1.44", FALSE},      {"1.45", TRUE},     {"1.441", FALSE},         {"1.449", FALSE},
               {"1.4499999", FALSE}, {"1.5", TRUE},      {" 2\n", TRUE},           {"\r\n1.45", TRUE},
               {"+1.45", TRUE},      {"1.45beta", TRUE}, {"beta", FALSE},          {"-2", FALSE},
               {"", FALSE},          {"nan", FALSE},     {"inf", FALSE},           {"1e999", FALSE},
               {"1e300", TRUE},      {"-1e300", FALSE},  {"<html>2</html>", FALSE}};
  for (const auto& c : cases) EXPECT_EQ(IsNewerVersion(c.reply), c.newer) << c.reply;
}

TEST_F(Preferences, UpdateCheckSaysWhatTheServerMeans) {
  const std::string
      latest = "You already have the latest version of Kelvra",
      question = "Do you want to download Kelvra 1.45", query = "?reference_no=K-17&product_id=1",
      sent = "An email, with a download link, has been sent. (to the email address used for your order)",
      problem = "There was a problem sending the email. Please contact support.";
  const LONG failed = KELVRA_UPDATE_MAIL_FAILED;
  const struct {
    const char *order, *version, *mail; ///< mail: answer to the second request; NULL is a status 500
    GEMB_R answer;
    LONG outcome;
    std::vector<std::string> shown;
    std::vector<std::string> targets;
    const char* printed = "";
  } cases[] = {
      {"", "1.45", "ok", GEMB_R_YES, KELVRA_UPDATE_NOT_ASKED, {}, {}},
      {"K-17", "", "ok", GEMB_R_YES, KELVRA_UPDATE_NO_ANSWER, {}, {""}},
      {"K-17", nullptr, "ok", GEMB_R_YES, KELVRA_UPDATE_NO_ANSWER, {}, {""}},
      {"K-17", "1.44", "ok", GEMB_R_YES, KELVRA_UPDATE_LATEST, {latest}, {""}},
      {"K-17", "none", "ok", GEMB_R_YES, KELVRA_UPDATE_LATEST, {latest}, {""}},
      {"K-17", "1.45", "ok", GEMB_R_NO, KELVRA_UPDATE_DECLINED, {question}, {""}},
      {"K-17", "1.45", "ok", GEMB_R_YES, KELVRA_UPDATE_MAIL_SENT, {question, sent}, {"", query}},
      {"K-17", "1.45", "", GEMB_R_YES, failed, {question, problem}, {"", query}},
      {"K-17", "1.45", nullptr, GEMB_R_YES, failed, {question, problem}, {"", query}},
      // Copied from a link.
      {"K-17&product_id=1", "1.45", "ok", GEMB_R_YES, KELVRA_UPDATE_MAIL_SENT, {question, sent}, {"", query}},
      {"K 17", "1.45", "ok", GEMB_R_YES, failed, {question, problem}, {""}, "contains a blank"},
      {"K#17", "1.45", "ok", GEMB_R_YES, failed, {question, problem}, {""}, "contains the character #"},
      {"K\xc3\xa4",
       "1.45",
       "ok",
       GEMB_R_YES,
       failed,
       {question, problem},
       {""},
       "a character outside ASCII"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.order) + " " + (c.version ? c.version : "500"));
    RawServer server([&, asked = 0](int s) mutable {
      const char* body = asked++ == 0 ? c.version : c.mail;
      RawServer::Send(s, body ? Head(std::strlen(body)) + body : Head(5, "500 Broken") + "99.99");
    });
    EXPECT_TRUE(Set(1021, GeData(String(server.Address().c_str()))));
    EXPECT_TRUE(Set(1001, GeData(String(c.order))));
    application_->GetDialogs().Clear();
    application_->GetDialogs().AnswerQuestion(c.answer);
    application_->GetConsole().Clear();
    application_->PressButton(page_, 1007);
    std::string printed;
    for (const std::string& line : application_->GetConsole().Lines()) printed += line;
    EXPECT_NE(printed.find(c.printed), std::string::npos) << printed;
    EXPECT_EQ(printed.find("update_server"), std::string::npos) << "the address is not at fault";
    std::vector<std::string> shown;
    for (const host::DialogRecord& dialog : application_->GetDialogs().Shown()) shown.push_back(dialog.text);
    EXPECT_EQ(shown, c.shown);
    KelvraUpdateCheck check = {1, -1};
    EXPECT_TRUE(page_->Message(KELVRA_MESSAGE_UPDATE_CHECK, &check));
    EXPECT_EQ(check.outcome, c.outcome);
    std::vector<std::string> lines;
    for (const std::string& target : c.targets)
      lines.push_back("GET /php/send/mail/update.php" + target + " HTTP/1.1");
    EXPECT_EQ(server.RequestLines(), lines);
  }
}

} // namespace
} // namespace kelvra
