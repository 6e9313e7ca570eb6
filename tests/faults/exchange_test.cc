// An ordinary user who exchanges the file for another one, again and again, while root runs a command in a directory
// that he may write.
#include <fcntl.h>
#include <grp.h>
#include <linux/fs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>

#include "tests/support/program.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

constexpr unsigned attacker = 65534;

const std::string secret = "password=of-the-database";
const std::string head = "[ConfigFile]\nVersion=5.44\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.44\n";

/// A file of the same contents but for its last line.
std::string textof(const std::string& line) { return head + line + "\n"; }

/// The parameter is the number of rounds.
class Exchange : public ProgramTest, public testing::WithParamInterface<int> {
 protected:
  void SetUp() override {
    if (sanitized) GTEST_SKIP() << "needs the program without sanitizers";
    if (geteuid() != 0) GTEST_SKIP() << "only root can switch users";
    fs::permissions(folder, fs::perms{0777});
    child_ = fork();
    if (child_ == 0) attack();
  }

  ~Exchange() override {
    if (child_ <= 0) return;
    (void)kill(child_, SIGKILL);
    (void)waitpid(child_, nullptr, 0);
  }

  /// The file "a" is root's alone and holds the secret, "b" is the attacker's and open to all.
  void prepare() const {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) fs::remove_all(entry.path());
    create("hidden-a", textof(secret), 0, 0600);
    create("hidden-b", textof("mine=1"), attacker, 0666);
    fs::rename(folder / "hidden-b", folder / "b");
    fs::rename(folder / "hidden-a", folder / "a");
  }

  /// A file of the directory, opened once: under its name another one may stand a moment later.
  struct Found {
    struct stat status = {};
    std::string text;
  };

  /// Runs the command in each round. Returns how many files are bad then.
  [[nodiscard]] int countbad(const std::vector<std::string>& words, bool (*bad)(const Found&)) const {
    int count = 0;
    for (int round = 0; round < GetParam(); ++round) {
      prepare();
      (void)run(words);
      for (const Found& file : found()) count += bad(file) ? 1 : 0;
    }
    RecordProperty("rounds", GetParam());
    return count;
  }

  /// True if the attacker can read the secret in the file.
  [[nodiscard]] static bool leaked(const Found& file) {
    const bool open = file.status.st_uid == attacker || (file.status.st_mode & 0004U) != 0;
    return open && file.text.find(secret) != std::string::npos;
  }

  /// True if the file has the owner of one file and the mode of the other.
  [[nodiscard]] static bool mixed(const Found& file) {
    const unsigned mode = file.status.st_mode & 07777U;
    return !(file.status.st_uid == 0 && mode == 0600) && !(file.status.st_uid == attacker && mode == 0666);
  }

 private:
  void create(const char* name, const std::string& text, unsigned owner, unsigned mode) const {
    const int file = open((folder / name).c_str(), O_WRONLY | O_CREAT | O_EXCL, 0600);
    ASSERT_GE(file, 0);
    ASSERT_EQ(::write(file, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    ASSERT_EQ(fchown(file, owner, owner), 0);
    ASSERT_EQ(fchmod(file, mode), 0);
    (void)close(file);
  }

  [[nodiscard]] std::vector<Found> found() const {
    std::vector<Found> all;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
      const int file = open(entry.path().c_str(), O_RDONLY | O_CLOEXEC);
      if (file < 0) continue;  // renamed at this moment
      Found one;
      one.text.resize(10000);
      EXPECT_EQ(fstat(file, &one.status), 0);
      const ssize_t size = ::read(file, one.text.data(), one.text.size());
      one.text.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
      (void)close(file);
      all.push_back(one);
    }
    return all;
  }

  /// Exchanges the two files until it is killed.
  [[noreturn]] void attack() const {
    const std::string one = folder / "a";
    const std::string two = folder / "b";
    if (setgroups(0, nullptr) != 0 || setgid(attacker) != 0 || setuid(attacker) != 0) _exit(1);
    while (true) (void)renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, two.c_str(), RENAME_EXCHANGE);
  }

  pid_t child_ = -1;
};

TEST_P(Exchange, DuringUpdateLeaksNothing) { EXPECT_EQ(countbad({"update", "a"}, leaked), 0); }

TEST_P(Exchange, DuringFdbmsLeaksNothing) { EXPECT_EQ(countbad({"fdbms", "a"}, leaked), 0); }

TEST_P(Exchange, DuringSetparameterLeaksNothing) {
  EXPECT_EQ(countbad({"setparameter", "a", "[config]", "k", "1"}, leaked), 0);
}

// What merge writes belongs to the owner of the file that it replaces, with that file's mode.
TEST_P(Exchange, DuringMergeMixesNoOwnerWithTheModeOfAnotherFile) {
  const std::string legacy = folder.string() + ".legacy";
  fs::create_directory(legacy);
  write(legacy + "/s", "[ConfigFile]\nFileType=Configuration 5.44\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX\n");
  write(legacy + "/n", "[ConfigFile]\nFileType=Network\n");
  EXPECT_EQ(countbad({"merge", "a", legacy + "/s", legacy + "/n"}, mixed), 0);
  fs::remove_all(legacy);
}

INSTANTIATE_TEST_SUITE_P(Short, Exchange, testing::Values(60));
INSTANTIATE_TEST_SUITE_P(Heavy, Exchange, testing::Values(1000));

}  // namespace

}  // namespace tolvane::test
