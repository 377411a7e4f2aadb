// Points that another module sends.
#include "support/object_fixture.h"

namespace {

class DeliveryTest : public ObjectTest {
protected:
  LONG Deliver(LONG state, const std::vector<Vector>& points = {Vector(1, 2, 3)}) {
    delivery_ = kelvra::PointDelivery();
    delivery_.state = state;
    delivery_.points = Group(points);
    return Send();
  }
  /** Points in the object afterwards. */
  LONG Send() {
    op_->Message(kelvra::kMessageDeliverPoints, &delivery_);
    return Cloud(op_).store.GetPointCount();
  }
  kelvra::PointDelivery delivery_;
};

TEST_F(DeliveryTest, IsTakenWhenTheStateAsksForIt) {
  const struct {
    LONG request, state, sent;
    bool taken;
    LONG stateAfter;
    bool undone;
  } cases[] = {
      {0, 0, 1, false, 0, false}, {0, 0, 2, false, 0, false}, {0, 1, 1, true, 0, true},
      {1, 0, 1, true, 0, true},   {1, 2, 1, true, 0, true},   {0, 2, 2, true, 2, false},
      {2, 0, 2, true, 0, false},  {2, 1, 2, true, 1, false},  {0, 1, 2, false, 1, false},
      {0, 2, 1, false, 2, false}, {1, 1, 0, false, 1, false}, {3, 3, 3, false, 3, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.request << " " << c.state << " " << c.sent);
    op_ = Add();
    BaseContainer& data = *op_->GetDataInstance();
    data.SetLong(1012, c.request);
    data.SetLong(1014, c.state);
    EXPECT_EQ(Deliver(c.sent), c.taken ? 1 : 0);
    EXPECT_EQ(delivery_.points.blocks.GetCount(), c.taken ? 0 : 1)
        << "what is not taken stays with its sender";
    EXPECT_EQ(data.GetLong(1014), c.stateAfter);
    EXPECT_EQ(Cloud(op_).store.uploadFlag, c.taken ? 1 : 0);
    EXPECT_EQ(doc_->DoUndo() != FALSE, c.undone);
    if (c.undone) {
      EXPECT_EQ(Cloud(op_).store.GetPointCount(), 0);
    }
  }
}

TEST_F(DeliveryTest, EmptyBlocksAreLeftOutSoThatTheSceneCanBeSaved) {
  op_->GetDataInstance()->SetLong(1014, 2);
  delivery_.state = 2;
  delivery_.points.blocks.ReSize(2);
  EXPECT_EQ(Send(), 0);
  EXPECT_EQ(Cloud(op_).store.groups.GetCount(), 0);
  delivery_.points = Group({Vector(1, 2, 3), Vector(4, 5, 6)});
  delivery_.points.blocks.ReSize(3);
  EXPECT_EQ(Send(), 2);
  std::string error;
  EXPECT_TRUE(application_->SaveScene(doc_, Path("cloud.scene"), &error)) << error;
}

TEST_F(DeliveryTest, BlocksWithACountThatCannotBeAreLeftOut) {
  op_->GetDataInstance()->SetLong(1014, 2);
  for (const LONG count : {-1, kelvra::kMostBlockPoints + 1, MAXLONGl}) {
    delivery_.state = 2;
    delivery_.points = Group({Vector(1, 2, 3)});
    delivery_.points.blocks[0].count = count;
    EXPECT_EQ(Send(), 0) << count;
  }
  delivery_.points = Group({Vector(1, 2, 3)});
  GeFree(delivery_.points.blocks[0].attrib1);
  EXPECT_EQ(Send(), 0) << "an array is missing";
}

TEST_F(DeliveryTest, WithoutDataIsHarmless) {
  for (const LONG message : {(LONG)kelvra::kMessageDeliverPoints, (LONG)MSG_DESCRIPTION_COMMAND,
                             (LONG)MSG_DESCRIPTION_POSTSETPARAMETER, (LONG)MSG_MENUPREPARE})
    EXPECT_TRUE(op_->Message(message, nullptr)) << message;
}

} // namespace
