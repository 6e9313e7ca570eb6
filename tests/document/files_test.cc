// Loading the line store from a file, and the three ways of writing it.
#include "document/files.h"

#include <unistd.h>

#include "document/linestore.h"
#include "tests/support/fatal.h"
#include "tests/support/program.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class StoreFiles : public StoreTest {
 protected:
  StoreFiles() : path(testing::TempDir() + "tolvane-files-" + std::to_string(getpid())) {}
  ~StoreFiles() override {
    for (const char* suffix : {"", "_tmp", "_50"}) std::filesystem::remove(path + suffix);
  }

  /// Lets an operation work on a file.
  template <typename Operation>
  static void on(const std::string& path, const Operation& operation) {
    Lock lock{path.c_str()};
    Original original = Original::replaced(lock, path.c_str());
    operation(original);
  }

  static void loadfrom(const std::string& path) {
    Lock lock{path.c_str()};
    Original original = Original::opened(lock, path.c_str());
    load(original);
  }

  std::string path;
};

TEST_F(StoreFiles, AreLoadedAndSaved) {
  write(path, "[A]\n\na=1\n[B]");
  loadfrom(path);
  EXPECT_EQ(lines(), "[A]\na=1\n[B]\n");
  on(path, [](Original& original) { save(original); });
  EXPECT_EQ(contents(path), "[A]\na=1\n\n[B]\n");
}

TEST_F(StoreFiles, ThatAreFoldersCountAsEmpty) {
  loadfrom(testing::TempDir());
  EXPECT_EQ(lines(), "");
}

TEST_F(StoreFiles, ThatCannotBeReadToTheirEndAreAnError) {
  EXPECT_EQ(fatal([] { loadfrom("no/such.qpx"); }), "Cannot open file no/such.qpx for input.");
  // The kernel opens this one and then refuses to read the page at address 0.
  EXPECT_EQ(fatal([] { loadfrom("/proc/self/mem"); }), "Cannot open file /proc/self/mem for input.");
}

TEST_F(StoreFiles, ThatCannotBeWrittenAreAnError) {
  const auto saved = [](Original& original) { save(original); };
  given("a=1\n");
  EXPECT_EQ(fatal([&] { on("no/such.qpx", saved); }), "Cannot open file no/such.qpx for output.");
  EXPECT_EQ(fatal([&] { on("/dev/full", saved); }), "Error writing output file");
}

TEST_F(StoreFiles, OfOutputLeaveNoTemporaryOne) {
  write(path, "old\n");
  given("new\n");
  on(path, [](Original& original) { output(original); });
  EXPECT_EQ(contents(path), "new\n");
  EXPECT_FALSE(std::filesystem::exists(path + "_tmp"));
}

TEST_F(StoreFiles, OfBackupLeaveTheOldContentsUnderTheSuffix) {
  write(path, "old\n\n\n");
  write(path + "_50", "older\n");
  write(path + "_tmp", "stale\n");
  given("new\n");
  on(path, [](Original& original) { backup(original, "50"); });
  EXPECT_EQ(contents(path), "new\n");
  EXPECT_EQ(contents(path + "_50"), "old\n\n\n");
  EXPECT_FALSE(std::filesystem::exists(path + "_tmp"));
}

TEST_F(StoreFiles, WithNamesThatAreTooLongAreNotTouched) {
  const std::string name = testing::TempDir() + std::string(508 - testing::TempDir().size(), 'n');
  ASSERT_EQ(name.size(), 508U);
  given("new\n");
  EXPECT_THROW(on(name, [](Original& original) { output(original); }), TextTooLong);
  EXPECT_THROW(on(path, [](Original& original) { backup(original, std::string(511, '5')); }), TextTooLong);
  EXPECT_FALSE(std::filesystem::exists(path + "_tmp"));
}

}  // namespace

}  // namespace tolvane::test
