#include "support/clean.h"
#include "support/payload_plugins.h"
#include "support/sealed_scene.h"

#include "host/application.h"
#include "host/viewport.h"

using host::Application;

namespace {

class SceneFile : public Scratch {
protected:
  void SetUp() override {
    twist = Twist::None;
    Start(true);
  }
  void TearDown() override {
    for (const std::string& line : application_->Misbehaviour()) ADD_FAILURE() << line;
    application_.reset();
  }

  /** Another run of the application, with or without the plug-ins. */
  void Start(bool plugins) {
    application_.reset();
    application_.reset(new Application);
    ASSERT_TRUE(!plugins || RegisterPayloads());
  }

  static BaseObject* Add(BaseDocument* doc, LONG type, const char* name, BaseObject* parent = nullptr,
                         BaseObject* pred = nullptr) {
    BaseObject* op = BaseObject::Alloc(type);
    op->SetName(String(name));
    doc->InsertObject(op, parent, pred);
    return op;
  }

  /** Root -> (First -> Inner, Second): links run forward, back, to the node itself and to a video post. */
  BaseDocument* MakeDocument() {
    BaseDocument* doc = application_->NewDocument();
    BaseObject* root = Add(doc, Onull, "Root");
    BaseObject* first = Add(doc, kPayloadObject, "F\xc3\xafrst", root);
    BaseObject* inner = Add(doc, Onull, "Inner", first);
    BaseObject* second = Add(doc, kPayloadObject, "Second", root, first);
    first->SetMl(Matrix(Vector(1, 2, 3), Vector(0, 1, 0), Vector(1, 0, 0), Vector(0, 0, 2)));
    first->GetDataInstance()->SetReal(1000, 0.25);
    first->GetDataInstance()->SetLink(2000, second);
    inner->GetDataInstance()->SetLink(2000, root);
    Payload& data = PayloadOf(first);
    data.number = 17;
    data.text = String("\xe6\x97\xa5");
    data.reals = {1.5f, -2.5f, 1e-40f};
    data.extra.SetLink(1, first);
    data.extra.SetLink(2, second);
    RenderData* settings = doc->GetActiveRenderData();
    BaseVideoPost* post = BaseVideoPost::Alloc(kPayloadPost);
    ((PayloadPost*)post->GetNodeData())->number = 99;
    settings->InsertVideoPostLast(post);
    post->GetDataInstance()->SetLink(1003, first);
    second->GetDataInstance()->SetLink(2000, post);
    BaseContainer general = doc->GetData(DOCUMENTSETTINGS_GENERAL);
    general.SetString(4000, "setting");
    doc->SetData(DOCUMENTSETTINGS_GENERAL, general);
    doc->SetTime(BaseTime(7, 25));
    return doc;
  }

  std::string Save(BaseDocument* doc, const std::string& name) {
    std::string error;
    EXPECT_TRUE(application_->SaveScene(doc, Path(name), &error)) << error;
    return Read(Path(name));
  }
  BaseDocument* Load(const std::string& name) {
    std::string error;
    BaseDocument* doc = application_->LoadScene(Path(name), &error);
    EXPECT_NE(doc, nullptr) << error;
    return doc;
  }

  std::unique_ptr<Application> application_;
};

TEST_F(SceneFile, EverythingComesBack) {
  const std::string saved = Save(MakeDocument(), "a.scene");
  BaseDocument* doc = Load("a.scene");
  ASSERT_NE(doc, nullptr);
  BaseObject* root = doc->GetFirstObject();
  BaseObject* first = root->GetDown();
  BaseObject* second = first->GetNext();
  EXPECT_EQ(Text(first->GetName()), "F\xc3\xafrst");
  EXPECT_EQ(Text(first->GetDown()->GetName()), "Inner");
  EXPECT_TRUE(!root->GetNext() && !second->GetNext());
  EXPECT_EQ(first->GetMl(), Matrix(Vector(1, 2, 3), Vector(0, 1, 0), Vector(1, 0, 0), Vector(0, 0, 2)));
  EXPECT_EQ(first->GetDataInstance()->GetReal(1000), 0.25);
  EXPECT_EQ(second->GetDataInstance()->GetReal(1000), 0.5);

  const Payload& data = PayloadOf(first);
  EXPECT_EQ(data.number, 17);
  EXPECT_EQ(Text(data.text), "\xe6\x97\xa5");
  EXPECT_EQ(data.reals, (std::vector<SReal>{1.5f, -2.5f, 1e-40f}));
  EXPECT_EQ(data.levelRead, 3) << "the disk level of the registration";

  BaseVideoPost* post = doc->GetActiveRenderData()->GetFirstVideoPost();
  ASSERT_NE(post, nullptr);
  EXPECT_EQ(((PayloadPost*)post->GetNodeData())->number, 99);
  EXPECT_EQ(first->GetDataInstance()->GetLink(2000, doc), second);
  EXPECT_EQ(second->GetDataInstance()->GetLink(2000, doc), post);
  EXPECT_EQ(first->GetDown()->GetDataInstance()->GetLink(2000, doc), root);
  EXPECT_EQ(post->GetDataInstance()->GetLink(1003, doc), first);
  EXPECT_EQ(data.extra.GetLink(1, doc), first);
  EXPECT_EQ(data.extra.GetLink(2, doc), second);
  EXPECT_EQ(Text(doc->GetData(DOCUMENTSETTINGS_GENERAL).GetString(4000)), "setting");
  EXPECT_EQ(doc->GetTime(), BaseTime(7, 25));

  EXPECT_TRUE(Save(doc, "b.scene") == saved) << "the same scene gives the same bytes";
}

TEST_F(SceneFile, NodesOfMissingPlugInsAreKeptWithTheirDataAndLinks) {
  const std::string saved = Save(MakeDocument(), "a.scene");
  Start(false);
  BaseDocument* doc = Load("a.scene");
  ASSERT_NE(doc, nullptr);
  EXPECT_EQ(Text(doc->GetFirstObject()->GetDown()->GetName()), "F\xc3\xafrst");
  int named = 0;
  for (const std::string& line : application_->GetConsole().Lines())
    named += line.find(std::to_string(kPayloadObject)) != std::string::npos;
  EXPECT_EQ(named, 1) << "one line for the type, however many nodes";
  EXPECT_TRUE(Save(doc, "b.scene") == saved);

  Start(true);
  doc = Load("b.scene");
  BaseObject* first = doc->GetFirstObject()->GetDown();
  EXPECT_EQ(PayloadOf(first).number, 17);
  EXPECT_EQ(PayloadOf(first).extra.GetLink(2, doc), first->GetNext());
}

TEST_F(SceneFile, ClonesTravelWithTheirTag) {
  BaseDocument* doc = application_->NewDocument();
  BaseObject* carrier = Add(doc, Onull, "Cloner");
  const std::vector<Matrix> matrices = {MatrixMove(Vector(1, 2, 3)), MatrixScale(Vector(4, 5, 6))};
  ASSERT_TRUE(host::SetClones(carrier, matrices, {1, 3}));
  const std::string saved = Save(doc, "a.scene");
  doc = Load("a.scene");
  BaseTag* tag = doc->GetFirstObject()->GetTag(ID_MOTAGDATA);
  ASSERT_NE(tag, nullptr);
  GetMoDataMessage message;
  ASSERT_TRUE(tag->Message(MSG_GET_MODATA, &message));
  ASSERT_NE(message.modata, nullptr);
  EXPECT_EQ(message.modata->GetCount(), 2);
  const MDArray<Matrix> loaded = message.modata->GetMatrixArray(MODATA_MATRIX);
  EXPECT_TRUE(loaded[0] == matrices[0] && loaded[1] == matrices[1]);
  EXPECT_EQ(message.modata->GetLongArray(MODATA_FLAGS)[1], 3);
  EXPECT_TRUE(Save(doc, "b.scene") == saved);
}

TEST_F(SceneFile, NoTruncatedFileAndNoChangedBitIsEverLoaded) {
  const std::string saved = Save(MakeDocument(), "a.scene");
  for (std::size_t at = 0; at < saved.size(); ++at) {
    RefusedScene(saved.substr(0, at));
    std::string bytes = saved;
    bytes[at] = (char)(bytes[at] ^ (1 << (at % 8)));
    RefusedScene(bytes);
  }
}

TEST_F(SceneFile, WellSealedNonsenseDoesNoHarm) {
  const std::string saved = Save(MakeDocument(), "a.scene");
  unsigned random = 1;
  for (std::size_t at = 12; at < saved.size() - 20; ++at) {
    std::string bytes = saved;
    random = random * 1664525u + 1013904223u;
    bytes[at] = (char)(random >> 24);
    bytes = Sealed(bytes);
    host::ByteSource source;
    std::string error;
    ASSERT_TRUE(source.OpenMemory(bytes.data(), bytes.size()));
    BaseDocument* doc = host::ReadSceneStream(source, &error);
    EXPECT_EQ(doc == nullptr, !error.empty());
    if (doc) BaseDocument::Free(doc);
  }
}

TEST_F(SceneFile, EachFaultOfTheFrameHasItsOwnLine) {
  const std::string saved = Save(MakeDocument(), "a.scene");
  const auto changed = [&](std::size_t at, const std::string& bytes) {
    std::string all = saved;
    return all.replace(at, bytes.size(), bytes);
  };
  const std::string first = saved.substr(0, 100), end = saved.substr(saved.size() - 20);
  const std::pair<std::string, std::string> cases[] = {
      {changed(0, "LASF"), "offset 0: found \"LASF\", expected \"HSCN\": this is not a scene file"},
      {changed(4, std::string("\2\0\0\0", 4)),
       "offset 4: found format version 2, expected version 1 to 1: a newer program wrote this file"},
      {changed(8, "xxxx"), "offset 8: found ident"},
      {saved.substr(0, saved.size() - 1),
       "offset " + std::to_string(saved.size() - 21) +
           ": found 02 48 45 4e, expected the end mark \"HEND\": the file is "
           "truncated or damaged"},
      {first + saved.substr(101), "a length of " + std::to_string(saved.size())},
      {changed(saved.size() - 8, "????????"), "checksum 3f3f3f3f3f3f3f3f, expected"},
      {"", "truncated"},
      {Sealed(saved.substr(0, saved.size() - 20) + "x" + end), "found 1 more bytes"},
      {changed(12, "\x63"), "checksum shows that the file is damaged"},
  };
  for (const auto& [bytes, line] : cases)
    EXPECT_NE(RefusedScene(bytes).find(line), std::string::npos) << line;
}

TEST_F(SceneFile, AFailedLoadLeavesTheOpenDocumentAlone) {
  BaseDocument* doc = MakeDocument();
  Write("bad.scene", Save(doc, "a.scene").substr(0, 300));
  const host::LiveCounts before = application_->Live();
  std::string error;
  EXPECT_EQ(application_->LoadScene(Path("bad.scene"), &error), nullptr);
  EXPECT_EQ(error.find(Path("bad.scene") + ": offset "), 0u) << error;
  EXPECT_EQ(application_->LoadScene(Path("missing.scene"), &error), nullptr);
  EXPECT_EQ(error, Path("missing.scene") + ": No such file or directory");
  EXPECT_EQ(GetActiveDocument(), doc);
  ExpectLive(*application_, before);
}

TEST_F(SceneFile, AFullDiskAtAnyWriteKeepsTheOldScene) {
  BaseDocument* doc = MakeDocument();
  const std::string old = Save(doc, "a.scene");
  PayloadOf(doc->GetFirstObject()->GetDown()).reals.assign(300000, 1.0f); // several writes
  std::string error;
  const auto save = [&] { application_->SaveScene(doc, Path("a.scene"), &error); };
  const int failures = FailEach(*application_, host::Fault::FileWrite, save, [&](bool struck) {
    EXPECT_EQ(folder_.Entries(), 1u) << "no temporary file stays";
    if (!struck) return;
    EXPECT_NE(error.find("No space left on device"), std::string::npos) << error;
    EXPECT_EQ(error.find(Path("a.scene") + ": "), 0u) << error;
    EXPECT_TRUE(Read(Path("a.scene")) == old);
  });
  EXPECT_GE(failures, 5);
  EXPECT_GT(Read(Path("a.scene")).size(), 1200000u);
}

TEST_F(SceneFile, PlugInsThatMisbehaveWhileSavingFailTheSaveByName) {
  BaseDocument* doc = MakeDocument();
  const std::string old = Save(doc, "a.scene");
  const struct {
    Twist twist;
    const char* text;
  } cases[] = {{Twist::RefuseWrite, "its plug-in refuses to write its data"},
               {Twist::IgnoreWriteError, "array of 3 32-bit integers"},
               {Twist::LeaveChunkOpen, "leaves 1 chunks open"},
               {Twist::EndForeignChunk, "a chunk was ended that was not begun"}};
  for (const auto& c : cases) {
    std::string error;
    twist = c.twist;
    EXPECT_FALSE(application_->SaveScene(doc, Path("a.scene"), &error));
    EXPECT_NE(error.find("object \"F\xc3\xafrst\" (type 1099001): "), std::string::npos) << error;
    EXPECT_NE(error.find(c.text), std::string::npos) << error;
    EXPECT_TRUE(Read(Path("a.scene")) == old);
  }
}

TEST_F(SceneFile, PlugInsThatMisbehaveWhileLoadingFailTheLoadByNameAndOffset) {
  Save(MakeDocument(), "a.scene");
  for (const Twist t : {Twist::RefuseRead, Twist::ReadTooMuch}) {
    std::string error;
    twist = t;
    EXPECT_EQ(application_->LoadScene(Path("a.scene"), &error), nullptr);
    EXPECT_NE(error.find("object \"F\xc3\xafrst\" (type 1099001): offset "), std::string::npos) << error;
    EXPECT_EQ(error.find("damaged"), std::string::npos) << "the file is as it was written: " << error;
    EXPECT_EQ(error.find("found end of chunk, expected 32-bit integer") != std::string::npos,
              t == Twist::ReadTooMuch);
  }
}

TEST_F(SceneFile, WhatAnOlderPlugInLeavesUnreadIsSkipped) {
  Save(MakeDocument(), "a.scene");
  twist = Twist::ReadLess;
  BaseDocument* doc = Load("a.scene");
  ASSERT_NE(doc, nullptr);
  BaseObject* first = doc->GetFirstObject()->GetDown();
  EXPECT_EQ(PayloadOf(first).number, 17);
  EXPECT_EQ(Text(first->GetDown()->GetName()), "Inner");
}

TEST_F(SceneFile, HierarchiesAreSavedAsDeepAsTheyCanBeRead) {
  BaseDocument* doc = application_->NewDocument();
  BaseObject* last = nullptr;
  for (int i = 0; i < 1000; ++i) last = Add(doc, Onull, "level", last);
  Save(doc, "deep.scene");
  BaseObject* op = Load("deep.scene")->GetFirstObject();
  int depth = 0;
  for (; op; op = op->GetDown()) ++depth;
  EXPECT_EQ(depth, 1000);
  for (int i = 0; i < 100; ++i) last = Add(doc, Onull, "level", last);
  std::string error;
  EXPECT_FALSE(application_->SaveScene(doc, Path("deeper.scene"), &error));
  EXPECT_NE(error.find("deeper than"), std::string::npos) << error;
}

} // namespace
