#include "schedule/DBaction.h"

#include "platform/forwarding.h"
#include "schedule/BackupSetStore.h"
#include "schedule/ResetDate.h"
#include "schedule/rewrite.h"
#include "schedule/schedule_header.h"
#include "schedule_house.h"

namespace ondura {
namespace {

using Lines = std::vector<std::string>;

TEST(ScheduleFile, IsOpenedOnceForAReadingAndLosesNoByteInARewrite) {
  ScheduleHouse house;
  std::string all_bytes = "a\bz";  // one backspace separates nothing
  for (int byte = 0; byte < 256; ++byte) {
    if (byte != '\b' && byte != '\r' && byte != '\n') all_bytes += static_cast<char>(byte);
  }
  const std::string bytes = "0\r\n3\b\b" + all_bytes + "\b\b11-14-2026 12:30:00\b\bt\b\b8\b\b" + all_bytes +
                            "\b\ba;b\b\bOPTION\b\bLOG\b\b202611141230\b\b6\b\b0111110\b\bmore\r\n";
  house.PutSchedule(bytes);
  house.schedule.DB_ReadSchData("");
  EXPECT_EQ(house.machine.Calls(), Lines{"Files.Read " + house.path});
  const ScheduleRecord& record = house.schedule.ScheduleTable.front();
  EXPECT_EQ(record.mailoption + record.maillog, "OPTIONLOG");
  EXPECT_EQ(record.daymask, "0111110\b\bmore");
  house.schedule.DB_WriteRecord();
  EXPECT_EQ(house.machine.FileBytes(house.path), bytes);
}

using FileCase = std::tuple<std::string, std::string, int, int>;

TEST(ScheduleFile, HoldsWhatItsHeaderLetsBeReadHoweverSpoiled) {
  const std::string due = Line("x", "202611141230");
  for (const auto& [header, lines, count, earliest] :
       std::vector<FileCase>{{"0\r\n", due, 1, 0},
                             {"1\r\n", due, 1, 0},
                             {"2\r\n", due, 1, 0},
                             {"3\r\n", due, 0, 0},
                             {"4\r\n", due, 0, 0},
                             {"5\r\n", due, 0, 0},
                             {"", due, 0, 0},
                             {"", "", 0, 0},
                             {"0", "", 0, 0},
                             {"\x7F\x45LF\1\2\n\n", "\n\b\b\b\b", 0, 0},
                             {"0\n", std::string("\0\b\b\xFF\n\b\b\b\n", 9), 2, 0},
                             {"0\r\n", due + "2\b\bdo", 2, 1},  // cut off in a record
                             {"0\r\n", Line("x", "202611141231") + due, 2, 1},
                             {"0\r\n", Line("x", "2027") + Line("y", "2026") + Line("z", "2026"), 3, 1},
                             {"0\r\n", due + Line("y", "1999999999999"), 2, 1},  // keys are compared as text
                             {"0\r\n", Line("x", "9") + Line("y", std::string{kNoOccurrenceKey}), 2, 0}}) {
    ScheduleHouse house;
    house.schedule.RecordCount = 7;
    house.PutSchedule(header + lines);
    EXPECT_EQ(house.schedule.DB_ReadSchData(""), earliest) << header << lines;
    EXPECT_EQ(house.schedule.RecordCount, count) << header << lines;
    EXPECT_EQ(house.schedule.ScheduleTable.size(), static_cast<std::size_t>(count) + 1);
    EXPECT_EQ(house.schedule.ScheduleTable.back(), ScheduleRecord{});
  }
}

TEST(ScheduleFile, LinesBeyondTheCountAreCarriedIntoTheRewrite) {
  ScheduleHouse house;
  std::string bytes = "0\r\n";
  for (int i = 0; i < 32800; ++i) bytes += Line(std::to_string(i), "2026");
  house.PutSchedule(bytes);
  house.schedule.DB_ReadSchData("");
  EXPECT_EQ(house.schedule.RecordCount, 32767);
  EXPECT_EQ(house.schedule.CountScheduleRecords(house.path), 32767);
  house.schedule.DB_WriteRecord();
  EXPECT_TRUE(house.machine.FileBytes(house.path) == bytes);
  house.PutSchedule("3\r\n" + Line("a", "1"));
  house.schedule.DB_ReadSchData("");
  house.schedule.DB_WriteRecord();
  EXPECT_EQ(house.machine.FileBytes(house.path), std::nullopt) << "lines of an earlier reading came back";
  bytes.assign(100'000'000, '\n');  // does not take all memory
  house.PutSchedule("0\r\n" + bytes);
  house.schedule.DB_ReadSchData("");
  EXPECT_EQ(house.schedule.RecordCount, 32767);
}

TEST(ScheduleFile, OnlyBlankedRecordsAreDroppedAndTheLastTakesTheFileAlong) {
  ScheduleHouse house;
  house.PutSchedule("1\r\n" + Line("a", "1", "2") + Line("  ", "2") + Line("c", "3", "4"));
  house.schedule.DB_ReadSchData("");
  house.schedule.schvTemp.nexttime = "soon";
  house.schedule.DB_WriteRecord();
  EXPECT_EQ(house.machine.FileBytes(house.path), "0\r\n" + Line("a", "1", "2") + Line("c", "3", "4"));
  EXPECT_EQ(house.TraceLines(), Lines{"11-14-2026 12:30:00  Next transfer time  soon"});
  for (ScheduleRecord& record : house.schedule.ScheduleTable) record.nexttime.clear();
  house.schedule.ScheduleFilePath = "C:\\data\\Ondurabob\\scheduleData.txt";
  house.schedule.DB_WriteRecord();
  EXPECT_EQ(house.schedule.ScheduleFilePath, house.path);
  EXPECT_EQ(house.machine.FileBytes(house.path), std::nullopt);
}

TEST(ScheduleFile, ARewriteThatFailsOrCantBeLookedAtKeepsTheRecords) {
  const std::string bytes = "0\r\n" + Line("a", "1") + Line("b", "2");
  const std::vector<std::function<void(CallJournal&)>> troubles{
      [](CallJournal& journal) { journal.Fail("Files.Write "); },
      [](CallJournal& journal) { journal.Tear("Files.Write "); },
      [](CallJournal& journal) { journal.Fail("Files.Read ", 2); }};
  for (const auto& trouble : troubles) {
    ScheduleHouse house;
    house.PutSchedule(bytes);
    house.schedule.DB_ReadSchData("");
    trouble(house.machine.journal());
    house.schedule.DB_WriteRecord();
    EXPECT_EQ(house.machine.FileBytes(house.path), bytes);
    EXPECT_EQ(house.machine.UnfiredFaults(), Lines{});
  }
}

// A file that can't be replaced is written in place, which a full disk cuts short.
struct ShortenedWrite : ForwardingFiles {
  using ForwardingFiles::ForwardingFiles;
  bool Write(std::string_view path, std::string_view bytes, IfPresent if_present) override {
    const bool is_first = std::exchange(is_first_, false);
    return ForwardingFiles::Write(path, is_first ? bytes.substr(0, 1) : bytes, if_present) && !is_first;
  }
  bool is_first_ = true;
};

TEST(ScheduleFile, ARewriteThatFailsIsToldAndPutBackIfCutShort) {
  ScheduleHouse house;
  house.PutSchedule("0\r\nold");
  ShortenedWrite files{house.machine.machine().files};
  EXPECT_FALSE(RewriteOrPutBack(files, house.path, "1\r\nnew"));
  EXPECT_EQ(house.machine.FileBytes(house.path), "0\r\nold");
  house.machine.journal().Fail("Files.Write ");
  EXPECT_FALSE(RewriteOrPutBack(house.machine.machine().files, house.path, "0"));
  EXPECT_TRUE(RewriteOrPutBack(house.machine.machine().files, house.path, "0"));
}

TEST(ScheduleFile, ATableByKeyIsBlankAndSelectsWithinTheCountAlone) {
  ScheduleHouse house;
  house.PutSchedule("0\r\n" + Line("a", "1") + Line("b", "2"));
  house.schedule.DB_ReadSchData("");
  for (const auto& [index, nexttime] : {std::pair{-1, ""}, {0, "a"}, {1, "b"}, {2, ""}}) {
    house.schedule.SelectedRecord = static_cast<std::int16_t>(index);
    const ScheduleRecord* const selected = house.schedule.Selected();
    EXPECT_EQ(selected ? selected->nexttime : "", nexttime) << index;
    EXPECT_EQ(selected == nullptr, *nexttime == '\0') << index;
  }
  EXPECT_EQ(house.schedule.DB_ReadSchData("2"), 0);
  EXPECT_EQ(house.schedule.RecordCount, 2);
  EXPECT_EQ(house.schedule.CountScheduleRecords(house.path), 2);
  EXPECT_EQ(house.schedule.ScheduleTable, std::vector<ScheduleRecord>(2));
  house.schedule.DB_ReadSchData("");
  house.schedule.RecordCount = 1;
  house.schedule.DB_WriteRecord();
  EXPECT_EQ(house.machine.FileBytes(house.path), "0\r\n" + Line("a", "1"));
}

TEST(ScheduleFile, LinesAreReadByKeyOnlyBehindTheHeaderOfTheFileInWork) {
  ScheduleHouse house;
  Lines lines{"old"};
  house.PutSchedule("0\r\n21\b\ba\r\n4");
  EXPECT_TRUE(house.schedule.DB_ReadRecord("21", house.path, lines));
  EXPECT_FALSE(house.schedule.DB_ReadRecord("2", house.path, lines));
  EXPECT_FALSE(house.schedule.DB_ReadRecord("4", house.path, lines));
  EXPECT_EQ(lines, Lines{"old"});
  EXPECT_TRUE(house.schedule.DB_ReadRecord("", house.path, lines));
  EXPECT_EQ(lines, (Lines{"21\b\ba", "4"}));
  house.machine.PutFile("C:\\other.txt", "0\r\n" + Line("a", "1"));
  EXPECT_FALSE(house.schedule.DB_ReadRecord("", "C:\\other.txt", lines));
}

TEST(ScheduleHeader, IsOneByteWhateverTheKindAndIsResetFromTheWordsOfRunningJobs) {
  ScheduleHouse house;
  Files& files = house.machine.outside().files;
  house.scheduler.sch_changefiledata("1");
  EXPECT_EQ(house.machine.FileBytes(house.path), std::nullopt) << "a missing file is not made";
  EXPECT_FALSE(ResetStaleHeader(files, house.path));
  const std::string records = Line("a", "1");
  for (const auto& [story, recordno, before, written, reset] : std::vector<std::array<std::string, 5>>{
           {"idle", "0", "3\r\n", "0\r\n", "0\r\n"},
           {"a kind", "5", "0\r\n", "5\r\n", "0\r\n"},
           {"an unknown kind is a file job", "6", "0\r\n", "1\r\n", "0\r\n"},
           {"so is one of two characters", "12", "0\r\n", "1\r\n", "0\r\n"},
           {"and none at all", "", "0\r\n", "1\r\n", "0\r\n"},
           {"a short line end has room", "2", "0\n", "2\n", "0\n"},
           {"a word that was never ours is overwritten", "x", "x\r\n", "1\r\n", "0\r\n"},
           {"a longer word has no room", "2", "10\r\n", "10\r\n", "10\r\n"},
           {"nor has a record in its place", "2", records, records, records}}) {
    house.PutSchedule(before + records);
    house.scheduler.sch_changefiledata(recordno);
    EXPECT_EQ(house.machine.FileBytes(house.path), written + records) << story;
    ResetStaleHeader(files, house.path);
    EXPECT_EQ(house.machine.FileBytes(house.path), reset + records) << story;
  }
  for (const char* cut_off : {"", "0"}) {
    house.PutSchedule(cut_off);
    house.scheduler.sch_changefiledata("4");
    EXPECT_EQ(house.machine.FileBytes(house.path), "4\r\n");
  }
  house.PutSchedule("6\r\n");
  EXPECT_FALSE(ResetStaleHeader(files, house.path));
}

TEST(BackupSet, IsReplacedByEachReadingAndCopiedForTheHelpers) {
  ScheduleHouse house;
  BackupSetStore store{house.machine.machine(), house.installation, house.trace};
  store.BackupSetFilePath = house.installation.UserFile(kBackupSetFileName);
  house.machine.PutFile(store.BackupSetFilePath, "C:\\M\xE4rz\r\nOxExchBrick;a\r\nOXEXCHBRICK;b");
  store.DB_ReadBackdata();
  store.DB_ReadBackdata();
  EXPECT_EQ(store.BackupSetLines, (Lines{"C:\\M\xC3\xA4rz", "OxExchBrick;a", "OXEXCHBRICK;b"}));
  house.machine.PutFile(store.BackupSetFilePath, "");
  store.DB_ReadBackdata();
  EXPECT_EQ(house.machine.FileBytes("C:\\data\\BackupSetData.txt"), "");
  store.BackupSetLines = {"old"};
  store.DB_ReadBackdataNew("C:\\none.txt", store.BackupSetLines);
  EXPECT_EQ(store.BackupSetLines, Lines{});
  for (const auto& [lines, trace] :
       {std::pair{1'000'000, Lines{}},
        {1'000'001, {"11-14-2026 12:30:00  Backup set lines beyond 1000000 are left out : C:\\many.txt"}}}) {
    house.machine.PutFile("C:\\many.txt", std::string(static_cast<std::size_t>(lines), '\n'));
    store.DB_ReadBackdataNew("C:\\many.txt", store.BackupSetLines);
    EXPECT_EQ(store.BackupSetLines.size(), 1'000'000U);
    EXPECT_EQ(house.TraceLines(), trace);
  }
}

TEST(LocalDatabaseReset, ComesOnItsDayAndIsSetAWeekAhead) {
  ScheduleHouse house;
  const ProfileStore store{house.machine.machine(), house.installation};
  ResetDate reset{house.machine.machine().clock, store, house.transfer};
  const auto stored = [&](std::string_view key) { return store.ReadProfileValue("Tolmera", key); };
  using Row = std::tuple<const char*, const char*, const char*, bool>;
  for (const auto& [day, month, year, has_come] :
       {Row{"14", "11", "2026", true}, Row{"15", "11", "2026", false}, Row{"30", "10", "2026", true},
        Row{"1", "1", "2027", false}, Row{"", "", "", true}, Row{"15", "", "", false},
        Row{"x", "y", "z", true}}) {
    house.transfer.Trf_WriteUserProfileDefault("Tolmera", "TrayIconDay", day);
    house.transfer.Trf_WriteUserProfileDefault("Tolmera", "TrayIconMonth", month);
    house.transfer.Trf_WriteUserProfileDefault("Tolmera", "TrayIconYear", year);
    EXPECT_EQ(reset.IsSet(), day[0] != '\0');
    EXPECT_EQ(reset.bCheckDate(), has_come) << day;
  }
  house.machine.SetNow(Time(2026, 12, 28, 23, 59, 59));
  reset.SetNext();
  EXPECT_EQ(stored("TrayIconDay") + stored("TrayIconMonth") + stored("TrayIconYear"), "412027");
  EXPECT_FALSE(reset.bCheckDate());
  house.machine.SetNow(Time(2027, 1, 4));
  EXPECT_TRUE(reset.bCheckDate());
}

}  // namespace
}  // namespace ondura
