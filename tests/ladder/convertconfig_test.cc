#include "ladder/convertconfig.h"

#include <algorithm>
#include <cctype>
#include <set>

#include "document/ends.h"
#include "document/entries.h"
#include "ladder/ladder.h"
#include "tests/support/program.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

const std::string current = "[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.45\n";

class Driver : public StoreTest {
 protected:
  /// Runs the driver on a store; what was printed is in `printed`.
  bool convert(std::string_view version, std::string_view lines) {
    given(lines);
    testing::internal::CaptureStdout();
    const bool changed = convertconfig(version);
    printed = testing::internal::GetCapturedStdout();
    return changed;
  }

  std::string printed;
};

TEST_F(Driver, LeavesACurrentFileAlone) {
  EXPECT_FALSE(convert("5.45", current));
  EXPECT_EQ(lines(), current);
  EXPECT_EQ(printed, "");
}

TEST_F(Driver, OnlyChecksThePlatformOfAnUnknownVersion) {
  for (const char* version : {"", "6.0", "5.4.5", "5.44 "}) {
    EXPECT_FALSE(convert(version, current + "rbufsiz=1\n")) << version;
    EXPECT_EQ(lines(), current + "rbufsiz=1\n");
    EXPECT_TRUE(convert(version, current + "[Com]\nCom=OFF\n")) << version;
    EXPECT_EQ(lines(), current + "[Com]\n");
  }
}

TEST_F(Driver, AppliesTheStepsThatAreNewerThanTheVersion) {
  EXPECT_TRUE(convert(
      "5.43", "[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.43\nrbufsiz=1\n[Miscellaneous]\nDefLoginNSP=A\n"));
  EXPECT_EQ(lines(), current + "[Miscellaneous]\nDefLoginNSP=A\n");
}

TEST_F(Driver, TakesAVersionWithoutAStepOfItsOwn) {
  EXPECT_TRUE(convert("5.31", current + "[Startup]\nJournalSetsKills=1\n"));
  EXPECT_EQ(find("[Startup]", "JournalSetsKills"), nullptr) << "step 5.32 runs";
  EXPECT_EQ(find("[Cluster]"), nullptr) << "step 5.3 does not";
}

TEST_F(Driver, AppliesToEveryVersionAllStepsBehindItInTheirOrder) {
  const std::string example = contents(std::filesystem::path(TOLVANE_SOURCE) / "examples" / "server-3.11.qpx");
  for (std::size_t version = 0; version + 1 < std::size(sVersions); ++version) {
    given(example);
    for (std::size_t later = version + 1; later < std::size(sVersions); ++later) {
      for (const Step& step : ladder) {
        if (step.version == sVersions[later]) step.apply();
      }
    }
    delentry("[Com]", "Com");
    const bool renamed = sVersions[version] != "5.44";
    editentry("[config]", "overview", renamed ? "Linux/x86-64~UNIX~5.45" : "Linux/AMD64~UNIX~5.45");
    const std::string expected = lines();

    given(example);
    testing::internal::CaptureStdout();
    EXPECT_TRUE(convertconfig(sVersions[version]));
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(lines(), expected) << sVersions[version];
  }
}

TEST_F(Driver, RunsStep312ForA311FileOnly) {
  const std::string file = current + "[Startup]\nDomainspaceMaster=YES\n[Net]\nNSBackupMaster=2\n";
  EXPECT_TRUE(convert("3.11", file));
  EXPECT_EQ(getvalue("[Startup]", "DomainspaceMaster"), "1,2");
  EXPECT_EQ(find("[Net]", "NSBackupMaster"), nullptr);
  EXPECT_TRUE(convert("3.13", file));
  EXPECT_EQ(getvalue("[Startup]", "DomainspaceMaster"), "YES");
  EXPECT_EQ(getvalue("[Net]", "NSBackupMaster"), "2");
}

TEST_F(Driver, RunsSteps535And536ForA534File) {
  EXPECT_TRUE(convert("5.34", current + "implheap=100000,300000\n"));
  EXPECT_EQ(getvalue("[Startup]", "WebServer"), "ON,8972") << "step 5.35";
  EXPECT_EQ(getvalue("[config]", "locksiz"), "1179648") << "step 5.36";
  EXPECT_EQ(find("[config]", "implheap"), nullptr) << "step 5.37 deletes what both have set";
}

TEST_F(Driver, WritesTheVersionIntoField3OfThePlatformRecord) {
  EXPECT_TRUE(convert("5.44", "[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.44~four~five\n"));
  EXPECT_EQ(lines(), "[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.45~four~five\n");
  EXPECT_TRUE(convert("5.44", "[config]\noverview=X86-64(Ubuntu Linux)\n"));
  EXPECT_EQ(lines(), "[config]\noverview=X86-64(Ubuntu Linux)~~5.45\n");
}

TEST_F(Driver, ConvertsAFileOfARefusedPlatformAndWarnsOnce) {
  EXPECT_TRUE(convert("5.43", "[config]\noverview=Linux/AMD64~UNIX~5.43\n"));
  EXPECT_EQ(printed, "\nWarning: Cannot upgrade from Linux/x86-64 to X86-64(Ubuntu Linux)!\nContact Tessvar.\n\n");
  EXPECT_EQ(lines(), "[config]\noverview=Linux/x86-64~UNIX~5.45\n");
}

TEST_F(Driver, EndsForAnUnknownPlatform) {
  given("[config]\noverview=Toaster~UNIX~5.44\n");
  EXPECT_THROW(convertconfig("5.44"), Fatal);
  EXPECT_THROW(convertconfig("5.45"), Fatal);
}

/// The name of the test suite of a step: "Step" and the letters and digits of its version.
std::string suiteof(std::string_view version) {
  std::string name = "Step";
  std::copy_if(version.begin(), version.end(), std::back_inserter(name),
               [](unsigned char character) { return std::isalnum(character) != 0; });
  return name;
}

TEST(Ladder, HasATestSuiteForEveryStep) {
  std::set<std::string> suites;
  const testing::UnitTest& all = *testing::UnitTest::GetInstance();
  for (int n = 0; n < all.total_test_suite_count(); ++n) suites.insert(all.GetTestSuite(n)->name());
  for (const Step& step : ladder) EXPECT_TRUE(suites.contains(suiteof(step.version))) << step.version;
}

TEST(Ladder, HasItsStepsInTheirOrder) {
  const std::string_view versions[] = {"3.12", "3.13",  "3.14", "3.2",  "3.21", "3.3",  "4.0",  "4.1",  "4.2",
                                       "5.0",  "5.0.5", "5.2",  "5.3",  "5.32", "5.34", "5.35", "5.36", "5.37",
                                       "5.39", "5.40",  "5.41", "5.42", "5.43", "5.44", "5.45"};
  ASSERT_EQ(std::size(ladder), std::size(versions));
  for (std::size_t n = 0; n < std::size(versions); ++n) EXPECT_EQ(ladder[n].version, versions[n]);
}

TEST(Ladder, MustAscendAlongKnownVersions) {
  constexpr Step second[] = {
      {"2.01", nullptr, ""}
  };
  constexpr Step oldest[] = {
      {"2.0", nullptr, ""}
  };
  EXPECT_TRUE(ascends(second));
  EXPECT_FALSE(ascends(oldest)) << "no file is older";
  constexpr Step good[] = {
      {"3.12", nullptr, ""},
      {"3.2",  nullptr, ""}
  };
  constexpr Step descending[] = {
      {"3.2",  nullptr, ""},
      {"3.14", nullptr, ""}
  };
  constexpr Step twice[] = {
      {"3.2", nullptr, ""},
      {"3.2", nullptr, ""}
  };
  constexpr Step unknown[] = {
      {"3.12", nullptr, ""},
      {"3.15", nullptr, ""}
  };
  EXPECT_TRUE(ascends(good));
  EXPECT_FALSE(ascends(descending));
  EXPECT_FALSE(ascends(twice));
  EXPECT_FALSE(ascends(unknown));
}

}  // namespace

}  // namespace tolvane::test
