#include "document/fields.h"

#include <limits>

#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Fields : public StoreTest {
 protected:
  Text output{"old"};
};

TEST_F(Fields, FirstfieldIsFieldOne) {
  EXPECT_EQ(firstfield("a,b", ','), "a");
  EXPECT_EQ(firstfield(",b", ','), "");
  EXPECT_EQ(firstfield("a~b", ','), "a~b");
  EXPECT_EQ(firstfield("", ','), "");
}

TEST_F(Fields, GetfieldTellsWhetherMoreFollow) {
  EXPECT_EQ(getfield("", 1, ',', output), '\0');
  EXPECT_EQ(output, "");
  EXPECT_EQ(getfield("a,b,c", 2, ',', output), ',');
  EXPECT_EQ(output, "b");
  EXPECT_EQ(getfield("a,b,c", 3, ',', output), '\0');
  EXPECT_EQ(output, "c");
  EXPECT_EQ(getfield("a,b,c", 4, ',', output), '\0');
  EXPECT_EQ(output, "");
  EXPECT_EQ(getfield("a,b", std::numeric_limits<int>::max(), ','), "");
}

TEST_F(Fields, GetfieldBelow2IsField1) {
  for (const int n : {1, 0, -5, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(getfield("a~b", n, '~', output), '~') << n;
    EXPECT_EQ(output, "a") << n;
  }
}

TEST_F(Fields, GetfieldMayReadItsOwnOutput) {
  output.set("a,b,c");
  getfield(output, 2, ',', output);
  EXPECT_EQ(output, "b");
}

TEST_F(Fields, GetfieldTellsAnEmptyFieldFromAMissingOne) {
  EXPECT_EQ(getfield("a,,c", 2, ',', output), ',');
  EXPECT_EQ(output, "");
}

TEST_F(Fields, TakefieldsKeepsTheSeparatorsBetweenForEveryNumber) {
  EXPECT_EQ(takefields("a,b,c,d", 2, 3, ',', output), ',');
  EXPECT_EQ(output, "b,c");
  EXPECT_EQ(takefields("a,b,c,d", 1, 9, ',', output), '\0');
  EXPECT_EQ(output, "a,b,c,d");
  EXPECT_EQ(takefields("a,b", 3, 4, ',', output), '\0');
  EXPECT_EQ(output, "");
  EXPECT_EQ(takefields("a,b,c", -3, 2, ',', output), ',');
  EXPECT_EQ(output, "a,b");
  EXPECT_EQ(takefields("a,b,c", 2, 1, ',', output), ',');
  EXPECT_EQ(output, "b");
  EXPECT_EQ(takefields("a,b", std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), ',', output), '\0');
  EXPECT_EQ(output, "a,b");
}

TEST_F(Fields, NumfieldsIsOneMoreThanTheSeparators) {
  EXPECT_EQ(numfields("a,,c", ','), 3);
  EXPECT_EQ(numfields("", ','), 1);
}

TEST_F(Fields, ReplacefieldPutsTheTextInPlace) {
  EXPECT_EQ(replacefield("a,b,c", 2, ',', "X"), "a,X,c");
  EXPECT_EQ(replacefield("a", 4, ',', "X"), "a,,,X");
  EXPECT_EQ(replacefield("a,b,c", 3, ',', ""), "a,b,");
  EXPECT_EQ(replacefield("a,b", 0, ',', "X"), "X,b");
  EXPECT_EQ(replacefield("a,b", std::numeric_limits<int>::min(), ',', "X"), "X,b");
  EXPECT_EQ(replacefield("", 1, ',', "X"), "X");
  EXPECT_EQ(replacefield("", 2, ',', "X"), ",X");
}

TEST_F(Fields, ReplacefieldHasAtMost511Characters) {
  EXPECT_EQ(replacefield("a", 510, ',', "X").length(), 511U);
  EXPECT_THROW(replacefield("a", 511, ',', "X"), TextTooLong);
  EXPECT_THROW(replacefield("a", std::numeric_limits<int>::max(), ',', ""), TextTooLong);
}

TEST_F(Fields, SetfieldWorksInPlace) {
  Text value{"a,bb,c"};
  setfield(value, 2, ',', "X");
  EXPECT_EQ(value, "a,X,c");
  value.set("a");
  setfield(value, 5, ',', "Y");
  EXPECT_EQ(value, "a,,,,Y");
  value.set("a,b");
  setfield(value, 1, ',', value);
  EXPECT_EQ(value, "a,b,b");
}

TEST_F(Fields, ChangecharCopiesOneCharacterAsAnother) {
  changechar("a~b~", '~', ',', output);
  EXPECT_EQ(output, "a,b,");
  changechar("", '~', ',', output);
  EXPECT_EQ(output, "");
}

TEST_F(Fields, WithinIsThePositionCountedFrom1) {
  EXPECT_EQ(within("ab", "xaab"), 3);
  EXPECT_EQ(within("q", "abc"), 0);
  EXPECT_EQ(within("", "abc"), 1);
  EXPECT_EQ(within("", ""), 1);
}

TEST_F(Fields, AlphaupperChangesAsciiLettersOnly) {
  alphaupper("velmsys:a1\xe4\xdfZ{`", output);
  EXPECT_EQ(output, "VELMSYS:A1\xe4\xdfZ{`");
}

}  // namespace

}  // namespace tolvane::test
