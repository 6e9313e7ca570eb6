// Every loop of the sources whose work is counted has a row in loops.txt: the family of files that drives it, or why
// its turns are bounded. The blocks of the loop prove that the family does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>

#include "document/forget.h"
#include "tests/growth/families.h"
#include "tests/growth/sources.h"
#include "tests/support/program.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

constexpr int filesize = 1000;

/// A row: the family, or the reason in parentheses, and the text of the loop's line.
struct Row {
  std::string driver;
  std::string loop;
};

/// The rows of loops.txt by source.
std::map<std::string, std::vector<Row>> rowsbysource() {
  std::map<std::string, std::vector<Row>> rows;
  std::string source;
  for (const std::string& line : linesof(contents(TOLVANE_SOURCE "/tests/growth/loops.txt"))) {
    if (line.empty() || line.starts_with('#')) continue;
    if (!line.starts_with(' ')) {
      source = line;
      continue;
    }
    const std::size_t driver = line.find_first_not_of(' ');
    const std::size_t gap = line.find("  ", driver);
    const std::size_t loop = line.find_first_not_of(' ', gap);
    if (loop == std::string::npos) throw std::runtime_error("not a row: " + line);
    rows[source].push_back({line.substr(driver, gap - driver), line.substr(loop)});
  }
  return rows;
}

/// The sources of the core, and the headers but those of the preview, with their paths from the top on.
std::map<std::string, std::string> sourcefiles() {
  std::map<std::string, std::string> result;
  std::istringstream core(TOLVANE_CORE_SOURCES);
  for (std::string source; core >> source;) result[source] = contents(fs::path(TOLVANE_SOURCE) / source);
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(TOLVANE_SOURCE "/src")) {
    const bool preview = entry.path().parent_path().filename() == "preview";
    if (preview || entry.path().extension() != ".h") continue;
    result[fs::relative(entry.path(), TOLVANE_SOURCE)] = contents(entry.path());
  }
  return result;
}

/// The loops of each source that has some.
std::map<std::string, std::vector<Loop>> loopsbysource() {
  std::map<std::string, std::vector<Loop>> result;
  for (const auto& [source, text] : sourcefiles()) {
    std::vector<Loop> loops = loopsof(text);
    if (!loops.empty()) result[source] = std::move(loops);
  }
  return result;
}

TEST(Loops, HaveARowEach) {
  const auto rows = rowsbysource();
  const auto sources = loopsbysource();
  EXPECT_GT(sources.size(), 10U);
  for (const auto& [source, loops] : sources) {
    std::vector<std::string> texts;
    for (const Loop& loop : loops) texts.push_back(loop.text);
    std::vector<std::string> listed;
    if (rows.contains(source)) {
      for (const Row& row : rows.at(source)) listed.push_back(row.loop);
    }
    EXPECT_THAT(listed, testing::ElementsAreArray(texts)) << "the rows of " << source;
  }
  for (const auto& [source, listed] : rows) EXPECT_TRUE(sources.contains(source)) << source << " has no loop";
}

bool letter(char character) { return std::isalpha(static_cast<unsigned char>(character)) != 0; }

bool isheader(const std::string& text) { return text.size() > 1 && text[0] == '[' && letter(text[1]); }

bool isprefix(const std::string& text) {
  return text.size() > 1 && (text.back() == '_' || text.back() == '~') &&
         std::all_of(text.begin(), text.end() - 1, letter);
}

/// The texts of that kind that stand between quotes in the sources.
std::set<std::string> quoted(bool (*kind)(const std::string& text)) {
  std::set<std::string> result;
  for (const auto& [source, text] : sourcefiles()) {
    for (const std::string& line : linesof(text)) {
      std::istringstream pieces(line);
      std::string piece;
      for (bool inside = false; std::getline(pieces, piece, '"'); inside = !inside) {
        if (inside && kind(piece)) result.insert(piece);
      }
    }
  }
  return result;
}

/// How many lines of the family stand in its first section whose header begins so, and in those right behind.
int linesin(const Family& family, const std::string& header) {
  int result = 0;
  bool inside = false;
  for (const std::string& line : linesof(file(family, filesize))) {
    if (line.starts_with('[')) {
      if (result > 0 && !line.starts_with(header)) break;
      inside = line.starts_with(header);
    } else if (inside) {
      ++result;
    }
  }
  return result;
}

/// How many lines of the family begin so.
int linesbeginning(const Family& family, const std::string& prefix) {
  const std::vector<std::string> lines = linesof(file(family, filesize));
  return static_cast<int>(
      std::count_if(lines.begin(), lines.end(), [&](const std::string& line) { return line.starts_with(prefix); }));
}

// The rows of the loops say nothing of the walks within a loop. They show in the family of everything, as every section
// and every series there is long.
TEST(Everything, HasEachSectionAndSeriesOfTheSources) {
  const auto families = uniquefamilies();
  const auto everything =
      std::find_if(families.begin(), families.end(), [](const Family& family) { return family.name == "Everything"; });
  ASSERT_NE(everything, families.end());
  const std::set<std::string> sections = quoted(isheader);
  const std::set<std::string> prefixes = quoted(isprefix);
  EXPECT_GT(sections.size(), 25U);
  EXPECT_GT(prefixes.size(), 10U);
  for (const std::string& section : sections) EXPECT_GE(linesin(*everything, section), filesize) << section;
  for (const std::string& prefix : prefixes) EXPECT_GE(linesbeginning(*everything, prefix), filesize) << prefix;
}

/// How often each block was entered, by the name of the family.
using CountsByFamily = std::map<std::string, BlockCounts>;

CountsByFamily runfamilies() {
  CountsByFamily result;
  for (const auto& families : {uniquefamilies(), duplicatedfamilies()}) {
    for (const Family& family : families) {
      forget();
      countblocks();
      testing::internal::CaptureStdout();  // a platform's warning
      family.convert(file(family, filesize));
      testing::internal::GetCapturedStdout();
      result[family.name] = blockcounts();
    }
  }
  return result;
}

/// The most entries into one block of each line, by the name of the family.
std::map<std::string, std::map<SourceLine, std::uint64_t>> entriesbyfamily() {
  const CountsByFamily counts = runfamilies();
  BlockCounts all;
  for (const auto& [family, blocks] : counts) all.insert(blocks.begin(), blocks.end());
  const auto lines = linesofblocks(all);
  std::map<std::string, std::map<SourceLine, std::uint64_t>> result;
  for (const auto& [family, blocks] : counts) {
    for (const auto& [block, entries] : blocks) {
      if (!lines.contains(block)) continue;
      for (const SourceLine& line : lines.at(block)) {
        std::uint64_t& most = result[family][line];
        most = std::max(most, entries);
      }
    }
  }
  return result;
}

class DrivenLoops : public StoreTest {};

// The compiler makes one turn of four in the algorithms of the library.
TEST_F(DrivenLoops, TakeTurnsWithTheLinesOfTheirFamily) {
  const auto entries = entriesbyfamily();
  auto sources = loopsbysource();
  int driven = 0;
  for (const auto& [source, rows] : rowsbysource()) {
    for (std::size_t place = 0; place < rows.size() && place < sources[source].size(); ++place) {
      const auto& [driver, text] = rows[place];
      if (driver.starts_with('(')) continue;
      const Loop& loop = sources[source][place];
      if (loop.text != text) continue;  // the test above fails
      ASSERT_TRUE(entries.contains(driver)) << "no family has the name " << driver;
      std::uint64_t most = 0;
      for (int line = loop.first; line <= loop.last; ++line) {
        const auto found = entries.at(driver).find({source, line});
        if (found != entries.at(driver).end()) most = std::max(most, found->second);
      }
      EXPECT_GE(most, filesize / 4) << driver << " does not drive " << source << ":" << loop.first << ": " << text;
      ++driven;
    }
  }
  EXPECT_GT(driven, 30);
}

}  // namespace

}  // namespace tolvane::test
