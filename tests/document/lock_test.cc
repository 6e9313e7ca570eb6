#include "document/lock.h"

#include <fcntl.h>

#include <future>
#include <thread>

#include "tests/support/fatal.h"
#include "tests/support/locker.h"
#include "tests/support/program.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// Each test has a directory "d" and a directory "e".
class Locks : public ProgramTest {
 protected:
  Locks() {
    fs::create_directory(folder / "d");
    fs::create_directory(folder / "e");
  }

  [[nodiscard]] std::string path(const char* name) const { return folder / name; }

  [[nodiscard]] Descriptor opened(const char* name) const {
    return Descriptor{open((folder / name).c_str(), O_RDONLY | O_CLOEXEC)};
  }

  /// True if somebody who opens the directory or file now cannot lock it.
  [[nodiscard]] bool locked(const char* name, int operation = LOCK_EX) const {
    const Descriptor file = opened(name);
    EXPECT_TRUE(file.isopen()) << name;
    const bool refused = flock(file.number(), operation | LOCK_NB) != 0;
    EXPECT_TRUE(!refused || errno == EWOULDBLOCK) << name;
    return refused;
  }

  /// The message if the paths cannot be locked within 30 ms.
  [[nodiscard]] static std::string refusal(std::initializer_list<const char*> paths) {
    testing::internal::CaptureStderr();
    const std::string message = fatal([&] { const Lock lock{paths, 30ms}; });
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_EQ(told.empty(), message.empty()) << told;
    return message;
  }
};

TEST_F(Locks, HoldTheDirectoriesOfAllPathsAsLongAsTheyLive) {
  {
    const Lock lock{path("d/a").c_str(), path("e/s").c_str(), path("d/n").c_str()};
    EXPECT_TRUE(locked("d"));
    EXPECT_TRUE(locked("e"));
    EXPECT_TRUE(locked("d", LOCK_SH));
    EXPECT_FALSE(locked("."));
  }
  EXPECT_FALSE(locked("d"));
  EXPECT_FALSE(locked("e"));
}

TEST_F(Locks, OfOneDirectoryUnderSeveralNamesAreOne) {
  fs::create_directory_symlink("d", folder / "link");
  EXPECT_EQ(refusal({path("d/a").c_str(), path("link/s").c_str(), path("d/../d/n").c_str()}), "");
}

TEST_F(Locks, AreRefusedAfterTheTimeWithTheFirstPath) {
  const Locker other{path("e"), LOCK_EX};
  EXPECT_EQ(refusal({path("e/a").c_str()}), "Cannot open file " + path("e/a") + " for output.");
  EXPECT_EQ(refusal({path("d/a").c_str(), path("d/s").c_str(), path("e/n").c_str()}),
            "Cannot open file " + path("d/a") + " for output.");
  EXPECT_EQ(refusal({path("d/a").c_str()}), "");
  EXPECT_FALSE(locked("d")) << "what was locked before is free again";
}

TEST_F(Locks, WaitForOthersAndSayItOnce) {
  Locker other{path("d"), LOCK_EX};
  testing::internal::CaptureStderr();
  auto later = std::async(std::launch::async, [&other] {
    std::this_thread::sleep_for(100ms);
    other.release();
  });
  const auto before = std::chrono::steady_clock::now();
  {
    const Lock lock{path("d/a").c_str()};
    EXPECT_TRUE(locked("d"));
  }
  EXPECT_GE(std::chrono::steady_clock::now() - before, 90ms);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "tolvane: waiting for the lock on " + path("d/") + "\n");
}

TEST_F(Locks, WaitForReadersToo) {
  const Locker other{path("d"), LOCK_SH};
  EXPECT_NE(refusal({path("d/a").c_str()}), "");
}

TEST_F(Locks, AreGoneWithTheirProcess) {
  const pid_t child = fork();
  if (child == 0) {
    const Lock lock{path("d/a").c_str()};
    (void)raise(SIGKILL);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_FALSE(locked("d"));
  EXPECT_EQ(filesin(folder / "d"), Files{});
}

TEST_F(Locks, ThatAreInheritedAreNotWaitedForAndStay) {
  const Descriptor directory = opened("d");
  for (const int operation : {LOCK_EX, LOCK_SH}) {
    ASSERT_EQ(flock(directory.number(), operation), 0);
    EXPECT_EQ(refusal({path("d/a").c_str()}), "");
    EXPECT_TRUE(locked("d")) << "and stay";
    EXPECT_EQ(locked("d", LOCK_SH), operation == LOCK_EX) << "as they were";
  }
}

TEST_F(Locks, OfAnotherDescriptorOfTheDirectoryAreNotItsOwn) {
  const Descriptor directory = opened("d");
  const Locker other{path("d"), LOCK_EX};
  EXPECT_NE(refusal({path("d/a").c_str()}), "") << "it is open here, but locked by another";
}

TEST_F(Locks, OfAMissingDirectoryAreSkipped) {
  EXPECT_EQ(refusal({path("missing/a").c_str()}), "");
  const Lock lock{path("missing/a").c_str()};
  EXPECT_EQ(lock.directory(path("missing/a").c_str()), AT_FDCWD);
}

TEST_F(Locks, GiveTheDirectoryOfEachPath) {
  const std::vector<std::string> paths{path("e/a"), path("d/s"), path("e/n")};
  const Lock lock{paths[0].c_str(), paths[1].c_str(), paths[2].c_str()};
  for (const std::string& each : paths) {
    struct stat expected = {};
    struct stat given = {};
    ASSERT_EQ(stat(fs::path(each).parent_path().c_str(), &expected), 0);
    ASSERT_EQ(fstat(lock.directory(each.c_str()), &given), 0);
    EXPECT_EQ(identity(given), identity(expected)) << each;
  }
}

TEST_F(Locks, OfTheSameDirectoriesInAnotherOrderDoNotDeadlock) {
  testing::internal::CaptureStderr();
  const auto turns = [this](const char* one, const char* two) {
    for (int turn = 0; turn < 300; ++turn) {
      const Lock lock{
          {path(one).c_str(), path(two).c_str()},
          10s
      };
    }
  };
  auto other = std::async(std::launch::async, turns, "d/a", "e/a");
  EXPECT_NO_THROW(turns("e/a", "d/a"));
  EXPECT_NO_THROW(other.get());
  (void)testing::internal::GetCapturedStderr();
}

TEST_F(Locks, OfAFileAreAddedUntilItIsClosed) {
  write(folder / "d" / "a", "");
  Lock lock{path("d/a").c_str()};
  {
    const Descriptor file = opened("d/a");
    EXPECT_TRUE(lock.add(file.number(), "d/a"));
    EXPECT_TRUE(locked("d/a"));
  }
  EXPECT_FALSE(locked("d/a"));
}

TEST_F(Locks, OfAFileAreRefusedInTheSameTime) {
  write(folder / "d" / "a", "");
  const Locker other{path("d/a"), LOCK_EX};
  const std::string name = path("d/a");
  Lock lock{{name.c_str()}, 30ms};
  const Descriptor file = opened("d/a");
  testing::internal::CaptureStderr();
  const auto forever = [&] {
    while (!lock.add(file.number(), "d/a")) EXPECT_TRUE(locked("d")) << "taken again";
  };
  EXPECT_THROW(forever(), Fatal);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "tolvane: waiting for the lock on d/a\n");
}

// One run holds the file and waits for the directory, the other one the other way round.
TEST_F(Locks, OfADirectoryAreReleasedDuringTheWaitForAFile) {
  write(folder / "d" / "a", "");
  const std::string name = path("d/a");
  Lock lock{{name.c_str()}, 10s};
  const Descriptor file = opened("d/a");
  testing::internal::CaptureStderr();
  const pid_t other = fork();
  if (other == 0) {
    const int own = open(name.c_str(), O_RDONLY);
    const bool held = flock(own, LOCK_EX) == 0;
    const int directory = open(path("d").c_str(), O_RDONLY);
    _exit(held && flock(directory, LOCK_EX) == 0 ? 0 : 1);
  }
  while (!locked("d/a")) std::this_thread::sleep_for(1ms);
  while (!lock.add(file.number(), "d/a")) continue;
  int status = 1;
  ASSERT_EQ(waitpid(other, &status, 0), other);
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(locked("d"));
  (void)testing::internal::GetCapturedStderr();
}

TEST_F(Locks, OfTheDirectoryOfAPipeAreNotNeeded) {
  ASSERT_EQ(mkfifo(path("d/pipe").c_str(), 0600), 0);
  const Lock lock{path("e/a").c_str(), path("d/pipe").c_str()};
  EXPECT_TRUE(locked("e"));
  EXPECT_FALSE(locked("d"));
  EXPECT_NE(lock.directory(path("d/pipe").c_str()), AT_FDCWD);
}

// A run that takes long before it has to wait still waits for the whole time.
TEST_F(Locks, CountTheTimeOfWaitingOnly) {
  const std::string name = path("d/a");
  Lock lock{{name.c_str()}, 30ms};
  std::this_thread::sleep_for(60ms);
  EXPECT_NO_THROW(lock.wait());
  std::this_thread::sleep_for(60ms);
  EXPECT_NO_THROW(lock.wait());
}

TEST_F(Locks, OfReadersAreShared) {
  write(folder / "d" / "s", "text\n");
  Lock lock{path("d/a").c_str()};
  const Descriptor file = opened("d/s");
  EXPECT_TRUE(lock.add(file.number(), "d/s", Lock::Kind::shared));
  EXPECT_TRUE(locked("d/s"));
  EXPECT_FALSE(locked("d/s", LOCK_SH));
}

}  // namespace

}  // namespace tolvane::test
