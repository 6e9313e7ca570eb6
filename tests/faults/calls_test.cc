// Nothing is lost, whichever system call fails and wherever the run is killed.
//
// Every system call that a command makes from its lock on is failed once with each of several errors, and the run is
// killed before each of them, which is after the one before, and ended by signals that can wait. strace does all of it.
// Faults and kills are done once more with writes that take only half of what they are asked to.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <set>
#include <sstream>

#include "tests/support/accesslist.h"
#include "tests/support/scenarios.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

/// A system call of a run: its name, how many of that name came before it, counted from 1, and its line in the trace.
struct Call {
  std::string name;
  int number = 0;
  std::string line = {};
  bool operator==(const Call&) const = default;

  [[nodiscard]] bool has(std::string_view text) const { return line.find(text) != std::string::npos; }

  [[nodiscard]] std::string with(const std::string& fault) const {
    return name + ":" + fault + ":when=" + std::to_string(number);
  }
};

using Options = std::vector<std::string>;

const Options wholewrites;
const Options shortwrites = {"-E", "LD_PRELOAD=" TOLVANE_SHORT_WRITE, "-E", "SHORT_WRITE=half"};

class Faults : public ScenarioTest {
 protected:
  Faults() : log_(folder.string() + ".strace") {}
  ~Faults() override { fs::remove(log_); }

  [[nodiscard]] Outcome trace(const Options& writes, const Options& options) const {
    std::vector<std::string> command{"/usr/bin/strace", "-qq", "-o", log_};
    command.insert(command.end(), writes.begin(), writes.end());
    command.insert(command.end(), options.begin(), options.end());
    return runby(command, GetParam().words);
  }

  /// The system calls of a run without a fault, from the one that opens the directory to lock it to the end of the
  /// process.
  [[nodiscard]] std::vector<Call> calls(const Options& writes, const Options& options = {}) const {
    prepare();
    EXPECT_EQ(trace(writes, options), (Outcome{1, ""}));
    EXPECT_EQ(contents(folder / "a"), GetParam().result);
    std::map<std::string, int> counts;
    std::vector<Call> found;
    bool begun = false;
    std::istringstream lines(contents(log_));
    for (std::string line; std::getline(lines, line);) {
      const std::string name = line.substr(0, line.find('('));
      if (name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_") != std::string::npos) continue;
      const int number = ++counts[name];
      begun = begun || (name == "openat" && line.find("\"./\"") != std::string::npos);
      if (begun && name != "brk") found.push_back({name, number, line});
    }
    EXPECT_GT(found.size(), 12U);
    if (!found.empty()) {
      EXPECT_EQ(found.back().name, "exit_group");
    }
    return found;
  }

  /// The first call of that name behind the first write.
  [[nodiscard]] static Call afterwrite(const std::string& name, const std::vector<Call>& calls) {
    const auto named = [](const std::string& wanted) {
      return [wanted](const Call& call) { return call.name == wanted; };
    };
    const auto written = std::find_if(calls.begin(), calls.end(), named("write"));
    const auto found = std::find_if(written, calls.end(), named(name));
    return found == calls.end() ? Call{} : *found;
  }

  /// True when nothing can be put back: what was written straight over the file is closed.
  [[nodiscard]] bool toolate(const Call& call, const std::vector<Call>& calls) const {
    return GetParam().inplace() && call == afterwrite("close", calls);
  }

  [[nodiscard]] static int locks(const std::vector<Call>& calls) {
    return static_cast<int>(
        std::count_if(calls.begin(), calls.end(), [](const Call& call) { return call.name == "flock"; }));
  }

  /// True when the run has to report that error of that call.
  [[nodiscard]] bool mustfail(const Call& call, const std::vector<Call>& calls, std::string_view error) const {
    if (error == "EINTR") return false;
    if (call == afterwrite("fsync", calls)) return error != "EROFS";
    if (call == afterwrite("close", calls)) return true;
    // A directory that cannot be read is opened without reading, and so is a file that is only looked at.
    if (call.name == "openat") return !call.has("O_DIRECTORY") && !call.has("O_NONBLOCK");
    // An attribute that may not be read or set is left out, and where no lock may be taken there is none.
    if (call.name == "fgetxattr" || call.name == "fsetxattr") return error != "EACCES";
    // The last lock, of the temporary file, is for runs under one inherited lock alone.
    if (call.name == "flock") return error != "EACCES" && (GetParam().inplace() || call.number < locks(calls));
    const std::set<std::string> checked{"read",       "write",        "lseek",  "fallocate", "ftruncate",
                                        "flistxattr", "fremovexattr", "fchown", "fchmod"};
    return checked.contains(call.name);
  }

  /// True when a run that is interrupted in that call has to go on. The C library reads the files, and does not.
  [[nodiscard]] bool mustgoon(const Call& call, const std::vector<Call>& calls) const {
    const auto opened = std::find_if(calls.rbegin(), calls.rend(), [](const Call& c) { return c.name == "openat"; });
    const bool old = GetParam().inplace() && std::find(calls.rbegin(), opened, call) != opened;
    return call.name == "write" || call.name == "fsync" || call.name == "fallocate" || (old && call.name == "read");
  }

  void expectreported(const Outcome& outcome, const std::string& fault) const {
    EXPECT_EQ(outcome.status, 0) << fault;
    const bool known = outcome.printed == "Error writing output file\n" ||
                       (outcome.printed.starts_with("Cannot open file ") && outcome.printed.ends_with("put.\n"));
    EXPECT_TRUE(known) << fault << ": " << outcome.printed;
  }

  /// The one rename was refused.
  void expectnotreplaced(const Outcome& outcome, const std::string& fault) const {
    EXPECT_EQ(outcome.status, 1) << fault;
    EXPECT_EQ(outcome.printed, "") << fault;
    EXPECT_TRUE(outcome.complained.starts_with("tolvane: cannot replace a: ")) << fault << ": " << outcome.complained;
    EXPECT_TRUE(outcome.complained.ends_with("; the new contents are in a_tmp\n"))
        << fault << ": " << outcome.complained;
    EXPECT_EQ(contents(folder / "a"), GetParam().old()) << fault;
    EXPECT_EQ(contents(folder / "a_tmp"), GetParam().result) << fault;
    EXPECT_FALSE(filesin(folder).contains("a_544")) << fault << ": the older backup was removed, as ever";
  }

  /// Fails each call, or each one of that name.
  void faileach(const Options& writes, const std::string& name = "") const {
    int faults = 0;
    const std::vector<Call> all = calls(writes);
    for (const Call& call : all) {
      if (call.name == "exit_group" || (!name.empty() && call.name != name)) continue;
      for (const char* error : {"ENOSPC", "EIO", "EACCES", "EROFS", "EINTR"}) {
        const std::string fault = call.with(std::string("error=") + error);
        prepare();
        const Outcome outcome = trace(writes, {"--inject=" + fault});
        ++faults;
        expectprivate(fault);
        const bool failed = outcome.status != 1;
        EXPECT_TRUE(failed || !mustfail(call, all, error)) << fault;
        EXPECT_FALSE(failed && std::string_view(error) == "EINTR" && mustgoon(call, all)) << fault;
        if (failed) expectreported(outcome, fault);
        if (call.name == "renameat") {
          expectnotreplaced(outcome, fault);
        } else {
          EXPECT_EQ(outcome.complained, "") << fault;
          failed && !toolate(call, all) ? expectuntouched(fault) : expectdone(fault);
        }
      }
    }
    EXPECT_GE(faults, 35);
    RecordProperty("faults", faults);
  }

  /// What stands in a file that is written straight over, by how far the run came: all of the old contents up to its
  /// first write, all of the new ones after its last, the new ones over the old ones between them.
  void expectwrittenover(const Call& next, const std::vector<Call>& calls, const std::string& fault) const {
    const std::string& old = GetParam().old();
    const std::string& result = GetParam().result;
    const std::string text = contents(folder / "a");
    const auto named = [&](const char* name) {
      return std::find_if(calls.begin(), calls.end(), [&](const Call& call) { return call.name == name; });
    };
    const auto place = std::find(calls.begin(), calls.end(), next);
    if (place <= named("write")) {
      EXPECT_EQ(text, old) << fault;
    } else if (place > named("ftruncate")) {
      EXPECT_EQ(text, result) << fault;
    } else {
      const auto same = static_cast<std::size_t>(
          std::mismatch(text.begin(), text.end(), result.begin(), result.end()).first - text.begin());
      EXPECT_EQ(text.substr(same), same < old.size() ? old.substr(same) : "") << fault;
      EXPECT_TRUE(next.name == "write" || same == result.size()) << fault;
    }
  }

  void killateach(const Options& writes) const {
    int kills = 0;
    const std::vector<Call> all = calls(writes);
    for (const Call& call : all) {
      const std::string fault = call.with("signal=SIGKILL");
      prepare();
      EXPECT_EQ(trace(writes, {"--inject=" + fault}).status, -SIGKILL) << fault;
      ++kills;
      expectprivate(fault);
      if (GetParam().inplace()) {
        expectwrittenover(call, all, fault);
      } else {
        expectmoment(fault);
        expectnextrunworks(fault);
      }
    }
    RecordProperty("kills", kills);
  }

  /// Ends the run by a signal that can wait, sent in each call.
  void endateach(const std::string& signal, int number) const {
    int ends = 0;
    for (const Call& call : calls(wholewrites)) {
      if (call.name == "exit_group") continue;
      const std::string fault = call.with("signal=" + signal);
      prepare();
      EXPECT_EQ(trace(wholewrites, {"--inject=" + fault}).status, -number) << fault;
      ++ends;
      const Files files = filesin(folder);
      if (files.at("a") == GetParam().result) {
        EXPECT_EQ(files, after()) << fault;
      } else {
        expectuntouched(fault);
      }
    }
    RecordProperty("ends", ends);
  }

 private:
  std::string log_;
};

TEST_P(Faults, OfSystemCallsLoseNothing) { faileach(wholewrites); }

TEST_P(Faults, OfShortWritesLoseNothing) { faileach(shortwrites, "write"); }

TEST_P(Faults, OfBeingKilledLoseNothing) { killateach(wholewrites); }

TEST_P(Faults, OfBeingKilledBetweenShortWritesLoseNothing) { killateach(shortwrites); }

TEST_P(Faults, OfSignalsThatCanWaitLeaveTheFilesInOrder) {
  const std::map<std::string, int> signals{
      {"SIGHUP",  SIGHUP },
      {"SIGINT",  SIGINT },
      {"SIGQUIT", SIGQUIT},
      {"SIGPIPE", SIGPIPE},
      {"SIGTERM", SIGTERM}
  };
  for (const auto& [signal, number] : signals) endateach(signal, number);
}

// Where no link can be made there is a moment without the file.
TEST_P(Faults, OfBeingKilledWithoutLinksLoseNothing) {
  if (GetParam().words[0] != "update") return;
  const std::string nolinks = "--inject=linkat:error=EPERM";
  int missing = 0;
  for (const Call& call : calls(wholewrites, {nolinks})) {
    const std::string fault = call.with("signal=SIGKILL");
    prepare();
    const bool link = call.name == "linkat";
    EXPECT_EQ(trace(wholewrites, link ? Options{"--inject=" + fault} : Options{nolinks, "--inject=" + fault}).status,
              -SIGKILL)
        << fault;
    expectprivate(fault);
    if (fs::exists(folder / "a")) {
      expectmoment(fault);
    } else {
      ++missing;
      const Files files = filesin(folder);
      EXPECT_EQ(files.at("a_544"), GetParam().old()) << fault;
      EXPECT_EQ(files.at("a_tmp"), GetParam().result) << fault;
      fs::rename(folder / "a_544", folder / "a");
    }
    expectnextrunworks(fault);
  }
  EXPECT_EQ(missing, 1);
}

TEST_P(Faults, OfTheSecondRenamePutTheFileBack) {
  if (GetParam().words[0] != "update") return;
  prepare();
  const Outcome outcome = trace(wholewrites, {"--inject=linkat:error=EPERM", "--inject=renameat:error=EIO:when=2"});
  EXPECT_EQ(outcome,
            (Outcome{1, "", "tolvane: cannot replace a: Input/output error; the new contents are in a_tmp\n"}));
  EXPECT_EQ(filesin(folder), (Files{
                                 {"a",     GetParam().old() },
                                 {"a_tmp", GetParam().result}
  }));
}

TEST_P(Faults, OfPowerFindTheFileSynced) {
  const std::set<std::string> kinds{"fallocate", "write", "fsync", "linkat", "renameat"};
  std::vector<std::string> order;
  for (const Call& call : calls(wholewrites)) {
    if (kinds.contains(call.name)) order.push_back(call.name);
  }
  if (GetParam().inplace()) {
    EXPECT_EQ(order, (std::vector<std::string>{"fallocate", "write", "fsync"}));
    return;
  }
  // The data before the names, and the directory after them.
  std::vector<std::string> expected{"write", "fsync", "renameat", "fsync"};
  if (GetParam().words[0] == "update") expected.insert(expected.begin() + 2, "linkat");
  EXPECT_EQ(order, expected);
}

TEST_P(Faults, OfLookingMissALinkThatIsNotFollowedAllTheSame) {
  if (GetParam().inplace()) return;  // it has no temporary name
  const std::vector<Call> all = calls(wholewrites);
  int looked = 0;
  for (const Call& call : all) {
    if (call.name != "newfstatat") continue;
    prepare();
    fs::remove(folder / "a_tmp");
    write(folder / "other", "kept\n");
    fs::create_symlink("other", folder / "a_tmp");
    const Outcome outcome = trace(wholewrites, {"--inject=" + call.with("error=ENOENT")});
    // A file that was opened but cannot be looked at is not read at all.
    const bool unread = outcome.status == 0 && outcome.printed.ends_with(" for input.\n");
    EXPECT_TRUE(unread || outcome == (Outcome{0, "Cannot open file a_tmp for output.\n"})) << call.line;
    EXPECT_EQ(contents(folder / "other"), "kept\n");
    EXPECT_TRUE(fs::is_symlink(folder / "a_tmp"));
    ++looked;
  }
  EXPECT_GE(looked, 3) << "at the file that is read, at the temporary name and at the file that is replaced";
}

TEST_P(Faults, OfFileSystemsThatCannotSyncReserveLockOrLinkAreNone) {
  for (const char* fault :
       {"fsync:error=EINVAL", "fsync:error=EOPNOTSUPP", "fsync:error=EROFS", "fallocate:error=EOPNOTSUPP",
        "fallocate:error=ENOSYS", "flock:error=EBADF", "flock:error=EINVAL", "flock:error=ENOLCK", "flock:error=ENOSYS",
        "flock:error=EOPNOTSUPP", "linkat:error=EPERM", "linkat:error=EOPNOTSUPP", "linkat:error=ENOSYS",
        "linkat:error=EMLINK", "linkat:error=EXDEV"}) {
    prepare();
    EXPECT_EQ(trace(wholewrites, {std::string("--inject=") + fault}), (Outcome{1, ""})) << fault;
    EXPECT_EQ(filesin(folder), after()) << fault;
  }
}

class OtherFaults : public ProgramTest {};

TEST_F(OtherFaults, OfSyncingBesidesPlainFilesAreTold) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizers bear no tracer";
#endif
  const std::vector<std::string> strace{"/usr/bin/strace", "-qq", "-o", "/dev/null", "--inject=fsync:error=EIO"};
  EXPECT_EQ(runby(strace, {"setparameter", "/dev/null", "[A]", "k", "1"}), (Outcome{0, "Error writing output file\n"}));
}

INSTANTIATE_TEST_SUITE_P(Command, Faults, testing::ValuesIn(scenarios()), nameof);

TEST_F(OtherFaults, OfSyncingPutBackWhateverLengthTheFileHad) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizers bear no tracer";
#endif
  const std::vector<std::string> strace{"/usr/bin/strace", "-qq", "-o", "/dev/null", "--inject=fsync:error=EIO:when=1"};
  for (const std::string& old : {std::string(), std::string("x"), std::string(200000, 'x')}) {
    write(folder / "a", old);
    EXPECT_EQ(runby(strace, {"setparameter", "a", "[A]", "k", "1"}), (Outcome{0, "Error writing output file\n"}));
    EXPECT_EQ(contents(folder / "a"), old);
  }
}

TEST_F(OtherFaults, OfAttributesThatMayNotBeSetAreNone) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizers bear no tracer";
#endif
  write(folder / "a", "[ConfigFile]\nVersion=5.44\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.44\n");
  if (setxattr((folder / "a").c_str(), "user.tolvane", "test", 4, 0) != 0) GTEST_SKIP() << "there are no attributes";
  for (const char* fault : {"fsetxattr:error=EPERM", "fsetxattr:error=EACCES", "fgetxattr:error=EPERM",
                            "fremovexattr:error=ENODATA", "fremovexattr:error=EOPNOTSUPP"}) {
    const std::vector<std::string> strace{"/usr/bin/strace", "-qq", "-o", "/dev/null",
                                          std::string("--inject=") + fault};
    write(folder / "a", "[ConfigFile]\nVersion=5.44\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.44\n");
    EXPECT_EQ(runby(strace, {"update", "a"}), (Outcome{1, ""})) << fault;
    EXPECT_EQ(contents(folder / "a").substr(13, 12), "Version=5.45") << fault;
  }
}

TEST_F(OtherFaults, OfGivingAFileAwayAreToldUnlessThatIsNotPermitted) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizers bear no tracer";
#endif
  const std::string old = "[ConfigFile]\nVersion=5.44\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.44\n";
  for (const char* error : {"EDQUOT", "EIO", "ENOSPC", "EINVAL", "EPERM"}) {
    const std::vector<std::string> strace{"/usr/bin/strace", "-qq", "-o", "/dev/null",
                                          std::string("--inject=fchown:error=") + error};
    write(folder / "a", old);
    fs::permissions(folder / "a", fs::perms{0664});
    // EINVAL is for an owner that the user namespace does not map.
    const bool permitted = std::string_view(error) != "EPERM" && std::string_view(error) != "EINVAL";
    EXPECT_EQ(runby(strace, {"update", "a"}),
              permitted ? (Outcome{0, "Error writing output file\n"}) : (Outcome{1, ""}))
        << error;
    EXPECT_EQ(contents(folder / "a") == old, permitted) << error;
    const fs::perms mode = fs::status(folder / "a").permissions();
    EXPECT_EQ(mode, permitted ? fs::perms{0664} : fs::perms{0644}) << error;
    EXPECT_FALSE(fs::exists(folder / "a_tmp")) << error;
  }
}

TEST_F(OtherFaults, KilledBeforeTheModeIsSetItIsOpenToNoOtherGroup) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizers bear no tracer";
#endif
  if (geteuid() != 0) GTEST_SKIP() << "only root becomes somebody else";
  write(folder / "a", "[ConfigFile]\nVersion=5.44\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.44\n");
  if (!setlist(folder / "a", accesslist, onemoreuser)) GTEST_SKIP() << "the file system has no access lists";
  // Its owner is an ordinary user, and its group one that the owner is not in.
  ASSERT_EQ(chown((folder / "a").c_str(), 65534, 0), 0);
  ASSERT_EQ(chown(folder.c_str(), 65534, 65534), 0);
  (void)runasother({"/usr/bin/strace", "-qq", "-o", "/dev/null", "--inject=fchmod:signal=SIGKILL"}, {"update", "a"});
  struct stat status = {};
  ASSERT_EQ(stat((folder / "a_tmp").c_str(), &status), 0);
  EXPECT_EQ(status.st_gid, 65534U);
  EXPECT_EQ(status.st_mode & 0077U, 0U);
}

}  // namespace

}  // namespace tolvane::test
