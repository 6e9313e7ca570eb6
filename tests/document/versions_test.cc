#include "document/versions.h"

#include <gtest/gtest.h>

namespace tolvane {

namespace {

TEST(Versions, AreComparedByTheirPlaceInTheList) {
  EXPECT_TRUE(versionolder("5.0", "4.2"));
  EXPECT_FALSE(versionolder("5.0", "5.2"));
  EXPECT_TRUE(versionolder("5.45", "5.0.5"));
  EXPECT_TRUE(versionolder("3.2", "3.14")) << "although 3.14 comes first by number of digits";
}

TEST(Versions, AreNotOlderThanThemselves) { EXPECT_FALSE(versionolder("5.0", "5.0")); }

TEST(Versions, ThatAreUnknownAreNeverOlder) {
  EXPECT_FALSE(versionolder("5.0", "9.9"));
  EXPECT_FALSE(versionolder("9.9", "5.0"));
  EXPECT_FALSE(versionolder("9.9", "9.9"));
  EXPECT_FALSE(versionolder("5.0", ""));
  EXPECT_FALSE(versionolder("5.0", "2.0 "));
}

TEST(Versions, Are37AndEndWithTheCurrentOne) {
  EXPECT_EQ(std::size(sVersions), 37U);
  EXPECT_EQ(currentversion, "5.45");
}

}  // namespace

}  // namespace tolvane
