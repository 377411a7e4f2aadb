// An application with one document, files of its own, and small pieces of geometry.
#pragma once

#include "support/clean.h"
#include "support/sealed_scene.h"

#include "host/base/module_scope.h"
#include "host/nodes/node.h"

class GeometryTest : public Scratch {
protected:
  void SetUp() override {
    application_.reset(new host::Application);
    doc_ = application_->NewDocument();
  }
  /** As code of a plug-in. */
  static void AsModule(const std::function<void()>& work) {
    const host::ModuleScope scope;
    work();
  }
  /** Refuses each block of memory that a plug-in's call asks for in turn, until the call is done. */
  void RefuseEachBlock(int blocks, std::function<bool()> call, std::function<std::string()> state) {
    const std::string before = state();
    const host::LiveCounts live = application_->Live();
    bool done = false;
    const auto asModule = [&] { AsModule([&] { done = call(); }); };
    const auto check = [&](bool struck) {
      EXPECT_TRUE(done || struck);
      if (done) return;
      EXPECT_EQ(state(), before);
      ExpectLive(*application_, live);
    };
    EXPECT_GE(FailEach(*application_, host::Fault::Allocation, asModule, check), blocks);
  }
  /** What was reported, and what outlives the application, must be what the test took note of. */
  void TearDown() override {
    ExpectReports(*application_, expected_);
    application_.reset();
  }

  /** A square and a triangle over six points; point i lies at (i, i * i, -i). */
  PolygonObject* AddFigure() {
    PolygonObject* op = PolygonObject::Alloc(6, 2);
    for (LONG i = 0; i < 6; ++i) op->GetPointW()[i] = Vector(i, i * i, -i);
    op->GetPolygonW()[0] = CPolygon(0, 1, 2, 3);
    op->GetPolygonW()[1] = CPolygon(3, 4, 5, 5);
    doc_->InsertObject(op, nullptr, nullptr);
    return op;
  }
  /** Two segments of two and three points. */
  SplineObject* AddSpline() {
    SplineObject* op = SplineObject::Alloc(5, SPLINETYPE_AKIMA);
    for (LONG i = 0; i < 5; ++i) op->GetPointW()[i] = Vector(0, i, 0);
    Segment* segments = (Segment*)op->MakeVariableTag(Tsegment, 2)->GetLowlevelDataAddressW();
    segments[0] = {2, FALSE};
    segments[1] = {3, TRUE};
    doc_->InsertObject(op, nullptr, nullptr);
    return op;
  }

  /** All that objects of points hold, as text. */
  static std::string Content(BaseObject* op) {
    PolygonObject* figure = (PolygonObject*)op;
    std::string text = std::to_string(op->GetType());
    const auto add = [&text](const void* numbers, LONG count, auto number) {
      for (LONG i = 0; i < count; ++i) text += " " + std::to_string(((const decltype(number)*)numbers)[i]);
    };
    add(figure->GetPointR(), figure->GetPointCount() * 3, 0.0);
    add(figure->GetPolygonR(), figure->GetPolygonCount() * 4, 0);
    text += " type " + std::to_string(((SplineObject*)op)->GetInterpolationType());
    for (BaseTag* tag = op->GetFirstTag(); tag; tag = tag->GetNext()) {
      VariableTag* values = (VariableTag*)tag;
      text += " tag " + std::to_string(tag->GetType());
      add(values->GetLowlevelDataAddressR(), values->GetDataCount() * values->GetDataSize() / 4, 0);
    }
    return text;
  }

  static BaseObject* Clone(BaseObject* op) { return (BaseObject*)op->GetClone(COPYFLAGS_0, nullptr); }

  std::string Save() {
    std::string error;
    return application_->SaveScene(doc_, Path("scene"), &error) ? Read(Path("scene")) : "refused: " + error;
  }
  BaseDocument* Reload() {
    std::string error;
    BaseDocument* loaded = application_->LoadScene(Path("scene"), &error);
    EXPECT_NE(loaded, nullptr) << error;
    return loaded;
  }
  /** Each damaged scene, with the right length and checksum, must be refused with a line that says where, and
   * leave nothing behind. */
  void ExpectRefusals(const std::vector<std::pair<std::string, std::string>>& bytesAndTexts) {
    const host::LiveCounts live = application_->Live();
    for (const auto& [bytes, text] : bytesAndTexts) {
      const std::string error = RefusedScene(Sealed(bytes));
      EXPECT_NE(error.find(text), std::string::npos) << error << "\nexpected: " << text;
      EXPECT_NE(error.find("offset "), std::string::npos) << error;
      ExpectLive(*application_, live);
    }
  }
  /** The bytes with `value` written where `pattern` ends, plus skip. */
  template <class T>
  static std::string Patched(std::string bytes, const std::string& pattern, int skip, T value) {
    const std::size_t at = bytes.find(pattern);
    EXPECT_EQ(bytes.find(pattern, at + 1), std::string::npos) << "the pattern must be there once";
    EXPECT_NE(at, std::string::npos);
    if (at != std::string::npos)
      std::memcpy(&bytes[at + pattern.size() + (std::size_t)skip], &value, sizeof value);
    return bytes;
  }
  /** How an array of so many elements begins in a file. */
  static std::string ArrayHead(HYPERFILEARRAY kind, char size, LONG count) {
    std::string head{(char)HYPERFILEVALUE_ARRAY, (char)kind, size};
    head.append((const char*)&count, sizeof count);
    return head;
  }

  std::unique_ptr<host::Application> application_;
  BaseDocument* doc_ = nullptr;
  std::vector<std::string> expected_;
};
