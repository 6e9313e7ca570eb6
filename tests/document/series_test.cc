#include "document/series.h"

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

TEST_F(Series, FindsNothingBelowNoHeader) { EXPECT_EQ(numbered(nullptr, "N_", 1), nullptr); }

}  // namespace

}  // namespace tolvane::test
