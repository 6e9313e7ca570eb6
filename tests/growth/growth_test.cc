// How the work of a conversion grows with its file: counted in basic blocks, of which each look at a line is at least
// one. Where keys are unique it grows with the lines, and whatever they are never with more than lines times lines.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <set>
#include <string>

#include "document/forget.h"
#include "fuzz/work.h"
#include "tests/growth/families.h"
#include "tests/growth/sources.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

/// The blocks that the conversion of a file enters.
BlockCounts blocksof(const Family& family, const std::string& file) {
  forget();
  testing::internal::CaptureStdout();  // a platform's warning
  countblocks();
  family.convert(file);
  BlockCounts blocks = blockcounts();
  testing::internal::GetCapturedStdout();
  return blocks;
}

std::uint64_t sum(const BlockCounts& blocks) {
  return std::accumulate(blocks.begin(), blocks.end(), std::uint64_t{0},
                         [](std::uint64_t sum, const auto& block) { return sum + block.second; });
}

/// The first entry whose key its section has twice, empty when there is none.
std::string duplicate(const std::string& file) {
  std::set<std::string> keys;
  for (const std::string& line : linesof(file)) {
    if (line.starts_with('[')) keys.clear();
    if (!keys.insert(line.substr(0, line.find('='))).second) return line;
  }
  return {};
}

/// A block whose entries have grown beyond the bound, with its lines; empty when there is none. The sum over all blocks
/// hides one that only some of the lines have. Twice as many numbers have up to 2.4 times as many digits, and how the
/// comparisons in a tree end depends on the texts.
std::string steepest(const BlockCounts& small, const BlockCounts& large) {
  constexpr std::uint64_t comparisons = 20 * 2000;
  for (const auto& [block, entries] : large) {
    const auto before = small.find(block);
    const std::uint64_t fewer = before == small.end() ? 0 : before->second;
    if (entries <= 2 * fewer + fewer / 2 + comparisons) continue;
    std::string text = std::to_string(fewer) + " and then " + std::to_string(entries) + " times at";
    const auto lines = linesofblocks({
        {block, entries}
    });
    for (const auto& [source, number] : lines.at(block)) text += ' ' + source + ':' + std::to_string(number);
    return text;
  }
  return {};
}

std::uint64_t countlines(const std::string& file) {
  return static_cast<std::uint64_t>(std::count(file.begin(), file.end(), '\n'));
}

/// What each line may cost: the steps look at it some hundred times, at some of its fields character by character, and
/// change it in several.
std::uint64_t proportional(std::uint64_t lines) { return 200000 + 6000 * lines; }

class Growth : public StoreTest, public testing::WithParamInterface<Family> {};
class GrowthOfUnique : public Growth {};
class GrowthOfDuplicated : public Growth {};

TEST_P(GrowthOfUnique, IsThatOfTheLines) {
  const std::string lines = file(GetParam(), 1000);
  EXPECT_EQ(duplicate(lines), "");
  const BlockCounts small = blocksof(GetParam(), lines);
  const BlockCounts large = blocksof(GetParam(), file(GetParam(), 2000));
  EXPECT_GT(sum(small), countlines(lines)) << "the work is counted";
  EXPECT_LE(sum(small), proportional(countlines(lines)));
  EXPECT_LE(sum(large), 2 * sum(small) + sum(small) / 4);
  EXPECT_EQ(steepest(small, large), "");
}

TEST_P(GrowthOfDuplicated, IsNotMoreThanThatOfLinesTimesLines) {
  const std::string lines = file(GetParam(), 500);
  const std::uint64_t small = sum(blocksof(GetParam(), lines));
  EXPECT_GT(small, countlines(lines)) << "the work is counted";
  EXPECT_LE(small, proportional(countlines(lines)) + 8 * countlines(lines) * countlines(lines));
  EXPECT_LE(sum(blocksof(GetParam(), file(GetParam(), 1000))), 4 * small + small / 4);
}

std::string nameof(const testing::TestParamInfo<Family>& family) { return family.param.name; }

INSTANTIATE_TEST_SUITE_P(Work, GrowthOfUnique, testing::ValuesIn(uniquefamilies()), nameof);
INSTANTIATE_TEST_SUITE_P(Work, GrowthOfDuplicated, testing::ValuesIn(duplicatedfamilies()), nameof);

}  // namespace

}  // namespace tolvane::test
