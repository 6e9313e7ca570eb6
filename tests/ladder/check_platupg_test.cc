#include "ladder/check_platupg.h"

#include <algorithm>
#include <set>
#include <utility>

#include "tests/support/fatal.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class PlatformCheck : public StoreTest {
 protected:
  /// Gives a store with that platform record and checks it; what was printed is in `printed`, and in `ended` why it
  /// ended.
  bool check(std::string_view record, std::string_view more = "", int build = thisplatform) {
    given(std::string("[config]\noverview=").append(record).append("\n").append(more));
    testing::internal::CaptureStdout();
    bool changed = false;
    ended = fatal([&] { changed = check_platupg(build); });
    printed = testing::internal::GetCapturedStdout();
    return changed;
  }

  std::string printed;
  std::string ended;
};

TEST_F(PlatformCheck, RemovesTheLegacyCommunicationEntry) {
  EXPECT_TRUE(check("X86-64(Ubuntu Linux)~UNIX~5.45", "[Com]\nCom=OFF\nCOM1:=x\n"));
  EXPECT_EQ(lines(), "[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.45\n[Com]\nCOM1:=x\n");
  EXPECT_TRUE(check("X86-64(Ubuntu Linux)~VMS", "[Com]\nCom\n"));
  EXPECT_EQ(lines(), "[config]\noverview=X86-64(Ubuntu Linux)~VMS\n[Com]\n");
}

TEST_F(PlatformCheck, ChangesNothingWithoutThatEntry) {
  EXPECT_FALSE(check("X86-64(Ubuntu Linux)~UNIX~5.45", "[Com]\ncom=OFF\n[Other]\nCom=OFF\n"));
  EXPECT_FALSE(check("X86-64(Ubuntu Linux)~Windows NT~5.45", "[Com]\nCom=OFF\n"));
  EXPECT_EQ(lines(), "[config]\noverview=X86-64(Ubuntu Linux)~Windows NT~5.45\n[Com]\nCom=OFF\n");
  EXPECT_EQ(printed, "");
}

TEST_F(PlatformCheck, AnswersNoForARefusedPlatformAndWarns) {
  EXPECT_FALSE(check("Linux/x86-64~UNIX~5.2"));
  EXPECT_EQ(printed, "\nWarning: Cannot upgrade from Linux/x86-64 to X86-64(Ubuntu Linux)!\nContact Tessvar.\n\n");
  EXPECT_EQ(lines(), "[config]\noverview=Linux/x86-64~UNIX~5.2\n");
  EXPECT_FALSE(check("X86-64(Windows)~UNIX", "[Com]\nCom=OFF\n"));
  EXPECT_EQ(lines(), "[config]\noverview=X86-64(Windows)~UNIX\n[Com]\n");
}

TEST_F(PlatformCheck, EndsForAnUnknownOrMissingPlatform) {
  for (const std::string name :
       {"Invalid Platform ID", "x86-64(Ubuntu Linux)", "OpenVMS for VAX", "Digital UNIX", ""}) {
    check(name + "~UNIX~5.2");
    EXPECT_EQ(ended, "Unknown platform: " + name + ".");
    EXPECT_EQ(printed, "");
  }
  given("[config]\n[Other]\noverview=X86-64(Ubuntu Linux)\n");
  EXPECT_THROW(check_platupg(), Fatal);
  given("");
  EXPECT_THROW(check_platupg(), Fatal);
}

TEST_F(PlatformCheck, TakesARecordWithoutSeparatorAsNameOnly) {
  EXPECT_FALSE(check("X86-64(Ubuntu Linux)", "[Com]\nCom=OFF\n"));
  EXPECT_EQ(lines(), "[config]\noverview=X86-64(Ubuntu Linux)\n[Com]\nCom=OFF\n");
}

TEST_F(PlatformCheck, TakesOverAPermittedPlatform) {
  EXPECT_TRUE(check("SPARC-32(Solaris)~UNIX~5.2~more", "", 45));
  EXPECT_EQ(lines(), "[config]\noverview=UltraSPARC(Solaris)~UNIX~5.2~more\n");
  EXPECT_TRUE(check("Solaris (SPARC)", "", 45));
  EXPECT_EQ(lines(), "[config]\noverview=UltraSPARC(Solaris)\n");
  EXPECT_FALSE(check("UltraSPARC(Solaris)~UNIX", "", 30)) << "the permission has a direction";
}

TEST_F(PlatformCheck, PermitsTheTenChangesAndNoneToThisPlatform) {
  std::set<std::pair<int, int>> permitted;
  for (int build = 1; build < 76; ++build) {
    for (int from = 1; from < 76; ++from) {
      if (from != build && check(platname[from], "", build)) permitted.emplace(from, build);
    }
  }
  const std::set<std::pair<int, int>> expected{
      {30, 45},
      {19, 46},
      {46, 19},
      {37, 48},
      {48, 37},
      {54, 56},
      {56, 54},
      {54, 58},
      {56, 58},
      {58, 56}
  };
  EXPECT_EQ(permitted, expected);
}

TEST(PlatformNames, OfBothTablesHaveTheirIds) {
  EXPECT_EQ(getmachid("SCO Unix"), 16);
  EXPECT_EQ(getmachid("HP/UX"), 19);
  EXPECT_EQ(getmachid("OpenVMS for Alpha"), 28);
  EXPECT_EQ(getmachid("Tru64 UNIX"), 29);
  EXPECT_EQ(getmachid("Windows NT (Alpha)"), 33);
  EXPECT_EQ(getmachid("Solaris/UltraSPARC"), 45);
  EXPECT_EQ(getmachid("Linux/x86-64"), 52);
  EXPECT_EQ(getmachid("Android/ARM"), 59);
  EXPECT_EQ(getmachid("PDP 11 [obsolete]"), 1);
  EXPECT_EQ(getmachid("VAX (OpenVMS)  [obsolete]"), 2);
  EXPECT_EQ(getmachid("VAX (OpenVMS) [obsolete]"), 0);
  EXPECT_EQ(getmachid("PA-RISC-32(HP UX)"), 19);
  EXPECT_EQ(getmachid("SGI Irix [obsolete]"), 38);
  EXPECT_EQ(getmachid("Itanium(HP UX)"), 49);
  EXPECT_EQ(getmachid("X86-64(Ubuntu Linux)"), 64);
  EXPECT_EQ(getmachid("Container(Red Hat Linux)"), 75);
  EXPECT_EQ(getmachid("Invalid Platform ID"), 0);
  EXPECT_EQ(getmachid(""), 0);
}

// The legacy names are looked up first, which no name can show.
TEST(PlatformNames, StandInOneTableOnly) {
  for (const LegacyName& row : qpxnames) EXPECT_EQ(std::count(std::begin(platname), std::end(platname), row.name), 0);
}

TEST(PlatformNames, StandInTheirTableOnce) {
  for (int id = 1; id < 76; ++id) EXPECT_EQ(getmachid(platname[id]), id);
  for (const LegacyName& row : qpxnames) EXPECT_EQ(getmachid(row.name), row.id);
}

}  // namespace

}  // namespace tolvane::test
