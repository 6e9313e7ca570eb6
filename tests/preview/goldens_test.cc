// Every golden case of `update` and `merge`: what the preview says is what stands in the case's files, which were
// worked out by hand.
#include <algorithm>
#include <sstream>

#include "tests/support/golden.h"
#include "tests/support/preview.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

/// A case, as far as a preview shows it.
struct Case {
  fs::path folder;
  bool merge;
  std::string file;                // that is written
  std::vector<std::string> words;  // of the preview

  [[nodiscard]] Files before() const { return filesin(folder / "before"); }
  [[nodiscard]] Files after() const { return filesin(folder / "after"); }
};

std::vector<Case> previewcases() {
  std::vector<Case> found;
  for (const fs::path& folder : goldencases()) {
    const std::vector<std::string> words = goldenwords(folder);
    if (words.size() == 2 && words[0] == "update") found.push_back({folder, false, words[1], {words[1]}});
    if (words.size() == 4 && words[0] == "merge") {
      found.push_back({folder, true, words[1], std::vector<std::string>({"merge", words[2], words[3]})});
    }
  }
  return found;
}

class PreviewedGoldens : public PreviewTest {
 protected:
  /// Puts the case's files, and only them, into the folder.
  void prepare(const Case& each) const {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) fs::remove_all(entry.path());
    for (const auto& [name, text] : each.before()) write(folder / name, text);
  }

  [[nodiscard]] Outcome show(const Case& each, const std::string& option) const {
    std::vector<std::string> words{option};
    words.insert(words.end(), each.words.begin(), each.words.end());
    return preview(words);
  }
};

/// The exit status: a command that did not run is trouble, and one that ran changed its file or not.
int expectedstatus(const Case& each) {
  if (contents(each.folder / "status") != "1\n" && contents(each.folder / "status") != "1") return 2;
  return each.before() == each.after() ? 0 : 1;
}

TEST_F(PreviewedGoldens, AreMany) { EXPECT_GT(previewcases().size(), 100U); }

TEST_F(PreviewedGoldens, HaveTheirStatusAndAreLeftAlone) {
  for (const Case& each : previewcases()) {
    prepare(each);
    for (const char* form : {"--color=never", "--diff", "--json", "--summary"}) {
      const Outcome shown = show(each, form);
      EXPECT_EQ(shown.status, expectedstatus(each)) << each.folder << ' ' << form;
      EXPECT_EQ(shown.complained.empty(), shown.status != 2) << each.folder << ' ' << shown.complained;
      EXPECT_EQ(std::count(shown.complained.begin(), shown.complained.end(), '\n'), shown.status == 2 ? 1 : 0);
    }
    EXPECT_EQ(filesin(folder), each.before()) << each.folder;
  }
}

TEST_F(PreviewedGoldens, ArePatchedToTheResult) {
  for (const Case& each : previewcases()) {
    prepare(each);
    const Outcome shown = show(each, "--diff");
    const std::string source = each.words[each.merge ? 1 : 0];
    if (expectedstatus(each) != 1) {
      EXPECT_EQ(shown.printed, "") << each.folder;
    } else {
      EXPECT_EQ(patched(source, shown.printed), each.after().at(each.file)) << each.folder;
    }
  }
}

/// The lines that are not blank, each in front of two blanks.
std::string indented(const std::string& text) {
  std::istringstream lines(text);
  std::string result;
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty()) result += "  " + line + '\n';
  }
  return result;
}

TEST_F(PreviewedGoldens, ShowTheMessagesAndTheBackup) {
  for (const Case& each : previewcases()) {
    prepare(each);
    const std::string report = show(each, "--color=never").printed;
    const std::string messages = indented(contents(each.folder / "stdout"));
    EXPECT_EQ(report.find("would print\n" + messages) == std::string::npos, messages.empty()) << each.folder << report;
    for (const auto& [name, text] : each.after()) {
      if (name == each.file || (each.before().contains(name) && each.before().at(name) == text)) continue;
      const std::string replaced = each.before().contains(name) ? ", in place of the older one that is there." : ".";
      EXPECT_NE(report.find("The old file would be kept as " + name + replaced + '\n'), std::string::npos)
          << each.folder << report;
    }
  }
}

TEST_F(PreviewedGoldens, KeepToTheSchemaAndToTheAccount) {
  std::string all;
  for (const Case& each : previewcases()) {
    prepare(each);
    all += show(each, "--json").printed;
  }
  expectvalid(all, previewcases().size());
}

}  // namespace

}  // namespace tolvane::test
