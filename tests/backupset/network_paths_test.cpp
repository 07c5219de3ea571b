#include "backupset/NetworkPaths.h"

#include "backup_set_house.h"
#include "backupset/CompareList.h"
#include "util/text.h"

namespace ondura {
namespace {

using testing::ElementsAre;

struct Network : BackupSetHouse {
  void PutShared(std::string_view key, std::string_view value) {
    machine.WriteIni("C:\\data\\UserName.ini", "Registry", key, value);
  }
  void PutMachineKey(std::string_view name, std::string_view value) {
    machine.PutRegistryValue({RegistryRoot::kLocalMachine, "Software\\Acme", name},
                             {RegistryType::kText, std::string{value}, 0});
  }

  NetworkPaths paths{machine.machine(), profile, trace};
};

struct CountCase {
  const char* count;
  std::size_t rows;
};

constexpr CountCase kCountCases[] = {{"", 0},
                                     {"0", 0},
                                     {"-3", 0},
                                     {"x", 0},
                                     {" 2 ", 2},
                                     {"2 drives", 0},
                                     {"2000000000", 10'000},
                                     {"99999999999999999999", 0}};

TEST(UNCPath, HasARowForEachEntryOfASensibleCount) {
  for (const CountCase& row : kCountCases) {
    SCOPED_TRACE(row.count);
    Network house;
    house.PutMachineKey("UNCCount", row.count);
    house.paths.ReadProfilefromRegistryUNCSch();
    EXPECT_EQ(house.paths.UNCPath().size(), row.rows);
    EXPECT_EQ(house.paths.UNCCount(), static_cast<std::int64_t>(row.rows));
  }
}

TEST(UNCPath, HoldsSixFieldsOfEachEntryFromEitherStore) {
  const std::string full = "Z:;\\\\srv\\sh;ann;secret;1;extra;seventh";
  const UNCEntry first{"Z:", "\\\\srv\\sh", "ann", "secret", "1", "extra"};
  const UNCEntry second{"Y:", "", "bob"};
  Network house;
  house.PutMachineKey("UNCCount", "2");
  house.PutMachineKey("UNC1", " " + full + " ");
  house.PutMachineKey("UNC2", "Y:;;bob");
  EXPECT_EQ(house.paths.ReadProfilefromRegistryUNCCountSch(), "2");
  house.paths.ReadProfilefromRegistryUNCSch();
  EXPECT_THAT(house.paths.UNCPath(), ElementsAre(first, second));

  house.PutShared("UNCCount", "3");
  house.PutShared("UNC1", "Y:;;bob");
  house.PutShared("UNC2", full);
  house.paths.ReadUNCTable();
  EXPECT_THAT(house.paths.UNCPath(), ElementsAre(second, first, UNCEntry{}));
  EXPECT_EQ(house.List("ScheduleTraceFile.txt"),
            "11-14-2026 12:30:00UNCCount : 3\r\nUNCPath(loopvar - 1, 1) : \r\n"
            "UNCPath(loopvar - 1, 1) : \\\\srv\\sh\r\nUNCPath(loopvar - 1, 1) : \r\n");
  EXPECT_EQ(house.machine.CallsMatching("ProfileFiles.ReadString *UNC2").size(), 1U);
  EXPECT_EQ(house.machine.CallsMatching("ProfileFiles.ReadString *UNC3").size(), 2U) << "an empty one again";
}

struct PairCase {
  const char* story;
  const char* target;
  const char* lines;
  const char* target_queue;
  const char* trace;
};

constexpr std::string_view kStamps = "/11-14-2026 12:30:00/11-14-2026 13:30:00/11-14-2026 11:30:00\r\n";
constexpr PairCase kPairCases[] = {
    {"the share is listed", "\\\\srv\\sh", "Z:\\b/2", "\\\\srv\\sh\\sub\\", "(no file)"},
    {"else the drive is", "\\\\gone\\sh\\", "Z:\\a/1", "\\\\gone\\sh\\s\\", "FindFirstFile = : 1\r\n"},
    {"one form is asked once", "Z:", "Z:\\a/1", "Z:\\s\\", "(no file)"}};

TEST(ScanMappedPair, ListsOneFormAndNamesBoth) {
  for (const PairCase& row : kPairCases) {
    SCOPED_TRACE(row.story);
    Network house;
    house.machine.PutFile("Z:\\a", "1");
    house.machine.PutFolder("Z:\\s");
    house.machine.PutFile("\\\\srv\\sh\\b", "12");
    house.machine.PutFolder("\\\\srv\\sh\\sub");
    const auto stream = house.machine.machine().files.OpenWriter("C:\\list", IfPresent::kReplace);
    FolderPairQueues queues;
    std::size_t index = 4;
    house.paths.ScanMappedPair(*stream, "Z:", row.target, queues, index);
    EXPECT_EQ(FromUtf16(*house.machine.FileBytes("C:\\list")), row.lines + std::string{kStamps});
    EXPECT_THAT(queues.source,
                ElementsAre(row.target_queue[0] == 'Z' || row.lines[3] == 'a' ? "Z:\\s\\" : "Z:\\sub\\"));
    EXPECT_THAT(queues.target, ElementsAre(row.target_queue));
    EXPECT_EQ(index, 5U);
    EXPECT_EQ(house.List("ScheduleTraceFile.txt"), row.trace);
  }
}

TEST(ScanMappedPair, TracesThatNeitherFormCanBeListed) {
  Network house;
  const auto stream = house.machine.machine().files.OpenWriter("C:\\list", IfPresent::kReplace);
  FolderPairQueues queues;
  std::size_t index = 0;
  house.paths.ScanMappedPair(*stream, "Z:", "\\\\gone\\sh", queues, index);
  EXPECT_EQ(house.List("ScheduleTraceFile.txt"), "FindFirstFile = : -1\r\n");
}

struct DriveCase {
  const char* story;
  const char* standard;
  std::vector<std::string> drives;
  bool is_blocked;
  bool check_made;
};

const DriveCase kDriveCases[] = {{"no drives", "0", {}, false, true},
                                 {"a fixed drive", "0", {"C:\\docs", "", "c:"}, false, true},
                                 {"a network drive", "0", {"C:", "", "N:\\x", ""}, true, true},
                                 {"an unknown drive", "0", {"Q:"}, true, true},
                                 {"every second entry is none", "0", {"C:", "N:", "C:", "Q:"}, false, true},
                                 {"the twin is in charge", "1", {"N:"}, false, false},
                                 {"nobody is known to be", "", {"N:"}, false, false}};

TEST(CheckServiceModeMappedDrive, KeepsTheServiceFromDrivesThatItDoesNotHave) {
  for (const DriveCase& row : kDriveCases) {
    SCOPED_TRACE(row.story);
    BackupSetHouse house;
    house.machine.disk().PutDrive("N:\\", DriveKind::kNetwork, 1);
    house.machine.WriteIni("C:\\data\\UserName.ini", "Tolmera", "Standard", row.standard);
    MappedDrives drives{house.machine.machine().drives, house.transfer};
    drives.drive_list() = row.drives;
    CompareList list{
        house.machine.machine(), house.installation, house.transfer, house.exclusions, drives, house.stop};
    EXPECT_EQ(list.Begin(), row.is_blocked ? BuildStart::kBlocked : BuildStart::kReady);
    EXPECT_EQ(drives.check_made(), row.check_made);
  }
}

}  // namespace
}  // namespace ondura
