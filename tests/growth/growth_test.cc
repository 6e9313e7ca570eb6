// How the work of a conversion grows with its file: counted in basic blocks, of which each look at a line is at least
// one. Where keys are unique it grows with the lines, and whatever they are never with more than lines times lines.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "document/forget.h"
#include "fuzz/work.h"
#include "tests/growth/families.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

/// The blocks that the conversion of a file takes.
std::uint64_t work(const Family& family, const std::string& file) {
  forget();
  testing::internal::CaptureStdout();  // a platform's warning
  const std::uint64_t before = workdone();
  family.convert(file);
  const std::uint64_t done = workdone() - before;
  testing::internal::GetCapturedStdout();
  return done;
}

std::uint64_t countlines(const std::string& file) {
  return static_cast<std::uint64_t>(std::count(file.begin(), file.end(), '\n'));
}

/// What each line may cost: the steps look at it some hundred times and change it in several.
std::uint64_t proportional(std::uint64_t lines) { return 200000 + 4000 * lines; }

class Growth : public StoreTest, public testing::WithParamInterface<Family> {};
class GrowthOfUnique : public Growth {};
class GrowthOfDuplicated : public Growth {};

TEST_P(GrowthOfUnique, IsThatOfTheLines) {
  const std::string small = file(GetParam(), 1000);
  const std::uint64_t smallwork = work(GetParam(), small);
  EXPECT_GT(smallwork, countlines(small)) << "the work is counted";
  EXPECT_LE(smallwork, proportional(countlines(small)));
  EXPECT_LE(work(GetParam(), file(GetParam(), 2000)), 2 * smallwork + smallwork / 4);
}

TEST_P(GrowthOfDuplicated, IsNotMoreThanThatOfLinesTimesLines) {
  const std::string small = file(GetParam(), 500);
  const std::uint64_t smallwork = work(GetParam(), small);
  EXPECT_GT(smallwork, countlines(small)) << "the work is counted";
  EXPECT_LE(smallwork, proportional(countlines(small)) + 8 * countlines(small) * countlines(small));
  EXPECT_LE(work(GetParam(), file(GetParam(), 1000)), 4 * smallwork + smallwork / 4);
}

std::string nameof(const testing::TestParamInfo<Family>& family) { return family.param.name; }

INSTANTIATE_TEST_SUITE_P(Work, GrowthOfUnique, testing::ValuesIn(uniquefamilies()), nameof);
INSTANTIATE_TEST_SUITE_P(Work, GrowthOfDuplicated, testing::ValuesIn(duplicatedfamilies()), nameof);

}  // namespace

}  // namespace tolvane::test
