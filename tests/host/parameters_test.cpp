#include "support/probe_plugins.h"
#include "support/resource_files.h"

#include "host/parameters/node_parameters.h"

namespace {

constexpr LONG kDescribed = 1099301;
enum { kSize = 1000, kCount, kShade, kName, kPlace, kPartner, kButton, kOn, kOwn, kPath };
constexpr const char* kNames[] = {"Size",    "Count",  "Shade", "Name", "Place",
                                  "Partner", "Button", "On",    "Own",  "Path"};

constexpr const char* kContainer = R"(CONTAINER Oprobe
{
  NAME Oprobe;
  INCLUDE Obase;
  GROUP ID_OBJECTPROPERTIES
  {
    REAL PROBE_SIZE { UNIT PERCENT; MIN 0; MAX 200; DEFAULT 50; }
    LONG PROBE_COUNT { MINEX; MIN 0; MAX 9; DEFAULT 4; }
    LONG PROBE_SHADE { CYCLE { PROBE_SHADE_DARK; PROBE_SHADE_LIGHT; } }
    STRING PROBE_NAME { }
    VECTOR PROBE_PLACE { MIN -10 -20 -30; DEFAULT 1 2 3; }
    LINK PROBE_PARTNER { }
    BUTTON PROBE_BUTTON { }
    BOOL PROBE_ON { DEFAULT 1; }
    LONG PROBE_OWN { }
    FILENAME PROBE_PATH { }
  }
})";
/** Keeps one parameter to itself. */
class Described : public Probe {
public:
  static NodeData* Alloc() { return gNew Described; }
  static inline LONG wanted = 0; ///< the only parameter that was asked for last, 0 for all
  Bool GetDDescription(GeListNode* node, Description* description, DESCFLAGS_DESC& flags) override {
    const DescID* single = description->GetSingleDescID();
    wanted = single ? (*single)[0].id : 0;
    return Probe::GetDDescription(node, description, flags);
  }
  Bool GetDParameter(GeListNode*, const DescID& id, GeData& data, DESCFLAGS_GET& flags) override {
    if (id[0].id != kOwn) return TRUE;
    data.SetLong(number);
    flags |= DESCFLAGS_GET_PARAM_GET;
    return TRUE;
  }
  Bool SetDParameter(GeListNode*, const DescID& id, const GeData& data, DESCFLAGS_SET& flags) override {
    if (id[0].id != kOwn) return TRUE;
    number = data.GetLong();
    flags |= DESCFLAGS_SET_PARAM_SET;
    return TRUE;
  }
};

class Parameters : public HostTest {
protected:
  void SetUp() override {
    HostTest::SetUp();
    std::string header = "enum { PROBE_SHADE_DARK = 3, PROBE_SHADE_LIGHT = 5, NEXT = 999",
                strings = "Oprobe \"Probe\";";
    for (const std::string name : kNames) {
      std::string symbol = "PROBE_" + name;
      std::transform(symbol.begin(), symbol.end(), symbol.begin(), ::toupper);
      header += ", " + symbol;
      strings += symbol + " \"" + name + "\";";
    }
    strings += "PROBE_SHADE_DARK \"Rather Dark\"; PROBE_SHADE_LIGHT \"Light\";";
    files_.WriteDescription("oprobe", header + " };", kContainer, "STRINGTABLE Oprobe {" + strings + "}");
    ASSERT_TRUE(resource.Init(Filename(files_.Path().string().c_str())));
    ASSERT_TRUE(RegisterObjectPlugin(kDescribed, "Described", 0, Described::Alloc, "Oprobe", nullptr, 0));
    op_ = Add(kDescribed, "op");
    Probe::onMessage = [this](Probe&, GeListNode*, LONG type, void* data) {
      if (type == MSG_DESCRIPTION_POSTSETPARAMETER)
        told_.push_back((*((DescriptionPostSetValue*)data)->descid)[0].id);
      if (type == MSG_DESCRIPTION_COMMAND) pressed_ = ((DescriptionCommand*)data)->id[0].id;
      return TRUE;
    };
  }
  void TearDown() override {
    HostTest::TearDown();
    resource.Free();
    application_.reset();
  }

  GeData Get(LONG id) {
    GeData data;
    EXPECT_TRUE(op_->GetParameter(DescID(id), data, DESCFLAGS_GET_0)) << id;
    return data;
  }
  Bool Set(const DescID& id, const GeData& data, DESCFLAGS_SET flags = DESCFLAGS_SET_0) {
    return op_->SetParameter(id, data, flags);
  }

  /** "name=value"; the error, empty when it is taken. */
  std::string SetFromText(const std::string& text) {
    const std::size_t equals = text.find('=');
    const LONG id = application_->FindParameter(op_, text.substr(0, equals));
    EXPECT_GE(id, 0) << text;
    std::string error;
    const bool taken = application_->SetParameterFromText(op_, id, text.substr(equals + 1), &error);
    EXPECT_EQ(taken, error.empty()) << error;
    return error;
  }

  const ResourceFiles files_;
  BaseObject* op_ = nullptr;
  std::vector<LONG> told_;
  LONG pressed_ = 0;
};

TEST_F(Parameters, ValuesTakeTheTypeOfTheDescription) {
  EXPECT_EQ(Text(GeLoadString(10000)), "first");
  EXPECT_TRUE(Set(kSize, GeData(1)));
  EXPECT_EQ(op_->GetDataInstance()->GetType(kSize), DA_REAL);
  EXPECT_TRUE(Set(kCount, GeData(3.9)));
  EXPECT_EQ(op_->GetDataInstance()->GetType(kCount), DA_LONG);
  EXPECT_EQ(op_->GetDataInstance()->GetLong(kCount), 3);
  EXPECT_TRUE(Set(kOn, GeData(0.5)));
  EXPECT_EQ(op_->GetDataInstance()->GetLong(kOn), 1);
  EXPECT_TRUE(Set(kPath, GeData("/a/b.las")));
  EXPECT_EQ(op_->GetDataInstance()->GetType(kPath), DA_FILENAME);
  told_.clear();
  EXPECT_FALSE(Set(kSize, GeData("12")));
  EXPECT_FALSE(Set(kName, GeData(12)));
  EXPECT_FALSE(Set(kButton, GeData(1)));
  EXPECT_FALSE(Set(4711, GeData(1))) << "the description has no such parameter";
  EXPECT_TRUE(told_.empty()) << "nothing was set";
}

TEST_F(Parameters, SettingTellsThePlugIn) {
  EXPECT_TRUE(Set(kCount, GeData(2)));
  EXPECT_TRUE(Set(kOwn, GeData(99)));
  EXPECT_EQ(told_, (std::vector<LONG>{kCount, kOwn}));
  EXPECT_EQ(NumberOf(op_), 99);
  EXPECT_EQ(Get(kOwn).GetLong(), 99);
  EXPECT_EQ(op_->GetDataInstance()->GetType(kOwn), DA_NIL) << "the plug-in keeps it";
}

TEST_F(Parameters, WhatIsNotSetHasItsDefault) {
  op_->GetDataInstance()->FlushAll();
  EXPECT_EQ(Get(kSize).GetReal(), 0.5) << "50 percent";
  EXPECT_EQ(Get(kCount).GetLong(), 4);
  EXPECT_EQ(Get(kPlace).GetVector(), Vector(1, 2, 3));
  GeData data;
  EXPECT_FALSE(op_->GetParameter(DescID(kName), data, DESCFLAGS_GET_0))
      << "without a default there is no value";
  EXPECT_EQ(Described::wanted, kName);
  host::FindDescription(*host::Impl(op_));
  EXPECT_EQ(Described::wanted, 0);
}

TEST_F(Parameters, ARefusedDescriptionLeavesNothingRegistered) {
  const std::size_t before = application_->Plugins().size();
  EXPECT_FALSE(RegisterObjectPlugin(kDescribed + 1, "No", 0, Described::Alloc, "Onothing", nullptr, 0));
  EXPECT_EQ(application_->Plugins().size(), before);
  EXPECT_TRUE(RegisterObjectPlugin(kDescribed + 1, "Yes", 0, Described::Alloc, "Oprobe", nullptr, 0));
  EXPECT_FALSE(RegisterObjectPlugin(kDescribed + 1, "Twice", 0, Described::Alloc, "Oprobe", nullptr, 0));
}

TEST_F(Parameters, OnlyWhatTheUserSetsIsClamped) {
  EXPECT_TRUE(Set(kSize, GeData(7.0)));
  EXPECT_EQ(Get(kSize).GetReal(), 7.0);
  EXPECT_TRUE(Set(kSize, GeData(7.0), DESCFLAGS_SET_USERINTERACTION));
  EXPECT_EQ(Get(kSize).GetReal(), 2.0);
  EXPECT_TRUE(Set(kSize, GeData(7.0), DESCFLAGS_SET_USERINTERACTION | DESCFLAGS_SET_DONTCHECKMINMAX));
  EXPECT_EQ(Get(kSize).GetReal(), 7.0);
  EXPECT_TRUE(Set(kPlace, GeData(Vector(-100)), DESCFLAGS_SET_USERINTERACTION));
  EXPECT_EQ(Get(kPlace).GetVector(), Vector(-10, -20, -30));
}

TEST_F(Parameters, PartsOfVectorsHaveTheirOwnIds) {
  EXPECT_TRUE(Set(DescID(DescLevel(kPlace), DescLevel(VECTOR_Y)), GeData(8.0)));
  EXPECT_EQ(Get(kPlace).GetVector(), Vector(1, 8, 3));
  GeData y;
  EXPECT_TRUE(op_->GetParameter(DescID(DescLevel(kPlace), DescLevel(VECTOR_Y)), y, DESCFLAGS_GET_0));
  EXPECT_EQ(y.GetReal(), 8.0);
  EXPECT_FALSE(Set(DescID(DescLevel(kCount), DescLevel(VECTOR_Y)), GeData(8.0)));
}

TEST_F(Parameters, PlacementLivesInTheMatrix) {
  op_->SetMl(Matrix(Vector(1, 2, 3), Vector(2, 0, 0), Vector(0, 3, 0), Vector(0, 0, -4)));
  EXPECT_EQ(Get(903).GetVector(), Vector(1, 2, 3));
  EXPECT_EQ(Get(905).GetVector(), Vector(2, 3, -4));
  EXPECT_TRUE(Set(904, GeData(Vector(0.3, -0.7, 1.1))));
  EXPECT_LT(Len(Get(904).GetVector() - Vector(0.3, -0.7, 1.1)), 1e-12);
  EXPECT_LT(Len(Get(905).GetVector() - Vector(2, 3, -4)), 1e-12) << "turning keeps the scale";
  EXPECT_TRUE(Set(904, GeData(Vector(pi05, 0, 0))));
  EXPECT_LT(Len(op_->GetMl().v1 - Vector(0, 0, 2)), 1e-12) << "a heading of 90 degrees turns x to z";
  EXPECT_TRUE(Set(900, GeData("renamed")));
  EXPECT_EQ(Text(op_->GetName()), "renamed");
}

TEST_F(Parameters, TextsAreCheckedAgainstTypeAndRange) {
  Add(Onull, "Partner");
  for (const std::string text :
       {"PROBE_SIZE=1.25", "size=125%", "count=9", "shade=5", "shade=light", "Shade=rather dark",
        "place=1,2,3", "place=1 2 3", "on=yes", "partner=Partner", "path=/x/y", "name=any text"})
    EXPECT_EQ(SetFromText(text), "") << text;
  const std::pair<const char*, const char*> bad[] = {
      {"size=2.5", "expected a number from 0 to 2, or from 0% to 200%"},
      {"size=abc", "expected a number"},
      {"size=1.5x", "expected a number"},
      {"size=nan", "expected a number"},
      {"size=", "expected a number"},
      {"count=0", "above 0 to 9"},
      {"count=1.5", "whole number"},
      {"shade=4", "one of dark, light"},
      {"place=1,2", "X,Y,Z"},
      {"place=1,2,3,4", "X,Y,Z"},
      {"place=-11,0,0", "from -10"},
      {"on=2", "on or off"},
      {"partner=Nobody", "name of an object"},
      {"button=1", "a button has no value"}};
  for (const auto& [text, part] : bad) {
    const std::string error = SetFromText(text);
    EXPECT_NE(error.find(part), std::string::npos) << text << error;
  }
  EXPECT_EQ(op_->GetDataInstance()->GetReal(kSize), 1.25);
  EXPECT_EQ(op_->GetDataInstance()->GetLong(kShade), 3);
  EXPECT_NE(op_->GetDataInstance()->GetLink(kPartner, doc_), nullptr);
  EXPECT_EQ(application_->FindParameter(op_, "nothing"), -1);
  EXPECT_EQ(application_->FindParameter(op_, ""), -1);
  EXPECT_EQ(application_->FindParameter(Add(Onull, "plain"), "size"), -1);
  application_->PressButton(op_, application_->FindParameter(op_, "button"));
  EXPECT_EQ(pressed_, kButton);
  ASSERT_NE(application_->FindByDescription("Oprobe"), nullptr);
  EXPECT_EQ(application_->FindByDescription("Oprobe")->id, kDescribed);
}

} // namespace
