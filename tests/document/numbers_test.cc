#include "document/numbers.h"

#include <gtest/gtest.h>

#include <limits>

namespace tolvane {

namespace {

TEST(Number, IsTheDecimalNumberAtTheStartAndZeroWithoutDigits) {
  EXPECT_EQ(number(Text("2048 # pages")), 2048);
  EXPECT_EQ(number(Text(" \t\v\f\r-7,3")), -7);
  EXPECT_EQ(number(Text("+050")), 50);
  EXPECT_EQ(number(Text("0x10")), 0);
  EXPECT_EQ(number(Text("abc")), 0);
  EXPECT_EQ(number(Text("")), 0);
  EXPECT_EQ(number(Text("- 5")), 0);
}

TEST(Number, IsClampedTo64BitsAndThenKeepsTheLow32) {
  EXPECT_EQ(number(Text("99999999999999999999")), -1);
  EXPECT_EQ(number(Text("-99999999999999999999")), 0);
  EXPECT_EQ(number64(Text("99999999999999999999")), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(number(Text("4294967301")), 5);
  EXPECT_EQ(number(Text("2147483648")), std::numeric_limits<int>::min());
}

TEST(Int32, WrapsInTwosComplement) {
  EXPECT_EQ(int32(std::int64_t{1} << 31), std::numeric_limits<int>::min());
  EXPECT_EQ(int32(std::int64_t{3} * 1000000000), -1294967296);
}

TEST(Product64, WrapsInTwosComplement) {
  const std::int64_t largest = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(product64(largest, 2), -2);
  EXPECT_EQ(product64(-3, 5), -15);
}

}  // namespace

}  // namespace tolvane
