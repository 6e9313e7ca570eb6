#include "document/series.h"

#include <random>

#include "document/entries.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Series : public StoreTest {};

TEST_F(Series, EndsAtTheFirstGap) {
  given("[S]\nN_2=b,x\nN_1=a\nN_4=d\nN_04=e\n");
  EXPECT_EQ(countseries("[S]", "N_"), 2);
  EXPECT_EQ(countseries("[S]", "M_"), 0);
  EXPECT_EQ(countseries("[Missing]", "N_"), 0);
}

TEST_F(Series, LocatesAnEntryByItsFirstField) {
  given("[S]\nN_1=a,b\nN_2=b,x\nN_3=b\n");
  const Place place = locate("[S]", "N_", "b");
  EXPECT_EQ(place.number, 2);
  EXPECT_EQ(place.line, find("[S]", "N_2"));
}

TEST_F(Series, LocatesTheFirstFreeNumberInstead) {
  given("[S]\nN_1=a\nN_3=b\n");
  const Place place = locate("[S]", "N_", "b");
  EXPECT_EQ(place.number, 2);
  EXPECT_EQ(place.line, nullptr);
  savenumbered("[S]", "N_", place.number, "new");
  EXPECT_EQ(lines(), "[S]\nN_1=a\nN_3=b\nN_2=new\n");
}

TEST_F(Series, FindsNothingBelowNoHeader) { EXPECT_TRUE(series(nullptr, "N_").empty()); }

TEST_F(Series, KnowsTheNumberOfAnEntry) {
  given("N_12=x\nN_12\nN_012\nN_0\nN_-1\nN_+1\nN_\nN_1x\nN_ 1\nM_1\nN_99999999999\nN_2147483647=\n");
  std::vector<int> numbers;
  for (const Line* line = start; line != nullptr; line = line->next()) numbers.push_back(numberof(*line, "N_"));
  EXPECT_EQ(numbers, (std::vector<int>{12, 12, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2147483647}));
}

TEST_F(Series, HasNoEntriesWhereThePrefixHoldsAnEqualsSign) {
  given("[S]\nN=_1=x\n");
  EXPECT_EQ(numberof(*last, "N=_"), 0);
  EXPECT_EQ(countseries("[S]", "N=_"), 0);
}

TEST_F(Series, IsWhatEachLookUpFindsOnRandomSections) {
  std::mt19937 random(1);
  for (int round = 0; round < 2000; ++round) {
    std::string text = "[S]\n";
    for (std::size_t line = random() % 12; line > 0; --line) text += "N_" + std::to_string(random() % 8) + "=x\n";
    given(text + "[T]\nN_1=y\n");
    std::vector<Line*> expected;
    while (Line* const line = find("[S]", Text("N_", expected.size() + 1))) expected.push_back(line);
    EXPECT_EQ(series(find("[S]"), "N_"), expected) << text;
  }
}

}  // namespace

}  // namespace tolvane::test
