#include "support/folder.h"

#include "c4d.h"
#include "host/application.h"

namespace {

Filename Name(const std::string& path) {
  return Filename(String(path.c_str(), STRINGENCODING_UTF8));
}

class Files : public Scratch {
protected:
  void TearDown() override {
    EXPECT_EQ(application_.Live().files, 0) << "whatever failed, everything was freed";
    EXPECT_TRUE(application_.Misbehaviour().empty());
  }

  host::Application application_;
};

TEST_F(Files, PiecesOfEverySizeReadBackWhateverTheBufferHolds) {
  std::string data(1 << 20, '\0');
  for (std::size_t i = 0; i < data.size(); ++i) data[i] = (char)(i * 2654435761u >> 11);
  const VLONG sizes[] = {1, 7, 4096, 262143, 262144, 262145, 300000};
  const std::string path = Path("\xc3\xa4\xe6\x97\xa5.bin");
  AutoAlloc<BaseFile> out;
  ASSERT_TRUE(out->Open(Name(path), FILEOPEN_WRITE));
  std::size_t done = 0;
  for (int i = 0; done < data.size(); ++i) {
    const VLONG size = std::min<VLONG>(sizes[i % 7], (VLONG)(data.size() - done));
    ASSERT_TRUE(out->WriteBytes(&data[done], size));
    done += (std::size_t)size;
    ASSERT_EQ(out->GetPosition(), (LLONG)done);
  }
  ASSERT_TRUE(out->Close());
  EXPECT_TRUE(Read(path) == data);

  AutoAlloc<BaseFile> in;
  ASSERT_TRUE(in->Open(Name(path)));
  EXPECT_EQ(in->GetLength(), (LLONG)data.size());
  std::string back(data.size() + 1, '\0');
  for (LLONG at : {(LLONG)900000, (LLONG)3, (LLONG)262000, (LLONG)0}) {
    ASSERT_TRUE(in->Seek(at, FILESEEK_START));
    VLONG size = std::min<VLONG>(500000, (VLONG)data.size() - (VLONG)at);
    ASSERT_EQ(in->ReadBytes(&back[0], size), size);
    EXPECT_EQ(data.compare((std::size_t)at, (std::size_t)size, back, 0, (std::size_t)size), 0) << at;
  }
}

TEST_F(Files, TheEndIsAnErrorOnlyWhenAllWasNeeded) {
  Write("ten", "0123456789");
  char buffer[32];
  AutoAlloc<BaseFile> file;
  ASSERT_TRUE(file->Open(Name(Path("ten"))));
  ASSERT_TRUE(file->Seek(6));
  EXPECT_EQ(file->TryReadBytes(buffer, 20), 4);
  EXPECT_EQ(file->GetError(), FILEERROR_NONE);
  EXPECT_EQ(file->TryReadBytes(buffer, 20), 0);
  ASSERT_TRUE(file->Seek(-2));
  EXPECT_EQ(file->ReadBytes(buffer, 3), 2);
  EXPECT_EQ(file->GetError(), FILEERROR_READ);
  EXPECT_FALSE(file->Seek(-11));
  EXPECT_FALSE(file->Seek(11, FILESEEK_START));
  EXPECT_FALSE(file->WriteBytes("x", 1)) << "opened for reading";
}

TEST_F(Files, AFullDiskIsReportedAndSticks) {
  AutoAlloc<BaseFile> file;
  ASSERT_TRUE(file->Open(Name(Path("full")), FILEOPEN_WRITE));
  ASSERT_TRUE(file->WriteBytes("buffered", 8));
  application_.GetFaults().FailAt(host::Fault::FileWrite, 1);
  EXPECT_FALSE(file->Close()) << "what was buffered did not arrive";
  EXPECT_EQ(file->GetError(), FILEERROR_WRITE);

  const std::string large(1 << 20, 'x');
  ASSERT_TRUE(file->Open(Name(Path("full")), FILEOPEN_WRITE));
  application_.GetFaults().FailAt(host::Fault::FileWrite, 1);
  EXPECT_FALSE(file->WriteBytes(large.data(), (VLONG)large.size()));
  EXPECT_FALSE(file->WriteBytes("x", 1)) << "a gap would be left";
  EXPECT_FALSE(file->Close());
}

TEST_F(Files, WhatIsNoFileDoesNotOpen) {
  AutoAlloc<BaseFile> file;
  for (const std::string& path : {std::string(), Path("missing"), folder_.Name(), std::string("/dev/null")}) {
    EXPECT_FALSE(file->Open(Name(path))) << path;
    EXPECT_EQ(file->GetError(), FILEERROR_OPEN);
    EXPECT_EQ(file->TryReadBytes(&file, 1), 0);
  }
  EXPECT_FALSE(file->Close());
}

TEST_F(Files, ExistKillAndRenameTellFilesFromFolders) {
  Write("a", "a");
  Write("b", "b");
  EXPECT_TRUE(GeFExist(Name(Path("a"))));
  EXPECT_FALSE(GeFExist(Name(Path("a")), TRUE));
  EXPECT_FALSE(GeFExist(Name(folder_.Name())));
  EXPECT_TRUE(GeFExist(Name(folder_.Name()), TRUE));
  EXPECT_FALSE(GeFKill(Name(folder_.Name()), 0));
  std::filesystem::create_directory(Path("folder"));
  EXPECT_FALSE(GeFRename(Name(Path("a")), Name(Path("folder/a")))) << "within one folder only";
  EXPECT_TRUE(GeFRename(Name(Path("a")), Name(Path("b"))));
  EXPECT_EQ(Read(Path("b")), "a");
  EXPECT_TRUE(GeFKill(Name(Path("b")), 0));
  EXPECT_FALSE(GeFKill(Name(Path("b")), 0));
  EXPECT_FALSE(GeFRename(Name(Path("b")), Name(Path("c"))));
}

TEST_F(Files, OwnStreamsKeepChunksAndSkipUnknownOnes) {
  AutoAlloc<HyperFile> out, in;
  const SReal reals[3] = {1, 2, 3};
  ASSERT_TRUE(out->Open(4711, Name(Path("own")), FILEOPEN_WRITE, FILEDIALOG_NONE));
  ASSERT_TRUE(out->WriteChunkStart(1, 0) && out->WriteChunkStart(99, 5));
  ASSERT_TRUE(out->WriteArray(reals, HYPERFILEARRAY_SREAL, 4, 3) &&
              out->WriteString("unknown to the reader"));
  ASSERT_TRUE(out->WriteChunkEnd() && out->WriteLong(12) && out->WriteChunkEnd() && out->Close());

  LONG id = 0, level = 0, number = 0;
  ASSERT_TRUE(in->Open(4711, Name(Path("own")), FILEOPEN_READ, FILEDIALOG_NONE));
  ASSERT_TRUE(in->ReadChunkStart(&id, &level) && in->ReadChunkStart(&id, &level));
  EXPECT_TRUE(id == 99 && level == 5);
  ASSERT_TRUE(in->SkipToEndChunk() && in->ReadChunkEnd() && in->ReadLong(&number));
  EXPECT_EQ(number, 12);
  EXPECT_TRUE(in->ReadChunkEnd() && in->Close());
}

TEST_F(Files, OwnStreamsRefuseWrongUse) {
  LONG n = 0;
  const auto open = [&](HyperFile* file, FILEOPEN mode, LONG ident = 1) {
    return file->Open(ident, Name(Path("s")), mode, FILEDIALOG_NONE) != FALSE;
  };
  AutoAlloc<HyperFile> closed, outside, unended, mixed, good, other;
  EXPECT_FALSE(closed->WriteLong(1));
  ASSERT_TRUE(open(outside, FILEOPEN_WRITE));
  EXPECT_FALSE(outside->WriteLong(1));
  EXPECT_EQ(outside->GetError(), FILEERROR_VALUE_NO_CHUNK);
  EXPECT_FALSE(outside->Close());
  EXPECT_EQ(folder_.Entries(), 0u) << "a stream with an error leaves no file";
  ASSERT_TRUE(open(unended, FILEOPEN_WRITE) && unended->WriteChunkStart(1, 0));
  EXPECT_FALSE(unended->Close());
  EXPECT_EQ(unended->GetError(), FILEERROR_CHUNK_NUMBER);
  ASSERT_TRUE(open(mixed, FILEOPEN_WRITE) && mixed->WriteChunkStart(1, 0) && mixed->WriteChunkEnd());
  EXPECT_FALSE(mixed->ReadLong(&n));
  EXPECT_FALSE(mixed->Close());
  ASSERT_TRUE(open(good, FILEOPEN_WRITE) && good->WriteChunkStart(1, 0) && good->WriteChunkEnd() &&
              good->Close());
  EXPECT_FALSE(open(other, FILEOPEN_READ, 2));
  EXPECT_EQ(other->GetError(), FILEERROR_OPEN);
}

} // namespace
