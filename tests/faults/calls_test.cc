// Nothing is lost, whichever system call fails.
//
// Every system call that a command makes from its lock on is failed once with each of several errors. The calls of
// write are failed once more with writes that take only half of what they are asked to.
#include <algorithm>
#include <set>

#include "tests/support/traced.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

class Faults : public TracedTest {
 protected:
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
};

TEST_P(Faults, OfSystemCallsLoseNothing) { faileach(wholewrites); }

TEST_P(Faults, OfShortWritesLoseNothing) { faileach(shortwrites, "write"); }

TEST_P(Faults, OfTheSecondRenamePutTheFileBack) {
  if (GetParam().words[0] != "update") return;
  prepare();
  const Outcome outcome = trace(wholewrites, {"--inject=linkat:error=EPERM", "--inject=renameat:error=EIO:when=2"});
  EXPECT_EQ(outcome,
            (Outcome{1, "", "tolvane: cannot replace a: Input/output error; the new contents are in a_tmp\n"}));
  EXPECT_EQ(filesin(folder), filesof("a", GetParam().old(), "a_tmp", GetParam().result));
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

INSTANTIATE_TEST_SUITE_P(Command, Faults, testing::ValuesIn(scenarios()), nameof);

}  // namespace

}  // namespace tolvane::test
