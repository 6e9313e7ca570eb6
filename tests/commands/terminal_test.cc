// What a terminal gets: nothing that it would act upon, but for the newlines of the messages.
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include "tests/support/program.h"

namespace tolvane::test {

namespace {

/// The two ends of a terminal of one's own.
class Terminal {
 public:
  Terminal() : master_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    if (master_ >= 0 && grantpt(master_) == 0 && unlockpt(master_) == 0) name_ = ptsname(master_);
    slave_ = open(name_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);  // stays open, so that what is printed waits here
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal() {
    (void)close(slave_);
    (void)close(master_);
  }

  [[nodiscard]] bool there() const { return slave_ >= 0; }
  [[nodiscard]] const std::string& name() const { return name_; }

  /// What has been printed on it, without the carriage returns that it adds.
  [[nodiscard]] std::string shown() const {
    (void)fcntl(master_, F_SETFL, O_NONBLOCK);
    std::string text;
    std::string part(10000, '\0');
    // One read may return less than all that has arrived.
    for (ssize_t size = 0; (size = read(master_, part.data(), part.size())) > 0;) {
      text.append(part, 0, static_cast<std::size_t>(size));
    }
    std::erase(text, '\r');
    return text;
  }

 private:
  int master_;
  int slave_ = -1;
  std::string name_;
};

class OnATerminal : public ProgramTest {
 protected:
  void SetUp() override {
    if (!terminal_.there()) GTEST_SKIP() << "there are no terminals";
  }

  /// What a run shows on a terminal.
  [[nodiscard]] std::string shown(const std::vector<std::string>& words) const {
    const Outcome outcome = runby({"/bin/sh", "-c", "exec \"$0\" \"$@\" >" + terminal_.name() + " 2>&1"}, words);
    EXPECT_EQ(outcome.printed, "");
    return terminal_.shown();
  }

  static std::string fileof(const std::string& platform, const std::string& version = "5.44") {
    return "[ConfigFile]\nVersion=" + version + "\n\n[config]\noverview=" + platform + "\n";
  }

 private:
  Terminal terminal_;
};

const std::string hostile = "HP\x1b]0;title\x07\x9b\xe2\x80\xaet\t";

TEST_F(OnATerminal, APlatformShowsItsControlCharacters) {
  write(folder / "a", fileof(hostile));
  EXPECT_EQ(shown({"update", "a"}), "Unknown platform: HP\\x1b]0;title\\x07\\x9b\\xe2\\x80\\xaet\\t.\n");
  EXPECT_EQ(run({"update", "a"}), (Outcome{0, "Unknown platform: " + hostile + ".\n"}));
}

TEST_F(OnATerminal, AnOperatingSystemShowsItsControlCharacters) {
  write(folder / "a", fileof("HP~\x1b[2J~3.12", "3.12"));
  EXPECT_EQ(shown({"update", "a"}), "Unknown o/s type \\x1b[2J\nUnknown platform: HP.\n");
}

TEST_F(OnATerminal, AWarningKeepsItsLines) {
  write(folder / "a", fileof("HP/UX~Unix"));
  const std::string warning = "\nWarning: Cannot upgrade from HP/UX to X86-64(Ubuntu Linux)!\nContact Tessvar.\n\n";
  EXPECT_EQ(shown({"update", "a"}), warning);
  write(folder / "a", fileof("HP/UX~Unix"));
  EXPECT_EQ(run({"update", "a"}), (Outcome{1, warning}));
}

TEST_F(OnATerminal, AFileNameShowsItsControlCharacters) {
  const std::string name = "a\nb\x1b";
  EXPECT_EQ(shown({"update", name}), "Cannot open file a\\nb\\x1b for input.\n");
  EXPECT_EQ(run({"update", name}), (Outcome{0, "Cannot open file " + name + " for input.\n"}));
}

TEST_F(OnATerminal, AComplaintShowsItsControlCharacters) {
  const std::string name = "a\x1b";
  write(folder / name, fileof("X86-64(Ubuntu Linux)~UNIX~5.44"));
  std::filesystem::create_directories(folder / (name + "_544") / "full");
  EXPECT_EQ(shown({"update", name}),
            "tolvane: cannot create the backup a\\x1b_544: Is a directory; a\\x1b has the new contents\n");
}

}  // namespace

}  // namespace tolvane::test
