#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Step312 : public StoreTest {};
class Step313 : public StoreTest {};
class Step314 : public StoreTest {};
class Step32 : public StoreTest {};
class Step321 : public StoreTest {};
class Step33 : public StoreTest {};

TEST_F(Step312, JoinsDomainspaceMasterAndItsBackup) {
  EXPECT_EQ(converted("3.12", "[Startup]\nDomainspaceMaster=YES\n[Net]\nNSBackupMaster=2\n"),
            "[Startup]\nDomainspaceMaster=1,2\n[Net]\n");
}

TEST_F(Step312, TakesOnlyYesInCapitalsForYes) {
  EXPECT_EQ(converted("3.12", "[Startup]\nDomainspaceMaster=yes\n"), "[Startup]\nDomainspaceMaster=0\n");
  EXPECT_EQ(converted("3.12", "[Startup]\nDomainspaceMaster\n"), "[Startup]\nDomainspaceMaster=0\n");
  EXPECT_EQ(converted("3.12", "[Startup]\nDomainspaceMaster=YES\n"), "[Startup]\nDomainspaceMaster=1\n");
}

TEST_F(Step312, DeletesTheBackupMasterAlsoWhenItStandsAlone) {
  EXPECT_EQ(converted("3.12", "[Startup]\nx=1\n[Net]\nNSBackupMaster=2\n"), "[Startup]\nx=1\n[Net]\n");
}

TEST_F(Step312, AddsAnEmptyBackupMasterWithItsComma) {
  EXPECT_EQ(converted("3.12", "[Net]\nNSBackupMaster\n[Startup]\nDomainspaceMaster=NO\n"),
            "[Net]\n[Startup]\nDomainspaceMaster=0,\n");
}

/// The platform record after step "3.13", and what it printed.
std::string normalised(const std::string& record, const std::string& printed = "") {
  testing::internal::CaptureStdout();
  std::string result = converted("3.13", "[config]\noverview=" + record + "\n[Net]\n");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), printed) << record;
  const std::string before = "[config]\noverview=";
  const std::string after = "\n[Net]\nbaserexmit=1\nmaxrexmit=20\nudprcvbufsiz=400000\nudpsndbufsiz=250000\n";
  EXPECT_EQ(result.substr(0, before.size()), before);
  EXPECT_EQ(result.substr(result.size() - after.size()), after);
  return result.substr(before.size(), result.size() - before.size() - after.size());
}

TEST_F(Step313, NamesVmsPlatforms) {
  EXPECT_EQ(normalised("Alph axp~VMS~3.1"), "OpenVMS for Alpha~VMS~3.1");
  EXPECT_EQ(normalised("Alpha axp~VMS"), "OpenVMS for Alpha~VMS");
  EXPECT_EQ(normalised("VAX/VMS~VMS~3.1~x"), "OpenVMS for VAX~VMS~3.1~x");
  EXPECT_EQ(normalised("HP~VMS~3.1"), "HP~VMS~3.1");
}

TEST_F(Step313, NamesUnixPlatforms) {
  EXPECT_EQ(normalised("Alpha OSF~UNIX"), "Digital UNIX~UNIX");
  EXPECT_EQ(normalised("Alpha axp~UNIX"), "Digital UNIX~UNIX");
  EXPECT_EQ(normalised("Alph axp~UNIX"), "Digital UNIX~UNIX");
  EXPECT_EQ(normalised("PowerPC~UNIX"), "IBM PowerPC~UNIX");
  EXPECT_EQ(normalised("RS6000~UNIX"), "IBM RS/6000~UNIX");
  EXPECT_EQ(normalised("RS/6000~UNIX"), "IBM RS/6000~UNIX");
  EXPECT_EQ(normalised("HP~UNIX"), "HP/UX~UNIX");
  EXPECT_EQ(normalised("SCO~UNIX"), "SCO Unix~UNIX");
  EXPECT_EQ(normalised("Unixware~UNIX"), "SCO Unixware~UNIX");
  EXPECT_EQ(normalised("AViiON (Intel) DG/UX~UNIX"), "DG AViiON (Intel)~UNIX");
  EXPECT_EQ(normalised("AViiON (Motorola 88000)~UNIX"), "DG AViiON (Motorola 88000)~UNIX");
  EXPECT_EQ(normalised("Solaris/SPARC~UNIX"), "Solaris (SPARC)~UNIX");
  EXPECT_EQ(normalised("Solaris/Intel~UNIX"), "Solaris (Intel)~UNIX");
  EXPECT_EQ(normalised("hp~UNIX"), "hp~UNIX");
}

TEST_F(Step313, NamesWindowsPlatforms) {
  EXPECT_EQ(normalised("whatever~Windows 95~3.1"), "Windows 95/98~Windows 95~3.1");
  EXPECT_EQ(normalised("Intel~Windows NT~3.1"), "Windows NT (Intel)~Windows NT~3.1");
  EXPECT_EQ(normalised("Alpha~Windows NT~3.1"), "Windows NT (Alpha)~Windows NT~3.1");
  EXPECT_EQ(normalised("HP~Windows NT~3.1"), "HP~Windows NT~3.1");
}

TEST_F(Step313, MakesDgIntelAUnixPlatform) {
  EXPECT_EQ(normalised("DG/Intel~Intel~3.1"), "DG AViiON (Intel)~UNIX~3.1");
  EXPECT_EQ(normalised("DG/Intel"), "DG AViiON (Intel)~UNIX");
}

TEST_F(Step313, NamesAnUnknownFamilyAndGoesOn) {
  EXPECT_EQ(normalised("HP~Unix~3.1", "Unknown o/s type Unix\n"), "HP~Unix~3.1");
  EXPECT_EQ(normalised("HP", "Unknown o/s type \n"), "HP~");
}

TEST_F(Step313, WritesNoPlatformRecordWhereNoneWas) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(converted("3.13", "[config]\n"),
            "[config]\n[Net]\nbaserexmit=1\nmaxrexmit=20\nudprcvbufsiz=400000\nudpsndbufsiz=250000\n");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Unknown o/s type \n");
}

TEST_F(Step313, SetsNetworkTiming) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(converted("3.13", "[Net]\nTimeout=3\nbaserexmit=7\nudprcvbufsiz=400001\nudpsndbufsiz=249999\n"),
            "[Net]\nTimeout=10\nbaserexmit=7\nudprcvbufsiz=400001\nudpsndbufsiz=250000\nbaserexmit=1\nmaxrexmit=20\n");
  testing::internal::GetCapturedStdout();
}

/// One section of the lines: from its header to the line before the next.
std::string section(const std::string& lines, const std::string& header) {
  const std::size_t begin = lines.find(header + "\n");
  return begin == std::string::npos ? "none" : lines.substr(begin, lines.find("\n[", begin) - begin + 1);
}

TEST_F(Step314, CreatesTheSqlSettings) {
  const std::string result = converted("3.14", "[Startup]\nDaysBeforePurge=30\n");
  EXPECT_EQ(section(result, "[SQL]"),
            "[SQL]\nddlNo30=0\nddlNo201=0\nddlNo307=0\nddlNo315=0\nddlNo324=0\nddlNo333=0\ndropDelete=1\nidKey=1\n"
            "lockTimeout=10\ncomments=0\ndelimitedIds=0\ndbmsSecurity=1\nnamespaceSecurity=1\nloginOverride=\n"
            "daysBeforePurge=30\nprefix=DruveSql\nsaveMAC=1\nidTrxFrom= ~`@#$%^&*()_+-=[]\\{}|;':\",./<>?\nidTrxTo=\n");
  EXPECT_EQ(section(result, "[Startup]"), "[Startup]\nShutdownTimeout=300\nEnableMultiUserClients=NO\nErrorPurge=30\n");
}

TEST_F(Step314, PurgesAfter7DaysByDefault) {
  EXPECT_NE(converted("3.14", "").find("\ndaysBeforePurge=7\n"), std::string::npos);
  EXPECT_NE(converted("3.14", "[Startup]\nDaysBeforePurge\n").find("\ndaysBeforePurge=\n"), std::string::npos);
}

TEST_F(Step314, CreatesItsSectionsInOrder) {
  const std::string result = converted("3.14", "[config]\ncpus=2\nx=1\n");
  std::size_t before = 0;
  for (const char* header : {"[config]\nx=1\n[Startup]\n", "\n[DTMnetBIOS]\nDTMcollation=0\n[SQL]\n",
                             "\n[SqlSysDatatypes]\nBINARY VARYING(%1)=", "\n[SqlUserDatatypes]\n[ViewPoint]\n",
                             "\n[ViewPoint]\nVPSendResSz=1\nVPSendDTMNet=1\n[Miscellaneous]\n"}) {
    const std::size_t position = result.find(header);
    ASSERT_NE(position, std::string::npos) << header;
    EXPECT_GE(position, before) << header;
    before = position;
  }
}

TEST_F(Step314, AddsASecondSectionOfUserDatatypes) {
  const std::string result = converted("3.14", "[SqlUserDatatypes]\nA=B\n[ViewPoint]\n[Miscellaneous]\n");
  EXPECT_EQ(result.find("[SqlUserDatatypes]\nA=B\n[ViewPoint]\n"), 0U);
  EXPECT_EQ(result.substr(result.size() - 20), "\n[SqlUserDatatypes]\n");
}

TEST_F(Step314, KeepsMiscellaneousSettingsThatAreThere) {
  EXPECT_EQ(
      section(converted("3.14", "[Miscellaneous]\nRelCommit=1\nMNetSets\n[Startup]\n"), "[Miscellaneous]"),
      "[Miscellaneous]\nRelCommit=1\nMNetSets\nJournalHalt=0\nNetErrToLog=0\nNetErrToOpr=0\nDisconnectErr=0\n"
      "ReliableJob=1\nDdpSec=0\nNetNullSubs=0\nViewPastData=0\nNamespacePrompt=1\nNetHardening=1\nBroadcastHard=0\n"
      "PopError=0\nDropRemLocks=0\nZDateNull=0\nJournalZGlob=1\nAsynchError=1\nNWDSRetry=0\nNoNspNotify=0\n"
      "JrnlNewGlo=0\nEnableCaching=1\nSetZEOF=0\nNodeNameInPid=0\nOldZU5=0\nDefLoginNSP=USER\n"
      "ShutDownLogErrors=0\nTruncateOverflow=0\nLogRollback=0\n");
}

TEST_F(Step314, MovesNetworkHardening) {
  const std::string moved = converted("3.14", "[Startup]\nnethard=0\n");
  EXPECT_NE(moved.find("\nNetHardening=0\n"), std::string::npos);
  EXPECT_EQ(moved.find("nethard"), std::string::npos);
  const std::string kept = converted("3.14", "[Startup]\nnethard=0\n[Miscellaneous]\nNetHardening=5\n");
  EXPECT_NE(kept.find("\nNetHardening=5\n"), std::string::npos);
  EXPECT_EQ(kept.find("NetHardening=0"), std::string::npos);
  EXPECT_EQ(kept.find("nethard"), std::string::npos);
}

TEST_F(Step314, Adds62DataTypes) {
  const std::string types = section(converted("3.14", "[SqlSysDatatypes]\nBIT=mine\n"), "[SqlSysDatatypes]");
  EXPECT_EQ(std::count(types.begin(), types.end(), '\n'), 1 + 1 + 62);
  EXPECT_EQ(types.find("[SqlSysDatatypes]\nBIT=mine\nBINARY VARYING(%1)=%Binary(MAXLEN=%1)\n"), 0U);
  EXPECT_NE(types.find("\nVARCHAR(255)=%String(MAXLEN=255,COLLATION=STRING(150))\nVARCHAR2(%1)=%Binary(MAXLEN=%1)\n"),
            std::string::npos);
}

TEST_F(Step32, CorrectsTheDataTypes) {
  EXPECT_EQ(converted("3.2",
                      "[SqlSysDatatypes]\nBIT=a\nVARCHAR(%1)=b\nVARCHAR(%1,%2)=c\nVARCHAR2(%1)=d\nVARCHAR(255)=e\n"
                      "[SQL]\n[Startup]\n"),
            "[SqlSysDatatypes]\nBIT=%Boolean\nVARCHAR(%1)=%String(MAXLEN=%1)\nVARCHAR(%1,%2)=%String(MAXLEN=%1)\n"
            "VARCHAR2(%1)=%String(MAXLEN=%1)\nNVARCHAR(%1,%2)=%String(MAXLEN=%1)\nLONG RAW=BStream%String\n"
            "[SQL]\n[Startup]\nImjrnthreshold=10\n");
}

TEST_F(Step32, SetsSqlSettingsThatAreThere) {
  EXPECT_EQ(section(converted("3.2", "[SQL]\nidTrxFrom=x\nnamespaceSecurity=1\nsaveMAC=1\n"), "[SQL]"),
            "[SQL]\nidTrxFrom=~ `@#$%^&*()_+-=[]\\{}|;':\",./<>?\nnamespaceSecurity=0\nsaveMAC=0\n");
  EXPECT_EQ(section(converted("3.2", "[SQL]\nx=1\n"), "[SQL]"), "[SQL]\nx=1\n");
}

TEST_F(Step32, RenamesDdlNo303UnlessTheNewNameIsThere) {
  EXPECT_EQ(section(converted("3.2", "[SQL]\nddlNo303=1\nx=2\n"), "[SQL]"), "[SQL]\nx=2\nddlNo333=1\n");
  EXPECT_EQ(section(converted("3.2", "[SQL]\nddlNo303=1\nddlNo333=0\n"), "[SQL]"), "[SQL]\nddlNo333=0\n");
}

TEST_F(Step32, RenamesUsephysicalmemOnVmsOnly) {
  EXPECT_EQ(section(converted("3.2", "[config]\nusephysicalmem=1\noverview=A~VMS\n"), "[config]"),
            "[config]\noverview=A~VMS\nuseresidentmem=1\n");
  EXPECT_EQ(section(converted("3.2", "[config]\nusephysicalmem=1\noverview=A~OpenVMS\n"), "[config]"),
            "[config]\nusephysicalmem=1\noverview=A~OpenVMS\n");
  EXPECT_EQ(section(converted("3.2", "[config]\noverview=A~VMS\n"), "[config]"), "[config]\noverview=A~VMS\n");
}

TEST_F(Step321, CountsTheSerialPorts) {
  EXPECT_EQ(converted("3.21", "[Com]\nCOM1:=x\nCOM2:\nCOM4:=y\n[config]\nttysiz=64,1\n"),
            "[Com]\nCOM1:=x\nCOM2:\nCOM4:=y\n[config]\nttysiz=64,4\n");
}

TEST_F(Step321, CountsTwoWithoutAnyPort) {
  EXPECT_EQ(converted("3.21", "[Com]\nCOM1=x\nCOM2:=x\n[config]\nttysiz=64,1,7\n"),
            "[Com]\nCOM1=x\nCOM2:=x\n[config]\nttysiz=64,2,7\n");
  EXPECT_EQ(converted("3.21", "[config]\nttysiz\n"), "[config]\nttysiz=,2\n");
  EXPECT_EQ(converted("3.21", "[config]\n"), "[config]\n");
}

TEST_F(Step33, SplitsTheBigBufferSize) {
  EXPECT_EQ(converted("3.3", "[config]\nbbsiz=256\n[Shadowing]\n"),
            "[config]\nbbsiz=128,256\n[Shadowing]\nKeepCliProp=0\n");
  EXPECT_EQ(converted("3.3", "[config]\nbbsiz=64\n[Shadowing]\n"),
            "[config]\nbbsiz=64,64\n[Shadowing]\nKeepCliProp=0\n");
  EXPECT_EQ(converted("3.3", "[config]\nbbsiz=128,5\n[Shadowing]\n"),
            "[config]\nbbsiz=128,128\n[Shadowing]\nKeepCliProp=0\n");
}

TEST_F(Step33, Takes0ForABigBufferSizeWithoutNumber) {
  EXPECT_EQ(converted("3.3", "[config]\nbbsiz=auto\n[Shadowing]\n"),
            "[config]\nbbsiz=0,0\n[Shadowing]\nKeepCliProp=0\n");
}

TEST_F(Step33, AppendsKeepCliPropAlsoWithoutBigBufferSize) {
  EXPECT_EQ(converted("3.3", "[config]\n[Shadowing]\nKeepCliProp=1\n"),
            "[config]\n[Shadowing]\nKeepCliProp=1\nKeepCliProp=0\n");
}

}  // namespace

}  // namespace tolvane::test
