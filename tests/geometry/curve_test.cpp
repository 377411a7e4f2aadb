#include "support/geometry_fixture.h"

namespace {

constexpr LONG kCurved = 1099401, kCurve = 1025;

/** An object with one curve parameter. */
class Curved : public ObjectData {
public:
  static NodeData* Alloc() { return gNew Curved; }
};

void Fill(SplineData* curve, const std::vector<Vector>& knots) {
  curve->DelAllPoints();
  for (const Vector& knot : knots) EXPECT_NE(curve->InsertKnot(knot.x, knot.y), NOTOK);
}

std::string Knots(const CustomDataType* data) {
  if (!data) return "none";
  const SplineData& curve = *(const SplineData*)data;
  std::string text;
  for (LONG i = 0; i < curve.GetKnotCount(); ++i)
    text += std::to_string(curve.GetKnot(i).x) + "," + std::to_string(curve.GetKnot(i).y) + ";";
  return text;
}

std::string Held(const BaseContainer& bc) {
  return Knots(bc.GetCustomDataType(kCurve, CUSTOMDATATYPE_SPLINE));
}

TEST_F(GeometryTest, CurvesAreLinearBetweenKnotsAndLevelOutside) {
  typedef std::vector<Vector> List;
  const double huge = 1.7e308, none = std::nan("");
  const List two{Vector(0.6, 3, 0), Vector(0.2, 1, 0)};
  const List step{Vector(0, 0, 0), Vector(0.5, 1, 0), Vector(0.5, 9, 0), Vector(1, 9, 0)};
  const struct {
    List knots;
    std::vector<std::pair<double, double>> points;
  } cases[] = {
      {{}, {{0.3, 1.0}}},
      {{Vector(0.5, 7, 0)}, {{0.0, 7.0}, {1.0, 7.0}}},
      {two, {{0.1, 1.0}, {0.2, 1.0}, {0.3, 1.5}, {0.6, 3.0}, {5.0, 3.0}, {none, 1.0}}},
      {step, {{0.25, 0.5}, {0.5, 9.0}, {0.75, 9.0}}},
      {{Vector(0, -huge, 0), Vector(1, huge, 0)}, {{0.5, 0.0}}},
  };
  SplineData curve;
  EXPECT_EQ(curve.InsertKnot(none, 0), NOTOK);
  EXPECT_EQ(curve.InsertKnot(0, none), NOTOK);
  for (const auto& item : cases) {
    Fill(&curve, item.knots);
    for (const auto& point : item.points) EXPECT_DOUBLE_EQ(curve.GetPoint(point.first).y, point.second);
  }
}

TEST_F(GeometryTest, ContainersHoldCurvesByValue) {
  SplineData curve;
  Fill(&curve, {Vector(0, 1, 0), Vector(1, 2, 0)});
  BaseContainer bc;
  bc.SetData(kCurve, GeData(CUSTOMDATATYPE_SPLINE, curve));
  const BaseContainer copy(bc);
  EXPECT_EQ(copy, bc);
  SplineData* live = (SplineData*)bc.GetCustomDataType(kCurve, CUSTOMDATATYPE_SPLINE);
  live->InsertKnot(0.5, 9);
  EXPECT_NE(copy, bc) << "each has its own";
  EXPECT_EQ(Held(copy), Knots(&curve));
  GeData own(CUSTOMDATATYPE_SPLINE, *live);
  AsModule([&own] { // what it held before may not be left behind
    for (int i = 0; i < 2; ++i)
      own.SetCustomDataType(CUSTOMDATATYPE_SPLINE, *own.GetCustomDataType(CUSTOMDATATYPE_SPLINE));
  });
  EXPECT_EQ(Knots(own.GetCustomDataType(CUSTOMDATATYPE_SPLINE)), Knots(live));
  EXPECT_EQ(GeData(CUSTOMDATATYPE_SPLINE + 1, curve).GetType(), DA_NIL) << "a type that nobody knows";

  // Either of the two blocks of a value may be refused; the entry then keeps what it had.
  const GeData other(CUSTOMDATATYPE_SPLINE, curve);
  for (int n = 1; n <= 2; ++n) {
    application_->GetFaults().FailAt(host::Fault::Allocation, n);
    AsModule([&] { EXPECT_EQ(bc.SetData(kCurve, other), nullptr) << n; });
    application_->GetFaults().Clear();
    EXPECT_EQ(Held(bc), Knots(live));
  }
}

class CurveParameter : public GeometryTest {
protected:
  void SetUp() override {
    GeometryTest::SetUp();
    ASSERT_TRUE(resource.Init(Filename(KELVRA_SOURCE_DIR "/res")));
    ASSERT_TRUE(RegisterObjectPlugin(kCurved, "Curved", 0, Curved::Alloc, "Otallyframe", nullptr, 0));
    op_ = BaseObject::Alloc(kCurved);
    doc_->InsertObject(op_, nullptr, nullptr);
  }
  void TearDown() override {
    resource.Free();
    GeometryTest::TearDown();
  }
  /** The error, empty when the text is taken. */
  std::string Set(const std::string& text) {
    std::string error;
    const bool taken = application_->SetParameterFromText(op_, kCurve, text, &error);
    EXPECT_EQ(taken, error.empty());
    return error;
  }
  BaseObject* op_ = nullptr;
};

TEST_F(CurveParameter, IsGivenAsKnotsOfText) {
  EXPECT_EQ(Held(op_->GetData()), "none");
  EXPECT_EQ(Set(" 1 , -2.5 ; 0,50%"), "");
  EXPECT_EQ(Held(op_->GetData()), "0.000000,0.500000;1.000000,-2.500000;");
  const std::string expected = "; expected x,y with x from 0 to 1 and y finite, and at most 4096 knots";
  const std::string bad[][3] = {
      {"0,1;1.5,1", "1.5,1", "2"}, {"0,1;;1,1", "", "2"}, {"0,1e999", "0,1e999", "1"}};
  for (const auto& [text, knot, number] : bad) {
    EXPECT_EQ(Set(text), "knot " + number + " is \"" + knot + "\"" + expected);
    EXPECT_EQ(Held(op_->GetData()), "0.000000,0.500000;1.000000,-2.500000;")
        << "refused text changes nothing";
  }
  EXPECT_FALSE(op_->SetParameter(DescID(kCurve), GeData(1.0), DESCFLAGS_SET_0)) << "a number is not a curve";
  std::string many;
  for (LONG i = 0; i <= SplineData::kMaxKnots; ++i) many += "1,0;";
  EXPECT_NE(Set(many).find("knot 4097 is \"1,0\""), std::string::npos);
  EXPECT_EQ(Set(""), "");
  EXPECT_EQ(Held(op_->GetData()), "none");
}

TEST_F(CurveParameter, SurvivesUndoCopiesAndScenes) {
  ASSERT_EQ(Set("0,1;0.5,3;1,0.125"), "");
  const std::string first = Held(op_->GetData());
  doc_->StartUndo();
  ASSERT_TRUE(doc_->AddUndo(UNDOTYPE_CHANGE, op_));
  doc_->EndUndo();
  ASSERT_EQ(Set("0.25,8"), "");
  ASSERT_TRUE(doc_->DoUndo());
  EXPECT_EQ(Held(op_->GetData()), first);
  EXPECT_EQ(Held(AutoFree<BaseObject>(Clone(op_))->GetData()), first);

  const std::string bytes = Save();
  doc_ = Reload();
  ASSERT_NE(doc_, nullptr);
  EXPECT_EQ(Held(doc_->GetFirstObject()->GetData()), first);
  EXPECT_EQ(Save(), bytes);

  const LONG head[] = {kCurve, CUSTOMDATATYPE_SPLINE, 3};
  const std::string entry((const char*)head, sizeof head);
  ExpectRefusals({
      {Patched<LONG>(bytes, entry, -4, -1), "found a count of 4294967295 knots, expected at most"},
      {Patched<double>(bytes, entry, 32, 1.5),
       "found knot 2 at 1.500000, 0.125000, expected x from 0.500000"},
      {Patched<double>(bytes, entry, 0, 0.75),
       "found knot 1 at 0.500000, 3.000000, expected x from 0.750000"},
  });
}

} // namespace
