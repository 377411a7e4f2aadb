#include "support/geometry_fixture.h"

#include "host/viewport.h"

namespace {

TEST_F(GeometryTest, ResizingKeepsWhatStays) {
  PolygonObject* op = AddFigure();
  ASSERT_TRUE(op->ResizeObject(8, 1));
  EXPECT_EQ(op->GetPointR()[5], Vector(5, 25, -5));
  EXPECT_EQ(op->GetPointR()[7], Vector());
  EXPECT_EQ(op->GetPolygonR()[0].d, 3);
  EXPECT_EQ(op->GetPolygonCount(), 1);
  ASSERT_TRUE(((PointObject*)op)->ResizeObject(2));
  EXPECT_EQ(op->GetPolygonCount(), 1) << "a plain resize leaves the polygons";
  EXPECT_FALSE(op->ResizeObject(-1, 0));
  EXPECT_EQ(op->GetPointCount(), 2);
  EXPECT_EQ(PolygonObject::Alloc(1, -1), nullptr);
  EXPECT_EQ(VariableTag::Alloc(Tpolygon, 1), nullptr) << "a type without values";

  SplineObject* spline = AddSpline();
  ASSERT_TRUE(spline->ResizeObject(6, 3));
  EXPECT_EQ(spline->GetSegmentR()[1].cnt, 3);
  EXPECT_EQ(spline->GetSegmentR()[2].cnt, 0);
  ASSERT_TRUE(spline->ResizeObject(6, 0));
  EXPECT_EQ(spline->GetSegmentCount(), 0);
}

TEST_F(GeometryTest, RefusedMemoryChangesNothing) {
  PolygonObject* figure = AddFigure();
  for (int i = 0; i < 2; ++i) figure->MakeVariableTag(Tvertexmap, 6);
  SplineObject* spline = AddSpline();
  SplineObject* plain = SplineObject::Alloc(2, SPLINETYPE_LINEAR);
  doc_->InsertObject(plain, nullptr, nullptr);
  const struct {
    const char* name;
    int blocks; ///< at least so many are asked for
    std::function<bool()> call;
  } cases[] = {
      {"allocate polygons", 2, [] { return (PolygonObject*)AutoAlloc<PolygonObject>(3, 1) != nullptr; }},
      {"allocate a tag", 1, [] { return (VertexMapTag*)AutoAlloc<VertexMapTag>(9) != nullptr; }},
      {"resize polygons", 2, [&] { return figure->ResizeObject(7, 3) != FALSE; }},
      {"resize segments", 2, [&] { return spline->ResizeObject(4, 3) != FALSE; }},
      {"give segments", 2, [&] { return plain->ResizeObject(3, 1) != FALSE; }},
      {"clone", 4, [&] { return (BaseObject*)AutoFree<BaseObject>(Clone(figure)) != nullptr; }},
      {"copy tags", 2, [&] { return figure->CopyTagsTo(plain, NOTOK, NOTOK, NOTOK, nullptr) != FALSE; }},
  };
  for (const auto& item : cases) {
    SCOPED_TRACE(item.name);
    RefuseEachBlock(item.blocks, item.call,
                    [&] { return Content(figure) + Content(spline) + Content(plain); });
  }
}

TEST_F(GeometryTest, BoxHoldsAllFinitePoints) {
  PolygonObject* op = PolygonObject::Alloc(4, 0);
  doc_->InsertObject(op, nullptr, nullptr);
  op->SetMl(MatrixMove(Vector(100, 0, 0)));
  const Vector points[] = {Vector(-1, 2, 3), Vector(std::nan(""), 50, 50), Vector(1, -2, 4),
                           Vector(0, INFINITY, 0)};
  for (LONG i = 0; i < 4; ++i) op->GetPointW()[i] = points[i];
  EXPECT_EQ(host::WorldBox(op).low, Vector(99, -2, 3));
  EXPECT_EQ(host::WorldBox(op).high, Vector(101, 2, 4));
  ASSERT_TRUE(op->ResizeObject(0, 0));
  EXPECT_TRUE(host::WorldBox(op).IsEmpty());
}

TEST_F(GeometryTest, VertexMapOfAnotherLengthIsReported) {
  PolygonObject* op = AddFigure();
  AsModule([&] {
    for (const LONG count : {6, 5}) EXPECT_NE(op->MakeVariableTag(Tvertexmap, count), nullptr);
    op->InsertTag(VertexMapTag::Alloc(7));
  });
  for (const char* count : {"5", "7"})
    expected_.push_back("module misbehaves: a vertex map of " + std::string(count) +
                        " weights lies on an object of 6 points");
}

TEST_F(GeometryTest, CopiedTagsAreThoseAskedForInOrder) {
  PolygonObject* from = AddFigure();
  from->MakeVariableTag(Tsegment, 1);
  from->MakeVariableTag(Tvertexmap, 6, from->GetTag(Tsegment));
  from->MakeTag(ID_MOTAGDATA, from->GetTag(Tvertexmap));
  const std::vector<LONG> all{Tsegment, Tvertexmap, ID_MOTAGDATA};
  const struct {
    LONG visible, variable, hierarchical;
    std::vector<LONG> types;
  } cases[] = {{NOTOK, NOTOK, NOTOK, all},       {TRUE, NOTOK, NOTOK, {Tvertexmap}},
               {FALSE, TRUE, NOTOK, {Tsegment}}, {FALSE, FALSE, FALSE, {ID_MOTAGDATA}},
               {TRUE, FALSE, FALSE, {}},         {NOTOK, NOTOK, TRUE, {}}};
  for (const auto& item : cases) {
    PolygonObject* to = AddFigure();
    ASSERT_TRUE(from->CopyTagsTo(to, item.visible, item.variable, item.hierarchical, nullptr));
    std::vector<LONG> types;
    for (BaseTag* tag = to->GetFirstTag(); tag; tag = tag->GetNext()) types.push_back(tag->GetType());
    EXPECT_EQ(types, item.types);
  }
}

TEST_F(GeometryTest, NodesAreInsertedOnlyWhereTheyCanLie) {
  BaseObject *a = AddFigure(), *b = AddFigure(), *c = AddFigure();
  BaseTag* tag = a->MakeTag(ID_MOTAGDATA);
  b->InsertUnder(a);
  c->InsertUnder(a);
  c->InsertAfter(b);
  EXPECT_EQ(b->GetNext(), c);
  c->InsertBefore(b);
  c->InsertAfter(c);
  EXPECT_EQ(c->GetNext(), b);
  c->InsertUnderLast(a);
  EXPECT_EQ(b->GetNext(), c);
  const std::string before = Save();
  a->InsertAfter(c);
  b->InsertAfter(tag);
  b->InsertUnder(nullptr);
  EXPECT_EQ(Save(), before) << "what was refused moved nothing";
  const std::string start = "host misbehaves: a node is inserted ";
  expected_ = {start + "below itself", start + "where nodes of its kind cannot lie", start + "at no place"};
}

TEST_F(GeometryTest, UndoBringsPointsPolygonsAndTagsBack) {
  for (BaseObject* op : {(BaseObject*)AddFigure(), (BaseObject*)AddSpline()}) {
    const std::string before = Content(op);
    doc_->StartUndo();
    ASSERT_TRUE(doc_->AddUndo(UNDOTYPE_CHANGE, op));
    ASSERT_TRUE(((PolygonObject*)op)->ResizeObject(9, 4));
    ((PointObject*)op)->GetPointW()[8] = Vector(1);
    op->MakeVariableTag(Tvertexmap, 9);
    doc_->EndUndo();
    const std::string after = Content(op);
    EXPECT_NE(after, before);
    ASSERT_TRUE(doc_->DoUndo());
    EXPECT_EQ(Content(op), before);
    ASSERT_TRUE(doc_->DoRedo());
    EXPECT_EQ(Content(op), after);
  }
}

} // namespace
