#include "document/text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>

namespace tolvane {

namespace {

TEST(Text, ComposesTextsCharactersAndIntegers) {
  EXPECT_EQ(Text("DataSet_", 12, '=', std::string_view("a,b")), "DataSet_12=a,b");
  EXPECT_EQ(Text(), "");
  EXPECT_EQ(Text(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

TEST(Text, HoldsAtMost511Characters) {
  const std::string longest(511, 'x');
  Text text{longest};
  EXPECT_EQ(text.length(), 511U);
  EXPECT_THROW(text.append('y'), TextTooLong);
  EXPECT_EQ(text, longest) << "a write that is refused changes nothing";
  EXPECT_THROW(Text(longest, 1), TextTooLong);
  EXPECT_THROW(Text(std::string(100000, 'x')), TextTooLong);
}

TEST(Text, IsComposedFromItself) {
  Text text{"b=c"};
  text.set(text.view().substr(2), "=", text);
  EXPECT_EQ(text, "c=b=c");
  text.append(text);
  EXPECT_EQ(text, "c=b=cc=b=c");
}

TEST(Text, TakesAnEmptyViewWithoutAPointer) {
  Text text{"a"};
  text.append(std::string_view{});
  EXPECT_EQ(text, "a");
  EXPECT_EQ(Text(std::string_view{}), "");
}

TEST(Text, CopiesAndAssignsItself) {
  Text text{"a"};
  const Text copy = text;
  text.set("b");
  EXPECT_EQ(copy, "a");
  const Text& same = text;
  text = same;
  EXPECT_EQ(text, "b");
}

TEST(Text, KnowsItsFirstCharacter) {
  EXPECT_EQ(Text("[A]").first(), '[');
  EXPECT_EQ(Text().first(), '\0');
  EXPECT_TRUE(Text().empty());
  EXPECT_FALSE(Text(" ").empty());
}

}  // namespace

}  // namespace tolvane
