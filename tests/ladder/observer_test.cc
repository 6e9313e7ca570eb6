// What an observer is told of a conversion, and that a conversion with one needs no file and no system call.
#include "document/observer.h"

#include <gmock/gmock.h>
#include <linux/seccomp.h>
#include <malloc.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "commands/convert.h"
#include "document/parse.h"
#include "legacy/convertpair.h"
#include "tests/support/program.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

using testing::ElementsAre;

class Observed : public StoreTest {
 protected:
  std::vector<std::string> parts;
  std::string printed;
  const Observer who{[this](std::string_view ladder, std::string_view version, std::string_view phrase) {
                       parts.push_back(std::string(ladder) + '|' + std::string(version) + '|' + std::string(phrase));
                     },
                     [this](std::string_view text) { printed += text; }};
  const Observing here{who};
};

TEST_F(Observed, UpdatesTellTheirPartsAndMessages) {
  given("[ConfigFile]\nVersion=5.43\n[config]\noverview=Tru64 UNIX~UNIX~5.43\n");
  EXPECT_EQ(convert(), "543");
  EXPECT_THAT(parts, ElementsAre("main|5.44|names of 64-bit platforms", "main|5.45|obsolete keys", "||platform check",
                                 "||version in the platform record", "||version of the file"));
  EXPECT_EQ(printed, "\nWarning: Cannot upgrade from Tru64 UNIX to X86-64(Ubuntu Linux)!\nContact Tessvar.\n\n");
}

TEST_F(Observed, MergesTellTheLadderOfEachFile) {
  given("[ConfigFile]\nFileType=Configuration 3.11\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~\n");
  LegacySystem system = convertsystemfile();
  EXPECT_THAT(parts, ElementsAre("system|3.12|console log, terminal memory, what became obsolete"));
  EXPECT_NE(system.lines.first(), nullptr);
  parse("[ConfigFile]\nFileType=Network 3.11\n");
  joinnetworkfile(system);
  ASSERT_EQ(parts.size(), 32U) << "one step of each legacy ladder, 25 of the main one, and 5 parts that are no steps";
  EXPECT_EQ(parts[1], "network|3.12|the sections of the newer layout");
  EXPECT_EQ(parts[3], "||both files joined");
  EXPECT_EQ(parts[4], "main|3.12|domain-space master");
  EXPECT_EQ(parts.back(), "||file type and version");
}

/// Does the work in a process that is killed for any system call but read, write and exit. True when it came to its
/// end.
template <typename Work>
bool needsnocall(const Work& work) {
  const pid_t child = fork();
  if (child == 0) {
    // The heap has to be there before.
    (void)mallopt(M_MMAP_MAX, 0);
    (void)mallopt(M_TRIM_THRESHOLD, 1 << 30);
    void* volatile room = std::malloc(64 << 20);  // volatile: else the compiler leaves both calls out
    std::free(room);
    (void)prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT);
    work();
    syscall(SYS_exit, tolvane::contents().empty() ? 1 : 0);
  }
  int status = 1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  return status == 0;
}

std::string example(const std::string& name) {
  return contents(std::filesystem::path(TOLVANE_SOURCE) / "examples" / name);
}

TEST_F(Observed, ConversionsOpenNoFile) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizers' own memory takes system calls";
#endif
  const std::string file = example("server-3.11.qpx");
  const std::string system = example("legacy/config.def");
  const std::string network = example("legacy/network.def");
  const auto update = [&] {
    parse(file);
    (void)convert();
  };
  const auto merge = [&] {
    parse(system);
    LegacySystem converted = convertsystemfile();
    parse(network);
    joinnetworkfile(converted);
  };
  EXPECT_TRUE(needsnocall(update));
  EXPECT_TRUE(needsnocall(merge));
  EXPECT_FALSE(needsnocall([] { (void)access("/", F_OK); }));
}

}  // namespace

}  // namespace tolvane::test
