#include "host/base/faults.h"
#include "host/base/replacing_file.h"
#include "host/base/user_break.h"
#include "support/folder.h"

#include <csignal>
#include <functional>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using host::ProtectedFiles;
using host::ReplacingFile;

class Replacing : public Scratch {
protected:
  /** The reason when it fails. */
  std::string Put(const std::string& name, ProtectedFiles existing = ProtectedFiles::Refuse) {
    ReplacingFile file(fs::u8path(name).is_absolute() ? name : Path(name), nullptr, existing);
    std::string reason;
    const bool written = file.Open(&reason) && file.File().Write("new", 3) && file.Commit(&reason);
    EXPECT_EQ(written, reason.empty());
    return reason;
  }
};

TEST_F(Replacing, OnlyAFileOrNothingIsReplaced) {
  fs::create_directory(Path("folder"));
  Write("file", "old");
  Write("protected", "old");
  fs::permissions(Path("protected"), fs::perms::owner_read);
  Write("foreign", "old");
  const bool superuser = ::geteuid() == 0 && ::chown(Path("foreign").c_str(), 1, 1) == 0;
  ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
  fs::create_symlink("folder", Path("to folder"));
  fs::create_symlink("circle", Path("circle"));
  fs::create_symlink("/proc/self/fd/1", Path("output"));
  const std::size_t files = folder_.Entries();
  const std::pair<std::string, std::string> cases[] = {
      {"missing/a", "the folder \"" + Path("missing") + "\" doesn't exist"},
      {"file/a", "\"" + Path("file") + "\" is not a folder"},
      {"folder", "it is a folder"},
      {"to folder", "it is a folder"},
      {"pipe", "it is a pipe"},
      {"/dev/null", "it is a device"},
      {"/dev/stdout", "it stands for an open file, which only its own process can write"},
      {"output", "it stands for an open file, which only its own process can write"},
      {"circle", "the link leads in a circle"},
      {"protected", "it is write-protected"},
      {superuser ? "foreign" : "protected",
       superuser ? "it belongs to another user" : "it is write-protected"},
      {std::string(300, 'a'), "File name too long"},
  };
  for (const auto& [name, reason] : cases) EXPECT_EQ(Put(name), reason) << name;
  EXPECT_EQ(folder_.Entries(), files);
  EXPECT_EQ(Read(Path("protected")), "old");
  EXPECT_EQ(Put("protected", ProtectedFiles::Replace), "");
  EXPECT_EQ(Read(Path("protected")), "new");
}

TEST_F(Replacing, LinksStayAndRightsAreKept) {
  fs::create_directory(Path("folder"));
  Write("folder/file", "old");
  fs::permissions(Path("folder/file"), (fs::perms)0640);
  const std::pair<const char*, const char*> links[] = {
      {"inner", "folder/next"}, {"folder/next", "file"}, {"new", "folder/made"}};
  for (const auto& [link, target] : links) fs::create_symlink(target, Path(link));
  EXPECT_EQ(Put("inner"), "");
  EXPECT_EQ(Put("new"), "");
  for (const auto& [link, target] : links) EXPECT_EQ(fs::read_symlink(Path(link)), target);
  EXPECT_EQ(Read(Path("folder/file")) + Read(Path("folder/made")), "newnew");
  EXPECT_EQ(fs::status(Path("folder/file")).permissions(), (fs::perms)0640);
  EXPECT_EQ(folder_.Entries(), 3u);
}

TEST_F(Replacing, RenamesOfModulesFollowTheSameRules) {
  Write("real", "old");
  fs::permissions(Path("real"), (fs::perms)0640);
  fs::create_symlink("real", Path("link"));
  const std::string outside = Path("outside");
  Write("outside", "of somebody");
  fs::create_symlink(outside, Path("other link"));
  Write("finished", "new");
  std::string reason;
  EXPECT_TRUE(host::RenameReplacing(Path("finished"), Path("link"), &reason)) << reason;
  EXPECT_EQ(fs::read_symlink(Path("link")), "real");
  EXPECT_EQ(Read(Path("real")), "new");
  EXPECT_EQ(fs::status(Path("real")).permissions(), (fs::perms)0640);
  EXPECT_FALSE(host::RenameReplacing(Path("other link"), Path("aside"), &reason)) << "a link keeps its name";
  EXPECT_FALSE(host::RenameReplacing(Path("real"), "/dev/null", &reason));
  EXPECT_EQ(reason, "it is a device");
}

TEST_F(Replacing, TheOldFileStaysWholeUnlessTheNewOneIs) {
  Write("file", "old");
  host::Faults faults;
  std::string reason;
  for (int write = 1; write <= 2; ++write) { // the bytes themselves, and keeping them
    faults.FailAt(host::Fault::FileWrite, write);
    ReplacingFile file(Path("file"), &faults);
    ASSERT_TRUE(file.Open(&reason) && file.File().Write("new", 3)) << reason;
    EXPECT_FALSE(file.Commit(&reason));
    EXPECT_EQ(reason, "No space left on device");
  }
  {
    ReplacingFile refused(Path("taken"));
    ASSERT_TRUE(refused.Open(&reason)) << reason;
    fs::create_directory(Path("taken"));
    EXPECT_FALSE(refused.Commit(&reason));
    EXPECT_EQ(reason, "Is a directory");
  }
  EXPECT_EQ(Read(Path("file")), "old");
  EXPECT_EQ(folder_.Entries(), 2u) << "no temporary file stays";
}

TEST_F(Replacing, OnlyTemporaryFilesOfDeadProcessesOfThisComputerAreRemoved) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(0);
  ASSERT_EQ(::waitpid(child, nullptr, 0), child);
  char computer[256] = {};
  ASSERT_EQ(::gethostname(computer, sizeof computer - 1), 0);
  const std::string dead = ".save-" + std::to_string(child) + "-",
                    here = std::string("@") + computer + ".tmp";
  const std::string locked = dead + "1" + here;
  const std::string kept[] = {"file.part",       "file.tmp",           dead + "0@elsewhere.tmp",
                              dead + "x" + here, ".save-1-0" + here,   locked,
                              locked + ".part",  locked + ".part.part"};
  for (const std::string& name : kept) Write(name, "kept");
  Write(dead + "0" + here, "left behind");
  Write(dead + "0" + here + ".part", "by a writer that got the name");
  Write(dead + "2" + here + ".part.part", "by a writer that made another one of it");
  const int handle = ::open(Path(locked).c_str(), O_RDONLY);
  ASSERT_EQ(::flock(handle, LOCK_EX | LOCK_NB), 0);
  EXPECT_EQ(Put("file"), "");
  ::close(handle);
  for (const std::string& name : kept) EXPECT_EQ(Read(Path(name)), "kept") << name;
  EXPECT_EQ(folder_.Entries(), std::size(kept) + 1);
}

TEST_F(Replacing, AProcessThatIsKilledLeavesNoFile) {
  const pid_t killed = ::fork();
  if (killed == 0) {
    ReplacingFile file(Path("file"));
    std::string reason;
    const std::string content(1 << 20, 'x');
    if (!file.Open(&reason) || !file.File().Write(content.data(), content.size())) ::_exit(1);
    const bool named = !fs::is_empty(folder_.Name());
    ::kill(::getpid(), named ? SIGUSR1 : SIGKILL);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(killed, &status, 0), killed);
  ASSERT_TRUE(WIFSIGNALED(status));
  if (WTERMSIG(status) == SIGUSR1) GTEST_SKIP() << "this disk has no files without names";
  EXPECT_EQ(WTERMSIG(status), SIGKILL);
  EXPECT_EQ(folder_.Entries(), 0u);
}

TEST_F(Replacing, ASecondSignalRemovesTheUnfinishedFiles) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const pid_t ended = ::fork();
    if (ended == 0) {
      host::InstallInterruptHandler();
      ReplacingFile file(Path("file"));
      std::string name, reason;
      if (!file.Open(&reason) || !file.HandOver(&name, &reason)) ::_exit(1);
      std::ofstream(name) << "finished";
      std::ofstream(name + ".part") << "begun";
      ::raise(signal);
      if (folder_.Entries() == 3 && host::Interrupted()) ::raise(SIGTERM);
      ::_exit(2);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(ended, &status, 0), ended);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << signal << " " << status;
    EXPECT_EQ(folder_.Entries(), 0u) << signal;
  }
}

/** The exit status of `work` as an ordinary user. */
int AsOrdinaryUser(const std::function<bool()>& work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(::setgid(65534) != 0 || ::setuid(65534) != 0 ? 77 : work() ? 0 : 1);
  int status = 0;
  return ::waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(Replacing, OrdinaryUsersReplaceWhatTheyMay) {
  Write("protected", "old");
  Write("public", "old");
  Write("held/public", "old");
  if (::geteuid() != 0 || ::chown(Path("protected").c_str(), 65534, 65534) != 0)
    GTEST_SKIP() << "needs the superuser";
  for (const char* name : {"public", "held/public"}) fs::permissions(Path(name), (fs::perms)0666);
  fs::permissions(Path("protected"), (fs::perms)0444);
  fs::permissions(folder_.Name(), (fs::perms)0777);
  fs::permissions(Path("held"), (fs::perms)01777);
  if (AsOrdinaryUser([this] { return ::access(folder_.Name().c_str(), W_OK) == 0; }) != 0)
    GTEST_SKIP() << "no ordinary user gets to the folder of this test";
  EXPECT_EQ(AsOrdinaryUser([this] {
              ReplacingFile file(Path("protected"), nullptr, ProtectedFiles::Replace);
              std::string name, reason;
              if (!file.Open(&reason) || !file.HandOver(&name, &reason)) return false;
              std::ofstream(name) << "new";
              return file.Reopen(&reason) && file.Commit(&reason);
            }),
            0);
  EXPECT_EQ(Read(Path("protected")), "new");
  EXPECT_EQ(fs::status(Path("protected")).permissions(), (fs::perms)0444);
  EXPECT_EQ(AsOrdinaryUser([this] { return Put("public").empty(); }), 0);
  EXPECT_EQ(fs::status(Path("public")).permissions(), (fs::perms)0666);
  EXPECT_EQ(AsOrdinaryUser([this] {
              return ReplacingFile(Path("held/public"), nullptr, ProtectedFiles::Replace).Obstacle() ==
                     "it belongs to another user, and only its owner can replace a file of this folder";
            }),
            0);
  EXPECT_EQ(folder_.Entries(), 3u);
}

} // namespace
