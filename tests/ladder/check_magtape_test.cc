#include "ladder/check_magtape.h"

#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class TapeDrives : public StoreTest {};

TEST_F(TapeDrives, OnOneOldPathGetTwoNewOnes) {
  given(
      "[MagTape]\nDrive_1=1~/dev/nrmt0h\nDrive_2=2~/dev/nrmt0h\nDrive_3=3~/dev/nrmt0h\nDrive_4=4~/dev/nrmt1h\n"
      "Drive_5=5~/dev/nrmt1h\n");
  EXPECT_TRUE(check_magtape(0));
  EXPECT_EQ(lines(),
            "[MagTape]\nDrive_1=1~/dev/ntape/tape0\nDrive_2=2~/dev/ntape/tape0_d1\nDrive_3=3~/dev/ntape/tape0_d1\n"
            "Drive_4=4~/dev/ntape/tape1\nDrive_5=5~/dev/ntape/tape1_d1\n");
}

TEST_F(TapeDrives, KeepTheirNumberAndFurtherFields) {
  given("[MagTape]\nDrive_1=3~/dev/nrmt2l~extra~more\n");
  EXPECT_TRUE(check_magtape(0));
  EXPECT_EQ(lines(), "[MagTape]\nDrive_1=3~/dev/ntape/tape2_d0~extra~more\n");
}

TEST_F(TapeDrives, BehindAGapAreNotLookedAt) {
  given("[MagTape]\nDrive_1=1~/dev/nrmt3m\nDrive_3=3~/dev/nrmt3m\n");
  EXPECT_TRUE(check_magtape(0));
  EXPECT_EQ(lines(), "[MagTape]\nDrive_1=1~/dev/ntape/tape3_d2\nDrive_3=3~/dev/nrmt3m\n");
}

TEST_F(TapeDrives, OnANewOrUnknownPathStay) {
  const std::string_view drives =
      "[MagTape]\nDrive_1=1~/dev/ntape/tape0\nDrive_2=2~/dev/nrmt9h\nDrive_3\nDrive_4=/dev/nrmt0h\n";
  given(drives);
  EXPECT_FALSE(check_magtape(0));
  EXPECT_EQ(lines(), drives);
  given("[Other]\nDrive_1=1~/dev/nrmt0h\n");
  EXPECT_FALSE(check_magtape(0));
}

TEST_F(TapeDrives, OnEachOldPathGetItsNewOne) {
  given(
      "[MagTape]\nDrive_1=~/dev/nrmt0h\nDrive_2=~/dev/nrmt1h\nDrive_3=~/dev/nrmt0l\nDrive_4=~/dev/nrmt1l\n"
      "Drive_5=~/dev/nrmt2l\nDrive_6=~/dev/nrmt3l\nDrive_7=~/dev/nrmt0m\nDrive_8=~/dev/nrmt1m\nDrive_9=~/dev/nrmt2m\n"
      "Drive_10=~/dev/nrmt3m\nDrive_11=~/dev/nrmt0h\nDrive_12=~/dev/nrmt1h\nDrive_13=~/dev/nrmt2h\nDrive_14=~/dev/"
      "nrmt3h\n");
  EXPECT_TRUE(check_magtape(0));
  EXPECT_EQ(lines(),
            "[MagTape]\nDrive_1=~/dev/ntape/tape0\nDrive_2=~/dev/ntape/tape1\nDrive_3=~/dev/ntape/tape0_d0\n"
            "Drive_4=~/dev/ntape/tape1_d0\nDrive_5=~/dev/ntape/tape2_d0\nDrive_6=~/dev/ntape/tape3_d0\n"
            "Drive_7=~/dev/ntape/tape0_d2\nDrive_8=~/dev/ntape/tape1_d2\nDrive_9=~/dev/ntape/tape2_d2\n"
            "Drive_10=~/dev/ntape/tape3_d2\nDrive_11=~/dev/ntape/tape0_d1\nDrive_12=~/dev/ntape/tape1_d1\n"
            "Drive_13=~/dev/ntape/tape2_d1\nDrive_14=~/dev/ntape/tape3_d1\n");
}

TEST_F(TapeDrives, AreNormalisedToTheStandardList) {
  const std::string_view standard =
      "[MagTape]\nDrive_1=47~/dev/ntape/tape0\nDrive_2=48~/dev/ntape/tape1\nDrive_3=49~/dev/ntape/tape0_d0\n"
      "Drive_4=50~/dev/ntape/tape1_d0\nDrive_5=51~/dev/ntape/tape2_d0\nDrive_6=52~/dev/ntape/tape3_d0\n"
      "Drive_7=53~/dev/ntape/tape0_d2\nDrive_8=54~/dev/ntape/tape1_d2\nDrive_9=55~/dev/ntape/tape2_d2\n"
      "Drive_10=56~/dev/ntape/tape3_d2\nDrive_11=57~/dev/ntape/tape0_d1\nDrive_12=58~/dev/ntape/tape1_d1\n"
      "Drive_13=59~/dev/ntape/tape2_d1\nDrive_14=60~/dev/ntape/tape3_d1\n";
  std::string drives = "[MagTape]\n";
  for (int n = 1; n <= 17; ++n) drives += "Drive_" + std::to_string(n) + "=x\n";
  given(drives);
  EXPECT_TRUE(check_magtape(1));
  EXPECT_EQ(lines(), standard);
  EXPECT_FALSE(check_magtape(1)) << "nothing is left to change";
  EXPECT_EQ(lines(), standard);
}

TEST_F(TapeDrives, AreNotAddedByNormalising) {
  given("[MagTape]\nDrive_1=47~/dev/ntape/tape0\nDrive_2=x~y~z\nDrive_4=x\n");
  EXPECT_TRUE(check_magtape(2));
  EXPECT_EQ(lines(), "[MagTape]\nDrive_1=47~/dev/ntape/tape0\nDrive_2=48~/dev/ntape/tape1\nDrive_4=x\n");
}

}  // namespace

}  // namespace tolvane::test
