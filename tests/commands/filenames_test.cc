// Names near the most that the file system takes (255 characters) and that a text takes (511): a table of each length.
#include <csignal>

#include "tests/support/scenarios.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

class FileNames : public ProgramTest, public testing::WithParamInterface<Scenario> {
 protected:
  /// Runs the command on a file of that path instead of "a", in an otherwise empty folder.
  [[nodiscard]] Outcome runon(const std::string& path) const {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) fs::remove_all(entry.path());
    fs::create_directories((folder / path).parent_path());
    for (const auto& [name, text] : GetParam().before) {
      if (!name.starts_with("a_")) write(folder / (name == "a" ? path : name), text);
    }
    std::vector<std::string> words = GetParam().words;
    words[1] = path;
    return run(words);
  }

  /// The files of the path's folder hold the result, and the backup where one is made.
  void expectdone(const std::string& path) const {
    Files expected = siblings(path, GetParam().result);
    if (GetParam().words[0] == "update") expected[fs::path(path).filename().string() + "_544"] = GetParam().old();
    EXPECT_EQ(filesin((folder / path).parent_path()), expected) << path.size();
  }

  void expectuntouched(const std::string& path) const {
    EXPECT_EQ(filesin((folder / path).parent_path()), siblings(path, GetParam().old())) << path.size();
  }

 private:
  /// What stands in the path's folder when it holds that text.
  [[nodiscard]] static Files siblings(const std::string& path, const std::string& text) {
    Files files;
    if (path.find('/') == std::string::npos) files = GetParam().before;
    std::erase_if(files, [](const auto& file) { return file.first.starts_with("a"); });
    files[fs::path(path).filename()] = text;
    return files;
  }
};

TEST_P(FileNames, OfTwoHundredFiftyCharacters) {
  for (std::size_t length = 245; length <= 255; ++length) {
    const std::string name(length, 'f');
    const Outcome outcome = runon(name);
    if (length <= 251 || GetParam().inplace()) {
      EXPECT_EQ(outcome, (Outcome{1, ""})) << length;
      expectdone(name);
    } else {
      EXPECT_EQ(outcome, (Outcome{0, "Cannot open file " + name + "_tmp for output.\n"})) << length;
      expectuntouched(name);
    }
  }
}

TEST_P(FileNames, OfMoreThanTheFileSystemTakes) {
  const std::string name(256, 'f');
  std::vector<std::string> words = GetParam().words;
  words[1] = name;
  for (const auto& [file, text] : GetParam().before) write(folder / file, text);
  const Files before = filesin(folder);
  const std::string refused = words[0] == "merge" ? name + "_tmp for output.\n" : name + " for input.\n";
  EXPECT_EQ(run(words), (Outcome{0, "Cannot open file " + refused}));
  EXPECT_EQ(filesin(folder), before);
}

/// A path of that length: folders with long names, and a file with a short one.
std::string pathof(std::size_t length) {
  const std::string folders = std::string(200, 'd') + "/" + std::string(200, 'e') + "/";
  return folders + std::string(length - folders.size(), 'f');
}

TEST_P(FileNames, OfFiveToSixHundredCharacters) {
  for (std::size_t length = 495; length <= 600; length += length < 515 ? 1 : 5) {
    const std::string path = pathof(length);
    const Outcome outcome = runon(path);
    if (length <= 507 || GetParam().inplace()) {
      EXPECT_EQ(outcome, (Outcome{1, ""})) << length;
      expectdone(path);
    } else {
      EXPECT_EQ(outcome, (Outcome{-SIGABRT, ""})) << length;
      expectuntouched(path);
    }
  }
}

TEST_P(FileNames, OfFilesThatAreMissingAreReportedWhole) {
  const bool merge = GetParam().words[0] == "merge";
  for (const auto& [name, text] : GetParam().before) write(folder / name, text);
  for (const std::size_t length : {507U, 508U, 511U, 512U, 600U}) {
    std::vector<std::string> words = GetParam().words;
    words[1] = pathof(length);
    Outcome expected{0, "Cannot open file " + words[1] + " for input.\n"};
    if (merge) expected.printed = "Cannot open file " + words[1] + "_tmp for output.\n";
    if (merge && length > 507) expected = {-SIGABRT, ""};
    EXPECT_EQ(run(words), expected) << length;
  }
  EXPECT_EQ(filesin(folder), GetParam().before);
}

INSTANTIATE_TEST_SUITE_P(Command, FileNames, testing::ValuesIn(scenarios()), nameof);

/// A backup's name can be longer than the temporary one: a version that is not known may be of any length.
class BackupNames : public ProgramTest {
 protected:
  static constexpr std::string_view version = "123.45678";
  static constexpr std::string_view suffix = "_12345678";

  static constexpr std::string_view rest = "\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.45\n\n[Com]\n";

  // The check takes the entry of the legacy communication away, and so the file is written.
  const std::string old = "[ConfigFile]\nVersion=" + std::string(version) + std::string(rest) + "Com=1\nk=1\n";
  const std::string result = "[ConfigFile]\nVersion=5.45" + std::string(rest) + "k=1\n";
};

TEST_F(BackupNames, ThatTheFileSystemDoesNotTakeLeaveNoBackup) {
  for (std::size_t length = 245; length <= 252; ++length) {
    fs::remove_all(folder / "dir");
    fs::create_directory(folder / "dir");
    const std::string name(length, 'f');
    write(folder / "dir" / name, old);
    const Outcome outcome = run({"update", "dir/" + name});
    Files expected = filesof(name, result);
    if (length <= 255 - suffix.size()) expected[name + std::string(suffix)] = old;
    if (length > 251) expected = filesof(name, old);
    EXPECT_EQ(outcome.status, length > 251 ? 0 : 1) << length << ": " << outcome.printed;
    EXPECT_EQ(filesin(folder / "dir"), expected) << length;
  }
}

TEST_F(BackupNames, ThatNoTextTakesEndTheRunWithTheFileUntouched) {
  for (std::size_t length = 495; length <= 512; ++length) {
    const std::string path = pathof(length);
    fs::remove_all(folder / std::string(200, 'd'));
    fs::create_directories((folder / path).parent_path());
    write(folder / path, old);
    const Outcome outcome = run({"update", path});
    const std::string name = fs::path(path).filename();
    Files expected = filesof(name, old);
    if (length + suffix.size() <= 511) expected = filesof(name, result, name + std::string(suffix), old);
    EXPECT_EQ(outcome.status, length + suffix.size() <= 511 ? 1 : -SIGABRT) << length << ": " << outcome.printed;
    EXPECT_EQ(filesin((folder / path).parent_path()), expected) << length;
  }
}

}  // namespace

}  // namespace tolvane::test
