#include <csignal>

#include "tests/support/program.h"

namespace tolvane::test {

namespace {

class SetParameter : public ProgramTest {
 protected:
  /// The file after the entry was set in a file of this text.
  std::string set(std::string_view text, const std::string& section, const std::string& key, const std::string& value) {
    write(folder / "f.qpx", text);
    EXPECT_EQ(run({"setparameter", "f.qpx", section, key, value}), (Outcome{1, ""}));
    EXPECT_EQ(filesin(folder).size(), 1U) << "no temporary file, no backup";
    return contents(folder / "f.qpx");
  }
};

TEST_F(SetParameter, ChangesAnEntry) {
  EXPECT_EQ(set("[A]\n\n\nk=1\nk=2\n[B]\nk=3\n", "[A]", "k", "9"), "[A]\nk=9\nk=2\n\n[B]\nk=3\n");
  EXPECT_EQ(set("[A]\nk\n", "[A]", "k", "9"), "[A]\nk=9\n");
}

TEST_F(SetParameter, DoesNotWriteAnEqualValue) {
  const std::string text = "[Startup]\n\n\nDefaultPort=100";
  write(folder / "f.qpx", text);
  const auto before = std::filesystem::last_write_time(folder / "f.qpx");
  EXPECT_EQ(run({"setparameter", "f.qpx", "[Startup]", "DefaultPort", "100"}), (Outcome{1, ""}));
  EXPECT_EQ(std::filesystem::last_write_time(folder / "f.qpx"), before);
  EXPECT_EQ(contents(folder / "f.qpx"), text);
}

TEST_F(SetParameter, DoesNotAddAnEmptyValue) {
  const std::string text = "[A]\n\nk\n";
  EXPECT_EQ(set(text, "[A]", "l", ""), text);
  EXPECT_EQ(set(text, "[B]", "l", ""), text);
  EXPECT_EQ(set(text, "[A]", "k", ""), text);
  EXPECT_EQ(set(text, "[A]", std::string(600, 'k'), ""), text);
}

TEST_F(SetParameter, AddsAMissingEntryAtTheEndOfItsSectionOrOfTheFile) {
  EXPECT_EQ(set("[A]\nk=1\n[B]\n", "[A]", "l", "2"), "[A]\nk=1\nl=2\n\n[B]\n");
  EXPECT_EQ(set("[A]\nk=1\n", "[B]", "l", "2"), "[A]\nk=1\n\n[B]\nl=2\n");
  EXPECT_EQ(set("", "[B]", "l", "2"), "[B]\nl=2\n");
}

TEST_F(SetParameter, TakesItsWordsLiterally) {
  EXPECT_EQ(set("[A]\nk=1\n", "A", "k", "2"), "[A]\nk=1\nA\nk=2\n");
  EXPECT_EQ(set("[A]\na=b=1\n", "[A]", "a=b", "2"), "[A]\na=b=1\na=b=2\n");
  EXPECT_EQ(set("[A]\n=x\n", "[A]", "", "y"), "[A]\n=y\n");
  EXPECT_EQ(set("[A]\n", "[A]", "k", "1\n\n[B]"), "[A]\nk=1\n\n[B]\n");
  EXPECT_EQ(set("k=v\n", "k=v", "l", "1"), "k=v\nl=1\n") << "any line is a header to whoever names it";
}

TEST_F(SetParameter, AbortsForALineThatIsTooLongWithTheFileUntouched) {
  const std::string text = "\n[A]\nk=1\n";
  write(folder / "f.qpx", text);
  EXPECT_EQ(run({"setparameter", "f.qpx", "[A]", "k", std::string(510, 'v')}).status, -SIGABRT);
  EXPECT_EQ(run({"setparameter", "f.qpx", "[A]", std::string(511, 'l'), "v"}).status, -SIGABRT);
  EXPECT_EQ(run({"setparameter", "f.qpx", std::string(512, 's'), "l", "v"}).status, -SIGABRT);
  EXPECT_EQ(contents(folder / "f.qpx"), text);
  EXPECT_EQ(set(text, "[A]", "k", std::string(509, 'v')), "[A]\nk=" + std::string(509, 'v') + "\n");
}

TEST_F(SetParameter, ReportsAFileThatCannotBeOpened) {
  EXPECT_EQ(run({"setparameter", "f.qpx", "[A]", "k", "1"}), (Outcome{0, "Cannot open file f.qpx for input.\n"}));
  EXPECT_EQ(run({"setparameter", ".", "[A]", "k", "1"}), (Outcome{0, "Cannot open file . for output.\n"}));
  EXPECT_EQ(filesin(folder), Files{});
}

TEST_F(SetParameter, LeavesTheFileAsItWasBehindAFileSizeLimit) {
  const std::string text = "\n[A]\nk=" + std::string(480, 'v') + "\n";
  write(folder / "f.qpx", text);
  // One block of 512 bytes, which the new entry passes.
  EXPECT_EQ(runwithin("-f 1", {"setparameter", "f.qpx", "[A]", "l", std::string(100, 'w')}),
            (Outcome{0, "Error writing output file\n"}));
  EXPECT_EQ(filesin(folder), filesof("f.qpx", text));
}

TEST_F(SetParameter, WritesThroughASymbolicLink) {
  write(folder / "target", "[A]\nk=1\n");
  std::filesystem::create_symlink("target", folder / "f.qpx");
  EXPECT_EQ(run({"setparameter", "f.qpx", "[A]", "k", "2"}), (Outcome{1, ""}));
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "f.qpx"));
  EXPECT_EQ(contents(folder / "target"), "[A]\nk=2\n");
}

}  // namespace

}  // namespace tolvane::test
