#include "legacy/convertsystem.h"

#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class System202 : public StoreTest {};
class System21 : public StoreTest {};
class System30 : public StoreTest {};
class System31 : public StoreTest {};
class System311 : public StoreTest {};
class System312 : public StoreTest {};
class SystemLadder : public StoreTest {};

std::string system(std::string_view version, std::string_view before) {
  return converted(systemladder, version, before);
}

TEST_F(System202, RaisesTheNetworkDirectoryTable) {
  EXPECT_EQ(system("2.02", "[config]\nnetdirtabsiz=1024\n"), "[config]\nnetdirtabsiz=2048\n");
  EXPECT_EQ(system("2.02", "[config]\nnetdirtabsiz=4096,x\n"), "[config]\nnetdirtabsiz=4096,x\n");
  EXPECT_EQ(system("2.02", ""), "[config]\nnetdirtabsiz=2048\n");
}

TEST_F(System21, StartsTheSystemWhenTheFirstZstuIs0) {
  EXPECT_EQ(system("2.1", "[Com]\n[Startup]\nzstu=0\n"), "[Com]\nCom=OFF\n[Startup]\nzstu=0\nstart_0=System~0~1\n");
  for (const char* value : {"zstu=00\n", "zstu=\n", "zstu\n", ""}) {
    const std::string startup = std::string("[Startup]\n") + value;
    EXPECT_EQ(system("2.1", "[Com]\n" + startup), "[Com]\nCom=OFF\n" + startup);
  }
  EXPECT_EQ(system("2.1", "[Com]\n[Startup]\nzstu=1\nzstu=0\n"), "[Com]\nCom=OFF\n[Startup]\nzstu=1\nzstu=0\n");
}

TEST_F(System21, AppendsCommunicationAlsoBesideAnExistingEntry) {
  EXPECT_EQ(system("2.1", "[Com]\nCom=ON\n"), "[Com]\nCom=ON\nCom=OFF\n");
}

TEST_F(System21, RenamesTheTerminalTypesOfDevicesUpToTheFirstGap) {
  EXPECT_EQ(system("2.1",
                   "[Com]\n[Devices]\nDevice_1=a~b~c~C-NT CONSOLE\nDevice_2=a~b~c~C-NT CONSOLE~x~y\n"
                   "Device_3=a~b~c~C-NT CONSOLE2\nDevice_4=~~~C-Mirel Terminal~\nDevice_5=C-NT CONSOLE\n"),
            "[Com]\nCom=OFF\n[Devices]\nDevice_1=a~b~c~C-Druve Terminal\nDevice_2=a~b~c~C-Druve Terminal~x~y\n"
            "Device_3=a~b~c~C-NT CONSOLE2\nDevice_4=~~~C-Druve Terminal~\nDevice_5=C-NT CONSOLE\n");
  EXPECT_EQ(system("2.1", "[Com]\n[Devices]\nDevice_1=~~~C-NT CONSOLE\nDevice_3=~~~C-NT CONSOLE\n"),
            "[Com]\nCom=OFF\n[Devices]\nDevice_1=~~~C-Druve Terminal\nDevice_3=~~~C-NT CONSOLE\n");
}

TEST_F(System21, RenamesTheTerminalTypesOfSubTypes) {
  EXPECT_EQ(system("2.1",
                   "[Com]\n[Device Sub-Types]\nSubType_1=C-NT CONSOLE\nSubType_2=C-Mirel Terminal~80~24\n"
                   "SubType_3=x~C-NT CONSOLE\n"),
            "[Com]\nCom=OFF\n[Device Sub-Types]\nSubType_1=C-Druve Terminal\nSubType_2=C-Druve Terminal~80~24\n"
            "SubType_3=x~C-NT CONSOLE\n");
}

TEST_F(System30, RaisesTheHeapByItsWholeValue) {
  EXPECT_EQ(system("3.0", "[config]\nimplheap=8192,4\n"), "[config]\nimplheap=16384\n");
  EXPECT_EQ(system("3.0", "[config]\nimplheap=16384,4\n"), "[config]\nimplheap=16384,4\n");
  EXPECT_EQ(system("3.0", "[config]\n"), "[config]\nimplheap=16384\n");
}

TEST_F(System30, NamesTheVmsFamily) {
  const std::string heap = "[config]\nimplheap=16384\n";
  EXPECT_EQ(system("3.0", heap + "overview=VAX~OpenVMS~2.1~x\n"), heap + "overview=VAX~VMS~2.1~x\n");
  EXPECT_EQ(system("3.0", heap + "overview=VAX~OpenVMS 7\n"), heap + "overview=VAX~OpenVMS 7\n");
}

TEST_F(System31, RenamesTheLatServicesToTheEndOfTheirSection) {
  EXPECT_EQ(system("3.1", "[Startup]\n[LAT]\nServiceRating=3\nServiceName=a\nx=1\nServiceDescription\n"),
            "[Startup]\nJobServers=0\n[LAT]\nx=1\nServiceName_1=a\nServiceDescription_1=\nServiceRating_1=3\n");
  EXPECT_EQ(system("3.1", "[Startup]\n[LAT]\nServiceName\n"), "[Startup]\nJobServers=0\n[LAT]\nServiceName_1=\n");
}

TEST_F(System31, AppendsJobServersAlsoBesideAnExistingEntry) {
  EXPECT_EQ(system("3.1", "[Startup]\nJobServers=4\n"), "[Startup]\nJobServers=4\nJobServers=0\n");
}

TEST_F(System31, RenamesTheMemoryEntryAndFillsTheHeapsSecondField) {
  EXPECT_EQ(system("3.1", "[Startup]\n[config]\nusenpgdyn=1\nimplheap=16384\n"),
            "[Startup]\nJobServers=0\n[config]\nimplheap=16384,65536\nusephysicalmem=1\n");
  EXPECT_EQ(system("3.1", "[Startup]\n[config]\nimplheap=1,,3\n"),
            "[Startup]\nJobServers=0\n[config]\nimplheap=1,65536,3\n");
  EXPECT_EQ(system("3.1", "[Startup]\n[config]\nimplheap=1,2\n"), "[Startup]\nJobServers=0\n[config]\nimplheap=1,2\n");
  EXPECT_EQ(system("3.1", "[Startup]\n[config]\n"), "[Startup]\nJobServers=0\n[config]\n");
}

TEST_F(System311, RaisesTheRoutineBuffersExceptOnVms) {
  EXPECT_EQ(system("3.11", "[config]\nrbufsiz=8,16\n"), "[config]\nrbufsiz=32\n");
  EXPECT_EQ(system("3.11", "[config]\nrbufsiz=64,16\n"), "[config]\nrbufsiz=64,16\n");
  EXPECT_EQ(system("3.11", "[config]\noverview=A~OpenVMS\n"), "[config]\noverview=A~OpenVMS\nrbufsiz=32\n");
}

TEST_F(System311, SetsTheSecondFieldOfTheRoutineBuffersOnVms) {
  EXPECT_EQ(system("3.11", "[config]\noverview=A~VMS\nrbufsiz=16\n"), "[config]\noverview=A~VMS\nrbufsiz=16,32\n");
  EXPECT_EQ(system("3.11", "[config]\noverview=A~VMS\nrbufsiz=64,64,1\n"),
            "[config]\noverview=A~VMS\nrbufsiz=64,32,1\n");
  EXPECT_EQ(system("3.11", "[config]\noverview=A~VMS\n"), "[config]\noverview=A~VMS\nrbufsiz=8,32\n");
}

TEST_F(System311, SetsThePriorityOnWindows) {
  EXPECT_EQ(system("3.11", "[config]\nrbufsiz=32\noverview=A~Windows NT\nniceval=5,7\n"),
            "[config]\nrbufsiz=32\noverview=A~Windows NT\nniceval=1,7\n");
  EXPECT_EQ(system("3.11", "[config]\nrbufsiz=32\noverview=A~MS Windows\nniceval\n"),
            "[config]\nrbufsiz=32\noverview=A~MS Windows\nniceval=1\n");
  EXPECT_EQ(system("3.11", "[config]\nrbufsiz=32\noverview=A~Windows\n"), "[config]\nrbufsiz=32\noverview=A~Windows\n");
  EXPECT_EQ(system("3.11", "[config]\nrbufsiz=32\noverview=Windows~windows\nniceval=5\n"),
            "[config]\nrbufsiz=32\noverview=Windows~windows\nniceval=5\n");
}

/// What step "3.12" leaves of lines behind what it appends.
std::string system312(const std::string& lines) {
  const std::string head = "[Startup]\nmaxconsolelogsize=100000\nDefaultPort=1972\n";
  return behind(head, system("3.12", "[Startup]\n" + lines));
}

TEST_F(System312, SizesTerminalMemoryByTheProcessesIn32Bits) {
  EXPECT_EQ(system312("[config]\nprocesses=20,9\nttysiz=64,1\n"), "[config]\nprocesses=20,9\nttysiz=2000\n");
  EXPECT_EQ(system312("[config]\nprocesses= +20\nttysiz=2000,1\n"), "[config]\nprocesses= +20\nttysiz=2000,1\n");
  EXPECT_EQ(system312("[config]\nprocesses=many\n"), "[config]\nprocesses=many\nttysiz=0\n");
  EXPECT_EQ(system312("[config]\n"), "[config]\nttysiz=0\n");
  // 42,949,673 times 100 is 2^32 + 4.
  EXPECT_EQ(system312("[config]\nprocesses=42949673\n"), "[config]\nprocesses=42949673\nttysiz=4\n");
}

TEST_F(System312, RemovesWholeSections) {
  EXPECT_EQ(system312("[SQL]\na=1\n[config]\nttysiz=0\n[Mvb]\nb=2\n"), "[config]\nttysiz=0\n");
}

TEST_F(System312, RemovesTheFirstEntryOfObsoleteKeys) {
  EXPECT_EQ(system("3.12",
                   "[config]\nttysiz=0\n[Startup]\nViewPointServer=1\nViewPointServer=2\n"
                   "[Shadowing]\nSRVactive=1\nSRVport=2\n"),
            "[config]\nttysiz=0\n[Startup]\nViewPointServer=2\nmaxconsolelogsize=100000\nDefaultPort=1972\n"
            "[Shadowing]\n");
}

TEST_F(System312, TakesTheSecondFieldOfTheNationalTables) {
  const std::string head = "[config]\nttysiz=0\nnlstab=";
  EXPECT_EQ(system312(head + "4,20\n"), head + "20\n");
  EXPECT_EQ(system312(head + "4\n"), head + "0\n");
  EXPECT_EQ(system312(head + "4,\n"), head + "0\n");
  EXPECT_EQ(system312(head + "4,20,5\n"), head + "20\n");
}

TEST_F(SystemLadder, RunsOnlyItsLastStepFor311) {
  given("[config]\nttysiz=0\n");
  convertsystem("3.11");
  EXPECT_EQ(lines(), "[config]\nttysiz=0\n[Startup]\nmaxconsolelogsize=100000\nDefaultPort=1972\n");
}

TEST_F(SystemLadder, ChangesNothingForLaterAndUnknownVersions) {
  for (const char* version : {"3.12", "3.13", "5.45", "", "2.2", "3.11\r"}) {
    given("[config]\n[SQL]\n");
    convertsystem(version);
    EXPECT_EQ(lines(), "[config]\n[SQL]\n") << version;
  }
}

TEST_F(SystemLadder, RunsAllItsStepsInOrderForTheOldestVersion) {
  given("[config]\noverview=A~OpenVMS~2.0\n");
  convertsystem("2.0");
  EXPECT_EQ(lines(),
            "[config]\noverview=A~VMS~2.0\nnetdirtabsiz=2048\nimplheap=16384,65536\nrbufsiz=8,32\nttysiz=0\n"
            "[Com]\nCom=OFF\n[Startup]\nJobServers=0\nmaxconsolelogsize=100000\nDefaultPort=1972\n");
}

TEST_F(SystemLadder, HasSixSteps) {
  const std::string_view versions[] = {"2.02", "2.1", "3.0", "3.1", "3.11", "3.12"};
  ASSERT_EQ(systemladder.size(), std::size(versions));
  for (std::size_t n = 0; n < std::size(versions); ++n) EXPECT_EQ(systemladder[n].version, versions[n]);
}

}  // namespace

}  // namespace tolvane::test
