#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Step40 : public StoreTest {};
class Step41 : public StoreTest {};
class Step42 : public StoreTest {};

/// What step "4.0" makes of "[Language]" and "[config]".
std::string step40(const std::string& lines) {
  const std::string appended =
      "[SQL]\nreferentialChecks=0\nddlNo311=0\n[SqlSysDatatypes]\nLONG BINARY=BStream%String\n";
  return behind(appended, converted("4.0", "[SQL]\n[SqlSysDatatypes]\n" + lines));
}

TEST_F(Step40, TakesZaModeFromItsForerunnerWhenItIsMissing) {
  EXPECT_EQ(step40("[Language]\nZaModeKRM=1\nZaModeDSM=3\n"), "[Language]\nZaMode=1\n");
  EXPECT_EQ(step40("[Language]\nZaModeDSM=3\n"), "[Language]\nZaMode=0\n");
  EXPECT_EQ(step40(""), "[Language]\nZaMode=0\n");
  EXPECT_EQ(step40("[Language]\nZaModeKRM=1\nZaMode=2\nZaModeDSM=3\n"), "[Language]\nZaMode=2\n");
}

TEST_F(Step40, DropsTheDefaultPathsOnVmsOnly) {
  const std::string head = "[Language]\nZaMode=0\n[config]\noverview=A~VMS\n";
  EXPECT_EQ(step40(head + "wijdir=velmsys:\nconsole=1,VelmSys:Messages.Log,2\n"), head + "wijdir=\nconsole=1,,2\n");
  EXPECT_EQ(step40(head + "wijdir=VELMSYS:[X]\nconsole=1,velmsys:\n"), head + "wijdir=VELMSYS:[X]\nconsole=1,\n");
  EXPECT_EQ(step40(head + "console=VELMSYS:,VELMSYS:OTHER.LOG\n"), head + "console=VELMSYS:,VELMSYS:OTHER.LOG\n");
  EXPECT_EQ(step40(head), head);
  const std::string other = "[Language]\nZaMode=0\n[config]\noverview=A~OpenVMS\nwijdir=VELMSYS:\nconsole=1,VELMSYS:\n";
  EXPECT_EQ(step40(other), other);
}

/// Web applications that step "4.1" has nothing to do with.
const std::string applications =
    "[ZPG.Applications]\nZPGApp_1=/zpg/samples,,,,,,,,,,,,,,,1,,,1\nZPGApp_2=/zpg/user,,,,,,,,,,,,,,,1,,,1\n"
    "ZPGApp_3=/zpg/docbook,,,,,,,,,,,,,,,1,,,1\nZPGApp_4=/zpg/broker,,,,,,,,,,,,,,,1,,,1\n"
    "ZPGApp_5=/zpg/sys,,,,,,,,,,,,,,,1,,,1\nZPGApp_6=/qel/studio/templates,,,,,,,,,,,,,,,1,,,1\n"
    "ZPGApp_7=/qel/studio/usertemplates,,,,,,,,,,,,,,,1,,,1\nZPGApp_8=/qel/studio/rules,,,,,,,,,,,,,,,1,,,1\n";

/// What a step makes of "[config]", given behind the web applications.
std::string config(std::string_view version, const std::string& lines) {
  const std::string head = applications + "[config]\n";
  return behind(head, converted(version, head + lines));
}

std::string globals(const std::string& size) {
  const std::string result = config("4.1", "ttysiz=3750\nglobals=" + size + "\n");
  return result.substr(result.find("globals="));
}

TEST_F(Step41, CountsGlobalsInMegabytesIn32Bits) {
  EXPECT_EQ(globals("600"), "globals=2,0,0,0,0,0\n");
  EXPECT_EQ(globals("0"), "globals=1,0,0,0,0,0\n");
  EXPECT_EQ(globals("1"), "globals=1,0,0,0,0,0\n");
  EXPECT_EQ(globals("512"), "globals=1,0,0,0,0,0\n");
  EXPECT_EQ(globals("513,7"), "globals=2,0,0,0,0,0\n");
  EXPECT_EQ(globals("x"), "globals=1,0,0,0,0,0\n");
  EXPECT_EQ(globals("-600"), "globals=1,0,0,0,0,0\n");
  EXPECT_EQ(globals("-1024"), "globals=-1,0,0,0,0,0\n");
  EXPECT_EQ(globals("-1535"), "globals=-1,0,0,0,0,0\n") << "-2047 KB";
  EXPECT_EQ(globals("2147483647"), "globals=1,0,0,0,0,0\n");
  EXPECT_EQ(globals("1073741824"), "globals=-2097151,0,0,0,0,0\n");
}

TEST_F(Step41, AddsGlobalsWhenTheyAreMissing) {
  EXPECT_EQ(config("4.1", "ttysiz=3750\n"), "ttysiz=3750\nglobals=0,0,8,0,0,0\n");
}

/// What step "4.1" makes of "ttysiz", the platform and "processes" given.
std::string terminals(const std::string& platform, const std::string& processes, const std::string& size) {
  const std::string head = "globals=512\noverview=" + platform + "\n" + processes;
  const std::string result = config("4.1", head + size);
  const std::string before = "globals=1,0,0,0,0,0\noverview=" + platform + "\n" + processes;
  EXPECT_EQ(result.substr(0, before.size()), before);
  return result.substr(before.size());
}

TEST_F(Step41, SizesTerminalMemoryByProcessesUnlessItIsEnough) {
  EXPECT_EQ(terminals("A~UNIX", "processes=20\n", "ttysiz=1500\n"), "ttysiz=1500\n");
  EXPECT_EQ(terminals("A~UNIX", "processes=20\n", "ttysiz=1000,9\n"), "ttysiz=1000,9\n");
  EXPECT_EQ(terminals("A~Windows", "processes=20\n", "ttysiz=2000\n"), "ttysiz=2000\n");
  EXPECT_EQ(terminals("A~UNIX", "processes=20\n", "ttysiz=800,9\n"), "ttysiz=1500\n");
  EXPECT_EQ(terminals("A~UNIX", "processes=20\n", "ttysiz=999\n"), "ttysiz=1500\n");
  EXPECT_EQ(terminals("A~UNIX", "processes=20\n", "ttysiz=2001\n"), "ttysiz=1500\n");
  EXPECT_EQ(terminals("A~UNIX", "processes=20\n", ""), "ttysiz=1500\n");
  EXPECT_EQ(terminals("A~UNIX", "", "ttysiz=1\n"), "ttysiz=3750\n");
  EXPECT_EQ(terminals("A~UNIX", "processes=many\n", "ttysiz=1\n"), "ttysiz=0\n");
  EXPECT_EQ(terminals("A~UNIX", "processes\n", "ttysiz=0\n"), "ttysiz=0\n");
}

TEST_F(Step41, KeepsTheSecondFieldOnWindows) {
  EXPECT_EQ(terminals("Windows NT (Intel)~x", "processes=20\n", "ttysiz=800,9,1\n"), "ttysiz=1500,9\n");
  EXPECT_EQ(terminals("A~Windows NT", "processes=20\n", "ttysiz=800\n"), "ttysiz=1500,2\n");
  EXPECT_EQ(terminals("A~Windows NT", "processes=20\n", "ttysiz=800,\n"), "ttysiz=1500,0\n");
  EXPECT_EQ(terminals("A~Windows NT", "processes=20\n", ""), "ttysiz=1500,2\n");
}

TEST_F(Step41, SizesTerminalMemoryIn32Bits) {
  EXPECT_EQ(terminals("A~UNIX", "processes=100000000\n", ""), "ttysiz=-1089934592\n");
  // 50 and 100 times the processes wrap to 705032704 and 1410065408.
  EXPECT_EQ(terminals("A~UNIX", "processes=100000000\n", "ttysiz=1000000000\n"), "ttysiz=1000000000\n");
}

TEST_F(Step41, TurnsRoutineBuffersIntoLockedOnesOnVmsAndDropsThemElsewhere) {
  EXPECT_EQ(config("4.1", "globals=1\nttysiz=3750\nrbufsiz=8,32\noverview=A~OpenVMS\n"),
            "globals=1,0,0,0,0,0\nttysiz=3750\noverview=A~OpenVMS\nrbuflock=8\n");
  EXPECT_EQ(config("4.1", "globals=1\nttysiz=3750\noverview=VMS\n"),
            "globals=1,0,0,0,0,0\nttysiz=3750\noverview=VMS\nrbuflock=16\n");
  EXPECT_EQ(config("4.1", "globals=1\nttysiz=3750\nrbufsiz=8,32\noverview=A~UNIX\n"),
            "globals=1,0,0,0,0,0\nttysiz=3750\noverview=A~UNIX\n");
}

TEST_F(Step41, DeletesReserveper) {
  EXPECT_EQ(config("4.1", "reserveper=5\nglobals=1\nttysiz=3750\n"), "globals=1,0,0,0,0,0\nttysiz=3750\n");
}

/// What step "4.1" makes of the lock table and the heap.
std::string locktable41(const std::string& lines) {
  const std::string result = config("4.1", "globals=1\nttysiz=3750\n" + lines);
  return result.substr(result.find("ttysiz=3750\n") + 12);
}

TEST_F(Step41, TriplesTheLockTableAndGrowsTheHeapIn32Bits) {
  EXPECT_EQ(locktable41("locksiz=100000\ngmheap=1000\n"), "locksiz=300000\ngmheap=1293\n");
  EXPECT_EQ(locktable41("gmheap=1000 kb\n"), "gmheap=1000\n");
  EXPECT_EQ(locktable41("locksiz=1\n"), "locksiz=3\n");
  EXPECT_EQ(locktable41("locksiz=683\ngmheap=5\n"), "locksiz=2049\ngmheap=8\n") << "a kilobyte that is begun counts";
  EXPECT_EQ(locktable41("locksiz=1431655766\ngmheap=5\n"), "locksiz=2\ngmheap=6\n");
  EXPECT_EQ(locktable41("locksiz=715827882\ngmheap=5\n"), "locksiz=2147483646\ngmheap=-2097146\n");
}

TEST_F(Step41, FixesSamplesAndWebApplications) {
  const std::string result = converted("4.1", "[Datasets]\nDataSet_1=SAMPLES\n[config]\nglobals=1\nttysiz=3750\n");
  EXPECT_NE(result.find("\n[Namespaces]\nNsp_1=SAMPLES,SAMPLES,VELMSYS,SAMPLES,VELMSYS,VELMLIB,VELMTEMP\n"
                        "[ZPG.Applications]\nZPGApp_1=/zpg/samples,"),
            std::string::npos)
      << "the namespace comes first";
}

/// What step "4.2" makes of lines that stand behind a current library entry and the web applications.
std::string step42(const std::string& lines, const std::string& datasets = "") {
  const std::string head =
      applications + "[Datasets]\nDataSet_1=VELMLIB,velmlib,,0,P,0,1\n" + datasets + "[Miscellaneous]\n";
  return behind(head, converted("4.2", head + lines));
}

TEST_F(Step42, AddsNoDataTypes) { EXPECT_EQ(step42("[A]\n"), "[A]\n"); }

TEST_F(Step42, NamesTheClassesOfTheDataTypesThatAreThere) {
  EXPECT_EQ(step42("[SqlSysDatatypes]\nTINYINT=a\nDATETIME=%TimeStamp\nDEC(%1,%2)=b\nBIT\nOWN=c\n"),
            "[SqlSysDatatypes]\nTINYINT=%Library.TinyInt\nDATETIME=%TimeStamp\n"
            "DEC(%1,%2)=%Library.Numeric(MAXVAL=<|'$$maxval^%apiSQL(%1,%2)'|>,MINVAL=<|'$$minval^%apiSQL(%1,%2)'|>,"
            "SCALE=%2)\nBIT=%Library.Boolean\nOWN=c\n");
}

TEST_F(Step42, TakesAFirstLetterYForMultiUser) {
  for (const char* value : {"YES", "yes", "Y", "yellow"}) {
    EXPECT_EQ(step42(std::string("[Startup]\nEnableMultiUserClients=") + value + "\n"),
              "[Startup]\nEnableMultiUserClients=1\n");
  }
  for (const char* value : {"=NO", "=", "", "=1", "= YES"}) {
    EXPECT_EQ(step42(std::string("[Startup]\nEnableMultiUserClients") + value + "\n"),
              "[Startup]\nEnableMultiUserClients=0\n");
  }
  EXPECT_EQ(step42("[Startup]\n"), "[Startup]\n");
}

TEST_F(Step42, FixesTapeDrivesOnTru64Only) {
  EXPECT_EQ(step42("[config]\noverview=Tru64 UNIX~UNIX\n[MagTape]\nDrive_1=1~/dev/nrmt2l\n"),
            "[config]\noverview=Tru64 UNIX~UNIX\n[MagTape]\nDrive_1=1~/dev/ntape/tape2_d0\n");
  EXPECT_EQ(step42("[config]\noverview=Alpha(UNIX)~UNIX\n[MagTape]\nDrive_1=1~/dev/nrmt2l\n"),
            "[config]\noverview=Alpha(UNIX)~UNIX\n[MagTape]\nDrive_1=1~/dev/nrmt2l\n");
}

TEST_F(Step42, DeletesProcessesAndTerminalMemory) {
  EXPECT_EQ(step42("[config]\nprocesses=20\nttysiz=1500\nttysiz=2\n"), "[config]\nttysiz=2\n");
}

TEST_F(Step42, RenamesRelCommitAndDeletesReliableJob) {
  EXPECT_EQ(step42("ReliableJob=1\nRelCommit=3\nx=1\n"), "x=1\nSynchCommit=3\n");
  EXPECT_EQ(step42("x=1\n"), "x=1\n");
}

TEST_F(Step42, FixesDocumentationLibraryAndWebApplicationsInThisOrder) {
  const std::string result = converted("4.2", "[Datasets]\nDataSet_1=DOCBOOK\n");
  EXPECT_EQ(result.find("[Datasets]\nDataSet_1=DOCBOOK\nDataSet_2=VELMLIB,velmlib,,0,P,0,1\n[Namespaces]\n"
                        "Nsp_1=DOCBOOK,DOCBOOK,VELMSYS,DOCBOOK,VELMSYS,VELMLIB,VELMTEMP\n[ZPG.Applications]\n"),
            0U);
}

}  // namespace

}  // namespace tolvane::test
