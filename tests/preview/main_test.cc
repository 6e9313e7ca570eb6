// The command line of tolvane-preview, its colors, its streams and its memory.
#include <gmock/gmock.h>

#include <sstream>

#include "tests/support/preview.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;
using testing::StartsWith;

/// The words of a line.
std::vector<std::string> split(const std::string& line) {
  std::istringstream words(line);
  std::vector<std::string> found;
  for (std::string word; words >> word;) found.push_back(word);
  return found;
}

TEST_F(PreviewProgram, ReadsAPipeOnce) {
  write(folder / "a.qpx", old);
  const Outcome piped = previewby("cat a.qpx | \"$@\"", {"--summary", "/dev/stdin"});
  EXPECT_THAT(piped.printed, StartsWith("/dev/stdin: version 5.44, 1 step pending, 4"));
  EXPECT_EQ(piped.status, 1);
}

TEST_F(PreviewProgram, ExplainsItself) {
  const Outcome help = preview({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.complained, "");
  for (const char* option :
       {"--diff", "--json", "--summary", "--color=WHEN", "--help", "--version", "merge SYSTEM NETWORK"}) {
    EXPECT_THAT(help.printed, HasSubstr(option)) << option;
  }
  EXPECT_EQ(preview({"--version"}), (Outcome{0, "tolvane-preview 5.45\n", ""}));
}

TEST_F(PreviewProgram, PrintsTheUsageForAnythingElse) {
  write(folder / "a.qpx", current);
  const std::string usage =
      "Usage: tolvane-preview [--diff|--json|--summary] [--color=auto|always|never] FILE...\n"
      "       tolvane-preview [...] merge SYSTEM NETWORK\n";
  for (const char* line : {"", "--", "--unknown a.qpx", "-d a.qpx", "--diff=1 a.qpx", "--color a.qpx",
                           "--color=sometimes a.qpx", "--color", "--diff --json a.qpx", "--summary a.qpx --json",
                           "merge", "merge a.qpx", "merge a.qpx a.qpx a.qpx"}) {
    EXPECT_EQ(preview(split(line)), (Outcome{2, "", usage})) << line;
  }
}

TEST_F(PreviewProgram, TakesWhatStandsBehindTwoDashesAsFiles) {
  write(folder / "--json", current);
  EXPECT_THAT(preview({"--summary", "--", "--json"}).printed, StartsWith("--json: version 5.45 "));
  write(folder / "merge", current);
  EXPECT_EQ(preview({"--summary", "./merge"}).status, 0);
}

bool hascolor(const Outcome& shown) { return shown.printed.find("\033[") != std::string::npos; }

TEST_F(PreviewProgram, ColorsWhenItIsWanted) {
  write(folder / "a.qpx", old);
  EXPECT_FALSE(hascolor(preview({"a.qpx"}))) << "no terminal";
  EXPECT_FALSE(hascolor(preview({"--color=auto", "a.qpx"})));
  EXPECT_FALSE(hascolor(preview({"--color=never", "a.qpx"})));
  EXPECT_TRUE(hascolor(preview({"--color=always", "a.qpx"})));
  EXPECT_TRUE(hascolor(preview({"--color=always", "--diff", "a.qpx"})));
  EXPECT_FALSE(hascolor(preview({"--color=always", "--json", "a.qpx"})));
  EXPECT_TRUE(hascolor(previewby("NO_COLOR=1 exec \"$@\"", {"--color=always", "a.qpx"}))) << "asked for";
}

TEST_F(PreviewProgram, ColorsATerminalUnlessNoColorIsSet) {
  write(folder / "a.qpx", old + "x=\033]0;\a\n");
  // script(1) gives the program a terminal.
  const auto onterminal = [&](const std::string& settings, const std::string& option) {
    return spawn({"/bin/sh", "-c",
                  settings + " script -q -e -c '" + std::string(TOLVANE_PREVIEW) + ' ' + option +
                      " a.qpx' /dev/null </dev/null"});
  };
  const auto colored = [](const Outcome& outcome) { return outcome.printed.find("\033[1m") != std::string::npos; };
  EXPECT_TRUE(colored(onterminal("unset NO_COLOR; TERM=xterm", "")));
  EXPECT_TRUE(colored(onterminal("NO_COLOR= TERM=xterm", "")));
  EXPECT_FALSE(colored(onterminal("NO_COLOR=1 TERM=xterm", "")));
  EXPECT_TRUE(colored(onterminal("NO_COLOR=1 TERM=xterm", "--color=always")));
  EXPECT_FALSE(colored(onterminal("unset NO_COLOR; TERM=dumb", "")));
  const Outcome diff = onterminal("unset NO_COLOR; TERM=xterm", "--diff");
  EXPECT_TRUE(colored(diff));
  EXPECT_EQ(diff.printed.find('\a'), std::string::npos) << "a diff on a terminal is for the eyes";
  EXPECT_EQ(diff.status, 1);
}

TEST_F(PreviewProgram, IsInTroubleWhenItCannotPrint) {
  write(folder / "a.qpx", current);
  fs::copy_file(fs::path(TOLVANE_SOURCE) / "examples" / "server-3.11.qpx", folder / "large.qpx");
  for (const char* word : {"a.qpx", "large.qpx", "--help", "--version"}) {
    EXPECT_EQ(previewby("exec \"$@\" >&-", {word}),
              (Outcome{2, "", "tolvane-preview: standard output: Bad file descriptor\n"}));
    EXPECT_EQ(previewby("exec \"$@\" >/dev/full", {word}),
              (Outcome{2, "", "tolvane-preview: standard output: No space left on device\n"}));
  }
}

TEST_F(PreviewProgram, IsInTroubleWhenItsReaderIsGone) {
  write(folder / "a.qpx", old);
  const std::string pipe = "mkfifo pipe; exec 3<>pipe; exec 4>pipe 3>&-; ";
  const Outcome shown = previewby(pipe + "\"$@\" >&4 4>&-; echo $? >status", {"a.qpx"});
  EXPECT_EQ(shown.complained, "");
  EXPECT_EQ(contents(folder / "status"), "2\n");
}

TEST_F(PreviewProgram, RunsWithoutStandardErrorToo) {
  EXPECT_EQ(previewby("exec \"$@\" 2>&-", {"--summary", "none"}).status, 2);
}

TEST_F(PreviewProgram, WritesNothing) {
  if (sanitized) GTEST_SKIP() << "the sanitizers bear no tracer";
  write(folder / "a.qpx", old);
  write(folder / "s", systemfile);
  write(folder / "n", "[ConfigFile]\nFileType=Network 3.11\n[Net]\nthisco=elm\n");
  const std::string traced = folder.string() + ".strace";
  for (const char* line : {"a.qpx", "--diff a.qpx", "--json a.qpx none", "merge s n", "merge n s"}) {
    EXPECT_GE(previewby("exec /usr/bin/strace -qq -o " + traced + " \"$@\"", split(line)).status, 1);
    std::istringstream calls(contents(traced));
    int opened = 0;
    for (std::string call; std::getline(calls, call);) {
      const std::string name = call.substr(0, call.find('('));
      const bool opens = name.starts_with("open") || name == "creat";
      EXPECT_TRUE(!opens || call.find("O_RDONLY") != std::string::npos) << call;
      opened += opens ? 1 : 0;
      if (name == "write" || name == "writev") {
        EXPECT_TRUE(call.starts_with(name + "(1,") || call.starts_with(name + "(2,")) << call;
      }
      for (const char* other :
           {"rename",   "unlink", "link",     "symlink",   "mkdir",     "rmdir", "mknod",    "chmod",
            "fchmod",   "chown",  "truncate", "ftruncate", "fallocate", "utime", "setxattr", "pwrite",
            "sendfile", "fork",   "vfork",    "clone",     "socket",    "memfd"}) {
        EXPECT_FALSE(name.starts_with(other)) << call;
      }
    }
    EXPECT_GT(opened, 0) << "the trace says nothing";
  }
  fs::remove(traced);
  EXPECT_EQ(filesin(folder).size(), 3U);
}

TEST_F(PreviewProgram, SurvivesAnyAllocationThatFails) {
  if (sanitized) GTEST_SKIP() << "the sanitizers bear no other malloc";
  write(folder / "a.qpx", old);
  const Outcome whole = preview({"--json", "a.qpx"});
  int failed = 0;
  for (int n = 1; n < 400; n += 3) {
    const std::string setting = "LD_PRELOAD=" TOLVANE_FAILING_MALLOC " FAILING_MALLOC=" + std::to_string(n);
    const Outcome shown = previewby(setting + " \"$@\"", {"--json", "a.qpx"});
    if (shown == whole) continue;
    EXPECT_EQ(shown, (Outcome{2, "", "tolvane-preview: a.qpx: Insufficient memory\n"})) << n;
    ++failed;
  }
  EXPECT_GT(failed, 50);
}

TEST_F(PreviewProgram, ReportsMemoryThatCannotBeHad) {
  if (sanitized) GTEST_SKIP() << "the sanitizers reserve more than any limit";
  std::string large = old + "[Large]\n";
  for (int n = 0; n < 200000; ++n) large += std::to_string(n) + "=1\n";
  write(folder / "a.qpx", large);
  write(folder / "b.qpx", current);
  const Outcome shown = previewby("ulimit -v 60000; exec \"$@\"", {"--summary", "a.qpx", "b.qpx"});
  EXPECT_EQ(shown.status, 2);
  EXPECT_EQ(shown.complained, "tolvane-preview: a.qpx: Insufficient memory\n");
  EXPECT_EQ(shown.printed, "b.qpx: version 5.45 (current), 0 steps pending, 0 lines changed: would stay as it is\n");
}

}  // namespace

}  // namespace tolvane::test
