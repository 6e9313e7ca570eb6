#include "document/original.h"

#include <fcntl.h>

#include <future>
#include <thread>

#include "tests/support/fatal.h"
#include "tests/support/locker.h"
#include "tests/support/program.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

class Originals : public ProgramTest {
 protected:
  [[nodiscard]] std::string path(const char* name = "a") const { return folder / name; }
};

TEST_F(Originals, AreReadFromTheOpenedFile) {
  write(path(), "old\n");
  const std::string name = path();
  Lock lock{name.c_str()};
  Original original = Original::opened(lock, name.c_str());
  fs::rename(path(), path("other"));
  write(path(), "new\n");
  EXPECT_EQ(original.bytes(), "old\n");
  EXPECT_FALSE(original.isnamed("a"));
  EXPECT_TRUE(original.isnamed("other"));
  EXPECT_FALSE(original.isnamed("missing"));
}

// Another run can replace the file without the lock of this directory: by another name of it, or below the same
// wrapper.
TEST_F(Originals, ThatAreReplacedBeforeTheyAreLockedAreOpenedAgain) {
  write(path(), "old\n");
  write(path("next"), "new\n");
  Locker other{path(), LOCK_EX, [this] { fs::rename(path("next"), path()); }};
  const std::string name = path();
  Lock lock{name.c_str()};
  testing::internal::CaptureStderr();
  auto later = std::async(std::launch::async, [&other] {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    other.release();
  });
  Original original = Original::opened(lock, name.c_str());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "tolvane: waiting for the lock on " + name + "\n");
  EXPECT_EQ(original.bytes(), "new\n");
  EXPECT_TRUE(original.isnamed("a"));
}

TEST_F(Originals, ThatCannotBeOpenedAreFatal) {
  const std::string name = path("missing/a");
  Lock lock{name.c_str()};
  EXPECT_EQ(fatal([&] { (void)Original::opened(lock, name.c_str()); }), "Cannot open file " + name + " for input.");
}

TEST_F(Originals, ThatAreOnlyLookedAtMayBeMissing) {
  const std::string name = path();
  Lock lock{name.c_str()};
  EXPECT_TRUE(Original::replaced(lock, name.c_str()).missing());
  write(path(), "");
  const Original there = Original::replaced(lock, name.c_str());
  EXPECT_FALSE(there.missing());
  EXPECT_TRUE(there.regular());
  EXPECT_GE(there.file(), 0);
}

TEST_F(Originals, ThatAreLinksThatLeadNowhereAreMissing) {
  write(path("file"), "");
  for (const char* target : {"missing", "a", "file/below"}) {
    fs::create_symlink(target, path());
    const std::string name = path();
    Lock lock{name.c_str()};
    const Original link = Original::replaced(lock, name.c_str());
    EXPECT_TRUE(link.missing()) << target;
    EXPECT_TRUE(link.isnamed("a")) << target;
    fs::remove(path());
  }
}

TEST_F(Originals, HaveTheirNamesInTheirDirectory) {
  fs::create_directory(folder / "d");
  write(folder / "d" / "a", "");
  const std::string name = path("d/a");
  Lock lock{name.c_str()};
  const Original original = Original::opened(lock, name.c_str());
  EXPECT_STREQ(original.name(), "a");
  EXPECT_STREQ(original.nameof(Text(name, "_tmp")), "a_tmp");
  EXPECT_EQ(original.directory(), lock.directory(name.c_str()));

  const std::string nameless = path("d/");
  Lock other{nameless.c_str()};
  const Original directory = Original::opened(other, nameless.c_str());
  EXPECT_STREQ(directory.name(), nameless.c_str()) << "looked up as it stands";
  EXPECT_EQ(directory.directory(), AT_FDCWD);
  EXPECT_FALSE(directory.regular());
}

}  // namespace

}  // namespace tolvane::test
