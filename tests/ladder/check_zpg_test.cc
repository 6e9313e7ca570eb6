#include "ladder/check_zpg.h"

#include <random>
#include <vector>

#include "document/ends.h"
#include "document/entries.h"
#include "document/fields.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

const std::string rows[] = {
    "/zpg/samples,samples,1,1,,900,1,,SAMPLES,1,,/zpg/samples/error.zpg,,/zpg/samples/,0,0,,,1",
    "/zpg/user,user,1,1,,900,1,,USER,1,,,,/zpg/user/,0,0,,,1",
    "/zpg/docbook,docbook,1,0,,900,1,,DOCBOOK,1,,,,/zpg/docbook/,0,0,,%Application/ZPG/zpg/docbook,1",
    "/zpg/broker,broker,1,0,,900,1,,%SYS,1,,,,/zpg/broker/,1,0,,%Application/ZPG/zpg/broker,1",
    "/zpg/sys,sys,1,0,,28800,1,,%SYS,1,,,%zpgapp,/zpg/sys/,1,0,,%Application/ZPG/zpg/sys,1",
    "/qel/studio/templates,../dev/studio/templates,1,0,,900,1,%ZPG.StudioTemplateSuper,%SYS,0,,,%template,"
    "/studio/templates/,1,0,,,1",
    "/qel/studio/usertemplates,../devuser/studio/templates,1,1,,900,1,%ZPG.StudioTemplateSuper,%SYS,0,,,%usertemplate,"
    "/studio/usertemplates/,1,0,,,1",
    "/qel/studio/rules,../dev/zpg/rules,1,0,,900,1,,%SYS,1,,,,/dev/zpg/rules/,1,0,,,1",
};

/// The section's lines ZPGApp_n, ZPGApp_n+1, ... with the standard rows from one to another.
std::string standard(int n, int from, int to) {
  std::string text;
  for (int row = from; row <= to; ++row) text += "ZPGApp_" + std::to_string(n++) + "=" + rows[row - 1] + "\n";
  return text;
}

class WebApplications : public StoreTest {
 protected:
  /// A whole list of standard applications, followed by more lines, after the fix-up in its normal mode.
  static std::string fixed(const std::string& more) {
    given("[ZPG.Applications]\n" + standard(1, 1, 8) + more);
    EXPECT_TRUE(check_zpg(false));
    const std::string result = lines();
    const std::string unchanged = "[ZPG.Applications]\n" + standard(1, 1, 8);
    EXPECT_EQ(result.substr(0, unchanged.size()), unchanged);
    return result.substr(unchanged.size());
  }
};

TEST_F(WebApplications, AreAllAddedWithTheirSection) {
  given("[A]\n");
  EXPECT_TRUE(check_zpg(false));
  EXPECT_EQ(lines(), "[A]\n[ZPG.Applications]\n" + standard(1, 1, 8));
  EXPECT_FALSE(check_zpg(false));
}

TEST_F(WebApplications, ThatAreThereKeepTheirNumberAndValue) {
  const std::string there = "ZPGApp_1=/zpg/user,mine,,,,,,,,,,,,,,7,,,1\nZPGApp_2=/zpg/samples,,,,,,,,,,,,,,,7,,,1\n";
  given("[ZPG.Applications]\n" + there);
  EXPECT_TRUE(check_zpg(false));
  EXPECT_EQ(lines(), "[ZPG.Applications]\n" + there + standard(3, 3, 8));
}

TEST_F(WebApplications, InTheOldLayoutAreRepaired) {
  EXPECT_EQ(fixed("ZPGApp_9=/a,2,3,4,5,6,7,8,9,10,11,12,13,1,15,\n"),
            "ZPGApp_9=/a,2,3,4,5,6,7,8,9,10,11,12,13,,0,1,,,0\n");
  EXPECT_EQ(fixed("ZPGApp_9=/a,2,3,4,5,6,7,8,9,10,11,12,13,1,15,16\n"),
            "ZPGApp_9=/a,2,3,4,5,6,7,8,9,10,11,12,13,,0,16,,,0\n");
  EXPECT_EQ(fixed("ZPGApp_9=/a,2,3,4,5,6,7,8,9,10,11,12,13,0,15,,17,18,1\n"),
            "ZPGApp_9=/a,2,3,4,5,6,7,8,9,10,11,12,13,,0,1,17,18,1\n");
  EXPECT_EQ(fixed("ZPGApp_9=/a,2,3,4,5,6,7,8,9,10,11,12,13,0,15,16,17,18,1\n"),
            "ZPGApp_9=/a,2,3,4,5,6,7,8,9,10,11,12,13,,0,16,17,18,1\n");
  EXPECT_EQ(fixed("ZPGApp_9=/a\n"), "ZPGApp_9=/a,,,,,,,,,,,,,,,1,,,0\n");
  EXPECT_EQ(fixed("ZPGApp_9\n"), "ZPGApp_9=,,,,,,,,,,,,,,,1,,,0\n");
}

TEST_F(WebApplications, WithAnythingBut1InField19Get0) {
  const std::string start = "ZPGApp_9=/a,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,";
  EXPECT_EQ(fixed(start + "1 \n"), start + "0\n");
  EXPECT_EQ(fixed(start + "0,20\n"), start + "0,20\n") << "counts as a change although it was 0 already";
}

TEST_F(WebApplications, AreTooLongAsSoonAsOneRepairMakesThemSo) {
  // Field 16 takes one character more before field 19 gives many back.
  const std::string head = "[ZPG.Applications]\n" + standard(1, 1, 8);
  const std::string entry = "ZPGApp_9=/a,,,,,,,,,,,,,,,,,,";
  given(head + entry + std::string(510 - entry.size(), 'z') + "\n");
  EXPECT_TRUE(check_zpg(false));
  EXPECT_EQ(lines(), head + "ZPGApp_9=/a,,,,,,,,,,,,,,,1,,,0\n");
  given(head + entry + std::string(511 - entry.size(), 'z') + "\n");
  EXPECT_THROW(check_zpg(false), TextTooLong);
}

TEST_F(WebApplications, ThatAreObsoleteStayInTheNormalMode) {
  EXPECT_EQ(fixed("ZPGApp_9=/apps/scrivel,,,,,,,,,,,,,,,1,,,x\n"), "ZPGApp_9=/apps/scrivel,,,,,,,,,,,,,,,1,,,0\n");
}

TEST_F(WebApplications, BehindAGapAreSeenOnceItIsFilled) {
  given(
      "[ZPG.Applications]\nZPGApp_1=/zpg/samples,,,,,,,,,,,,,,,7,,,1\nZPGApp_2=/a,,,,,,,,,,,,,,,7,,,1\nZPGApp_4=/zpg/"
      "broker\n");
  EXPECT_TRUE(check_zpg(false));
  EXPECT_EQ(lines(),
            "[ZPG.Applications]\nZPGApp_1=/zpg/samples,,,,,,,,,,,,,,,7,,,1\nZPGApp_2=/a,,,,,,,,,,,,,,,7,,,1\n"
            "ZPGApp_4=/zpg/broker,,,,,,,,,,,,,,,1,,,0\nZPGApp_3=" +
                rows[1] + "\n" + "ZPGApp_5=" + rows[2] + "\n" + standard(6, 5, 8));
}

TEST_F(WebApplications, BehindAGapStayUnseenWhenNothingFillsIt) {
  given("[ZPG.Applications]\n" + standard(1, 1, 8) + "ZPGApp_10=/a\n");
  EXPECT_FALSE(check_zpg(false));
  EXPECT_EQ(lines(), "[ZPG.Applications]\n" + standard(1, 1, 8) + "ZPGApp_10=/a\n");
}

TEST_F(WebApplications, AreRefreshedToTheStandardValue) {
  given("[ZPG.Applications]\nZPGApp_1=/zpg/samples\n" + standard(2, 2, 8));
  EXPECT_TRUE(check_zpg(true));
  EXPECT_EQ(lines(), "[ZPG.Applications]\n" + standard(1, 1, 8));
  EXPECT_FALSE(check_zpg(true)) << "nothing is left to change";
}

TEST_F(WebApplications, ThatAreObsoleteAreRemovedAndTheNumbersCloseUp) {
  const std::string own = ",,,,,,,,,,,,,,,7,,,1";
  given("[ZPG.Applications]\nZPGApp_1=/apps/scrivel" + own + "\nZPGApp_2=/a" + own + "\nZPGApp_3=/zpg/druvelib" + own +
        "\nZPGApp_4=/b" + own + "\n" + standard(5, 1, 8));
  EXPECT_TRUE(check_zpg(true));
  EXPECT_EQ(lines(), "[ZPG.Applications]\nZPGApp_1=/a" + own + "\nZPGApp_2=/b" + own + "\n" + standard(3, 1, 8));
}

TEST_F(WebApplications, AreRemovedOnceForEachObsoletePath) {
  const std::string own = ",,,,,,,,,,,,,,,7,,,1";
  given("[ZPG.Applications]\n" + standard(1, 1, 8) + "ZPGApp_9=/dev/zpg/rules" + own + "\nZPGApp_10=/dev/zpg/rules" +
        own + "\nZPGApp_11=/studio/templates" + own + "\nZPGApp_12=/studio/usertemplates" + own + "\n");
  EXPECT_TRUE(check_zpg(true));
  EXPECT_EQ(lines(), "[ZPG.Applications]\n" + standard(1, 1, 8) + "ZPGApp_9=/dev/zpg/rules" + own + "\n");
}

TEST_F(WebApplications, AreNumberedFrom1) {
  const std::string own = ",,,,,,,,,,,,,,,7,,,1";
  const std::string zero = "[ZPG.Applications]\nZPGApp_0=/apps/scrivel" + own + "\n";
  given(zero + standard(1, 1, 8) + "ZPGApp_9=/apps/scrivel" + own + "\n");
  EXPECT_TRUE(check_zpg(true));
  EXPECT_EQ(lines(), zero + standard(1, 1, 8));
}

TEST_F(WebApplications, RenumberedOverADuplicateRewriteIt) {
  const std::string own = ",,,,,,,,,,,,,,,7,,,1";
  given("[ZPG.Applications]\n" + standard(1, 1, 8) + "ZPGApp_9=/apps/scrivel" + own + "\nZPGApp_9=/dup" + own +
        "\nZPGApp_10=/b" + own + "\n");
  EXPECT_TRUE(check_zpg(true));
  EXPECT_EQ(lines(), "[ZPG.Applications]\n" + standard(1, 1, 8) + "ZPGApp_9=/dup" + own + "\nZPGApp_10=/b" + own + "\n")
      << "the second 9 takes the place of the first, so there is no gap";
}

// The removal of the obsolete applications as it reads, each look-up from the top: what the fix-up does faster.
void removeliterally() {
  const auto entry = [](int n) { return find("[ZPG.Applications]", Text("ZPGApp_", n)); };
  int count = 0;
  while (entry(count + 1) != nullptr) ++count;
  for (const char* path :
       {"/apps/scrivel", "/studio/templates", "/studio/usertemplates", "/dev/zpg/rules", "/zpg/druvelib"}) {
    for (int n = 1; n <= count; ++n) {
      if (entry(n) == nullptr || getfield(valueof(*entry(n)), 1, ',') != path) continue;
      discard(entry(n));
      break;
    }
  }
  for (int n = 1, k = 1; n <= count; ++n) {
    Line* const line = entry(n);
    if (line == nullptr) continue;
    if (k != n) {
      putentry("[ZPG.Applications]", Text("ZPGApp_", k), Text(valueof(*line)));
      discard(line);
    }
    ++k;
  }
}

TEST_F(WebApplications, AreRemovedFromRandomListsAsTheLiteralProcedureDoes) {
  const std::vector<std::string> paths{"/apps/scrivel", "/dev/zpg/rules", "/zpg/druvelib", "/a", "/b"};
  std::mt19937 random(1);
  for (int round = 0; round < 3000; ++round) {
    std::string text = "[ZPG.Applications]\n" + standard(1, 1, 8);
    for (std::size_t line = random() % 12; line > 0; --line) {
      text += "ZPGApp_" + std::to_string(7 + random() % 8) + "=" + paths[random() % paths.size()] +
              ",,,,,,,,,,,,,,,7,,,1\n";
    }
    if (random() % 2 == 0) text += "[Z]\nZPGApp_9=/a\n";
    given(text);
    removeliterally();
    const std::string expected = lines();
    given(text);
    check_zpg(true);
    ASSERT_EQ(lines(), expected) << text;
  }
}

}  // namespace

}  // namespace tolvane::test
