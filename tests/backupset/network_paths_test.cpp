#include "backupset/NetworkPaths.h"

#include <map>

#include "backup_set_house.h"
#include "backupset/CompareList.h"
#include "text/text.h"

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

TEST(UNCPath, HasARowForEachEntryOfASensibleCount) {
  const std::map<std::string, std::size_t> rows{{" 2 ", 2}, {"2000000000", 10'000}};
  for (const char* count : {"", "0", "-3", "2 drives", "99999999999999999999", " 2 ", "2000000000"}) {
    Network house;
    house.PutMachineKey("UNCCount", count);
    house.paths.ReadProfilefromRegistryUNCSch();
    EXPECT_EQ(house.paths.UNCPath().size(), rows.contains(count) ? rows.at(count) : 0) << count;
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
  const char *story, *source, *target;
  const char* line;  // up to the stamps
  const char *queues, *trace;
};

constexpr PairCase kPairCases[] = {
    {"the share is listed", "Z:", "\\\\srv\\sh", "Z:\\b/2", "Z:\\sub\\ \\\\srv\\sh\\sub\\", "(no file)"},
    {"else the drive is", "Z:", "\\\\no\\", "Z:\\a/1", "Z:\\s\\ \\\\no\\s\\", "FindFirstFile = : 1\r\n"},
    {"one form is asked once", "Z:", "Z:", "Z:\\a/1", "Z:\\s\\ Z:\\s\\", "(no file)"},
    {"neither can be listed", "X:", "\\\\no", "", "", "FindFirstFile = : -1\r\n"}};

TEST(ScanMappedPair, ListsOneFormAndNamesBoth) {
  for (const PairCase& row : kPairCases) {
    SCOPED_TRACE(row.story);
    Network house;
    for (const char* file : {"Z:\\a", "\\\\srv\\sh\\b"})
      house.machine.PutFile(file, *file == 'Z' ? "1" : "12");
    for (const char* folder : {"Z:\\s", "\\\\srv\\sh\\sub"}) house.machine.PutFolder(folder);
    const auto stream = house.machine.machine().files.OpenWriter("C:\\list", IfPresent::kReplace);
    FolderPairQueues queues;
    std::size_t index = 4;
    house.paths.ScanMappedPair(*stream, row.source, row.target, queues, index);
    std::string line = row.line;
    if (!line.empty()) line += "/11-14-2026 12:30:00/11-14-2026 13:30:00/11-14-2026 11:30:00\r\n";
    EXPECT_EQ(FromUtf16(*house.machine.FileBytes("C:\\list")), line);
    std::vector<std::string> queued{queues.source.begin(), queues.source.end()};
    queued.insert(queued.end(), queues.target.begin(), queues.target.end());
    EXPECT_EQ(Join(queued, " "), row.queues);
    EXPECT_EQ(index, 5U);
    EXPECT_EQ(house.List("ScheduleTraceFile.txt"), row.trace);
  }
}

struct DriveCase {
  const char *story, *standard;
  std::vector<std::string> drives;
  bool is_blocked;
};

const DriveCase kDriveCases[] = {{"no drives", "0", {}, false},
                                 {"a fixed drive", "0", {"C:\\docs", "", "c:"}, false},
                                 {"a network drive", "0", {"C:", "", "N:\\x", ""}, true},
                                 {"an unknown drive", "0", {"Q:"}, true},
                                 {"every second entry is none", "0", {"C:", "N:", "C:", "Q:"}, false},
                                 {"the twin is in charge", "1", {"N:"}, false},
                                 {"nobody is known to be", "", {"N:"}, false}};

TEST(CheckServiceModeMappedDrive, KeepsTheServiceFromDrivesThatItDoesNotHave) {
  for (const DriveCase& row : kDriveCases) {
    SCOPED_TRACE(row.story);
    BackupSetHouse house;
    house.machine.disk().PutDrive("N:\\", DriveKind::kNetwork, 1);
    house.machine.WriteIni("C:\\data\\UserName.ini", "Tolmera", "Standard", row.standard);
    MappedDrives drives{house.machine.machine().drives, house.transfer};
    drives.drive_list() = row.drives;
    CompareList list(house.machine.machine(), house.installation, house.transfer, house.exclusions, drives,
                     house.stop, house.trace);
    EXPECT_EQ(list.Begin(), row.is_blocked ? BuildStart::kBlocked : BuildStart::kReady);
    EXPECT_EQ(drives.check_made(), *row.standard == '0');
  }
}

}  // namespace
}  // namespace ondura
