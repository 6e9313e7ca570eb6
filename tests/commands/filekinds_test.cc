// A file, a temporary name or a backup name that is no plain file: what remove and rename then mean.
#include <sys/stat.h>

#include "tests/support/scenarios.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

// Each makes something of that name that is no plain file.

void makepipe(const fs::path& path) { ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); }
void makefolder(const fs::path& path) { fs::create_directory(path); }
void makefullfolder(const fs::path& path) {
  fs::create_directory(path);
  write(path / "file", "kept\n");
}
void makelink(const fs::path& path) { fs::create_symlink("other", path); }
void makedangling(const fs::path& path) { fs::create_symlink("missing", path); }

class FileKinds : public ProgramTest, public testing::WithParamInterface<Scenario> {
 protected:
  /// Puts the scenario's files into the folder, but nothing under the other names that the run uses.
  void prepare() const {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) fs::remove_all(entry.path());
    for (const auto& [name, text] : GetParam().before) {
      if (!name.starts_with("a_")) write(folder / name, text);
    }
  }

  [[nodiscard]] bool is(std::string_view command) const { return GetParam().words[0] == command; }

  /// Runs the command; one that waits for ever is ended.
  [[nodiscard]] Outcome runintime() const { return runby({"/usr/bin/timeout", "20"}, GetParam().words); }

  /// What stands under the names but for those of the inputs of `merge`; links and the like by what they are.
  [[nodiscard]] Files standing() const {
    Files found;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
      const std::string name = entry.path().filename();
      if (name != "s" && name != "n") found[name] = what(entry);
    }
    return found;
  }

 private:
  static std::string what(const fs::directory_entry& entry) {
    if (entry.is_symlink()) return "-> " + fs::read_symlink(entry.path()).string();
    if (entry.is_fifo()) return "(a pipe)";
    if (entry.is_directory()) return fs::is_empty(entry.path()) ? "(an empty folder)" : "(a folder)";
    return contents(entry.path());
  }
};

TEST_P(FileKinds, ALinkIsReplacedAndItsTargetStays) {
  prepare();
  const auto& [name, words, before, result] = GetParam();
  fs::rename(folder / "a", folder / "other");
  fs::permissions(folder / "other", fs::perms{0640});
  makelink(folder / "a");
  EXPECT_EQ(runintime(), (Outcome{1, ""}));
  EXPECT_EQ(fs::status(folder / "a").permissions(), fs::perms{0640});
  const std::string& old = before.at("a");
  Files expected = filesof("a", result, "other", old);
  if (is("update")) expected["a_544"] = "-> other";
  if (is("setparameter")) expected = filesof("a", "-> other", "other", result);
  EXPECT_EQ(standing(), expected);
}

TEST_P(FileKinds, ALinkToNothingIsNoFile) {
  prepare();
  fs::remove(folder / "a");
  makedangling(folder / "a");
  if (is("merge")) {
    EXPECT_EQ(runintime(), (Outcome{1, ""}));
    EXPECT_EQ(standing(), filesof("a", GetParam().result));
  } else {
    EXPECT_EQ(runintime(), (Outcome{0, "Cannot open file a for input.\n"}));
    EXPECT_EQ(standing(), filesof("a", "-> missing"));
  }
}

TEST_P(FileKinds, AHardLinkKeepsTheOldContentsUnderItsOtherName) {
  prepare();
  const std::string& old = GetParam().old();
  const std::string& result = GetParam().result;
  fs::create_hard_link(folder / "a", folder / "other");
  EXPECT_EQ(runintime(), (Outcome{1, ""}));
  Files expected = filesof("a", result, "other", is("setparameter") ? result : old);
  if (is("update")) expected["a_544"] = old;
  EXPECT_EQ(standing(), expected);
}

TEST_P(FileKinds, AFolderIsAnEmptyFileThatCannotBeWritten) {
  for (const auto& make : {makefolder, makefullfolder}) {
    prepare();
    fs::remove(folder / "a");
    make(folder / "a");
    Files expected = standing();
    Outcome outcome{0, "Invalid configuration file format\n"};
    if (is("setparameter")) outcome.printed = "Cannot open file a for output.\n";
    if (is("merge")) {
      // An empty folder can be removed, any other stays where it is.
      const bool full = expected.at("a") == "(a folder)";
      outcome = {1, "", full ? "tolvane: cannot replace a: Directory not empty; the new contents are in a_tmp\n" : ""};
      expected[full ? "a_tmp" : "a"] = GetParam().result;
    }
    EXPECT_EQ(runintime(), outcome);
    EXPECT_EQ(standing(), expected);
  }
}

TEST_P(FileKinds, AnEmptyFileHasNoVersion) {
  prepare();
  write(folder / "a", "");
  std::string left;
  if (is("merge")) left = GetParam().result;
  if (is("setparameter")) left = "[config]\nk=1\n";
  EXPECT_EQ(runintime(), left.empty() ? (Outcome{0, "Invalid configuration file format\n"}) : (Outcome{1, ""}));
  EXPECT_EQ(standing(), filesof("a", left));
}

TEST_P(FileKinds, APipeIsReadAndReplacedOrWritten) {
  prepare();
  fs::rename(folder / "a", folder / "source");
  makepipe(folder / "a");
  const std::string& old = GetParam().old();
  const std::string& result = GetParam().result;
  Files expected = filesof("a", result, "source", old);
  if (is("update")) expected["a_544"] = "(a pipe)";
  if (is("setparameter")) {
    expected["a"] = "(a pipe)";
    expected["received"] = result;
  }
  const std::string writer = is("merge") ? "true" : "cat source > a";
  const std::string reader = is("setparameter") ? "; cat a > received" : "";
  const std::string script =
      "timeout 20 sh -c '" + writer + reader + "' & timeout 20 \"$0\" \"$@\"; status=$?; wait; exit $status";
  EXPECT_EQ(runby({"/bin/sh", "-c", script}, GetParam().words), (Outcome{1, ""}));
  EXPECT_EQ(standing(), expected);
}

TEST_P(FileKinds, ATemporaryNameOfSomethingElseIsNotWrittenThrough) {
  for (const auto& make : {makepipe, makefolder, makefullfolder, makelink, makedangling}) {
    prepare();
    write(folder / "other", "kept\n");
    make(folder / "a_tmp");
    Files expected = standing();
    if (is("setparameter")) {
      expected["a"] = GetParam().result;
      EXPECT_EQ(runintime(), (Outcome{1, ""}));
    } else {
      EXPECT_EQ(runintime(), (Outcome{0, "Cannot open file a_tmp for output.\n"}));
    }
    EXPECT_EQ(standing(), expected);
  }
}

INSTANTIATE_TEST_SUITE_P(Command, FileKinds, testing::ValuesIn(scenarios()), nameof);

class OtherKinds : public FileKinds {};

TEST_P(OtherKinds, ABackupNameOfSomethingElseIsRemovedIfItCanBe) {
  for (const auto& make : {makepipe, makefolder, makelink, makedangling}) {
    prepare();
    write(folder / "other", "kept\n");
    make(folder / "a_544");
    EXPECT_EQ(runintime(), (Outcome{1, ""}));
    EXPECT_EQ(standing(), filesof("a", GetParam().result, "a_544", GetParam().old(), "other", "kept\n"));
  }
  prepare();
  makefullfolder(folder / "a_544");
  EXPECT_EQ(runintime(), (Outcome{1, "",
                                  "tolvane: cannot create the backup a_544: Is a directory; "
                                  "a has the new contents\n"}));
  EXPECT_EQ(standing(), filesof("a", GetParam().result, "a_544", "(a folder)"))
      << "kept: the old file could not be renamed, and is replaced";
}

INSTANTIATE_TEST_SUITE_P(Backup, OtherKinds, testing::Values(scenarios().front()), nameof);

class InputKinds : public FileKinds {};

TEST_P(InputKinds, OfMergeMayBePipes) {
  prepare();
  fs::rename(folder / "s", folder / "system");
  fs::rename(folder / "n", folder / "network");
  makepipe(folder / "s");
  makepipe(folder / "n");
  const std::string script =
      "timeout 20 sh -c 'cat system > s; cat network > n' & timeout 20 \"$0\" \"$@\"; "
      "status=$?; wait; exit $status";
  EXPECT_EQ(runby({"/bin/sh", "-c", script}, GetParam().words), (Outcome{1, ""}));
  EXPECT_EQ(contents(folder / "a"), GetParam().result);
}

TEST_P(InputKinds, OfMergeAreNoFolders) {
  prepare();
  fs::remove(folder / "s");
  makefolder(folder / "s");
  EXPECT_EQ(runintime(), (Outcome{0, "Invalid system configuration file type\n"}));
  prepare();
  fs::remove(folder / "n");
  makefolder(folder / "n");
  EXPECT_EQ(runintime(), (Outcome{0, "Invalid network configuration file type\n"}));
  EXPECT_EQ(contents(folder / "a"), GetParam().old());
}

INSTANTIATE_TEST_SUITE_P(Legacy, InputKinds, testing::Values(scenarios()[2]), nameof);

class Devices : public ProgramTest {};

TEST_F(Devices, TakeAParameterThoughTheyCannotBeSynced) {
  EXPECT_EQ(run({"setparameter", "/dev/null", "[A]", "k", "1"}), (Outcome{1, ""}));
  EXPECT_EQ(run({"setparameter", "/dev/stdout", "[A]", "k", "1"}), (Outcome{1, "[A]\nk=1\n"}));
}

}  // namespace

}  // namespace tolvane::test
