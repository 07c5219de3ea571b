// How the engine follows the compare list that a job writes beside it.

#include <gmock/gmock.h>

#include "engines/common/CompareList.h"
#include "scenarios/House.h"
#include "util/date_text.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;

std::string Line(std::string_view path, std::string_view hour) {
  const std::string day = "/01-31-2026 ";
  return std::string{path} + "/5" + day + std::string{hour} + ":00:00" + day + "11:00:00" + day +
         "09:00:00\r\n";
}

struct ListCase {
  const char* story;
  bool job_traces;
  std::string first, whole;  // what is there at the start and after 25 minutes
  std::vector<std::string> files;
};

TEST(GrowingListTest, IsReadOnceAndForAsLongAsTheJobLives) {
  const std::string a = Line("C:\\a", "10");
  const std::string b = Line("C:\\b", "10");
  for (const ListCase& row :
       {ListCase{"a walk that finds nothing for 25 minutes", true, a, a + b, {"C:\\a 10", "C:\\b 10"}},
        ListCase{"a job that is gone", false, a, a + b, {"none"}},
        ListCase{"half a line is no line", true, a + "C:\\b/", a + b, {"C:\\a 10", "C:\\b 10"}},
        ListCase{"the list of the job before, as long as the new one",
                 true,
                 a + b,
                 Line("C:\\a", "12") + b,
                 {"C:\\a 12", "C:\\b 10"}},
        ListCase{"the longer list of the job before", true, b + b + b, a, {"C:\\a 10"}}}) {
    DueHouse house;
    house.WriteShared("Scheduled", "ann");
    const std::string name = "TempCom\\CompareListInput1.txt";
    house.PutText(name, row.first);
    house.WriteProfile("BackupStatus", "CompareListCount", "0");
    house.WriteProfile("BackupStatus", "StatusCheckCount", "0");
    std::function<void()> trace = [&] {
      house.PutText("ScheduleTraceFile.txt", "");
      house.machine.After(1min, trace);
    };
    if (row.job_traces) trace();
    house.machine.After(25min, [&] {
      house.PutText(name, row.whole);
      house.WriteProfile("BackupStatus", "StatusCheckCount", "1");
    });
    engines::Client client(house.machine.machine(), House::kInstall);
    ASSERT_TRUE(client.Load());
    const auto part = engines::CompareList(client).NextPart([] { return false; });
    std::vector<std::string> files;
    if (!part) files.push_back("none");
    for (const auto& file : part ? part->files : std::vector<engines::Candidate>{}) {
      files.push_back(file.path + " " + FormatDate("HH", file.modified));
    }
    EXPECT_EQ(files, row.files) << row.story;
    EXPECT_LT(house.machine.Elapsed(), row.job_traces ? 26min : 11min) << row.story;
    // Two looks before and after each growth, and one at the whole to make sure.
    const std::size_t reads = house.machine.CallsMatching("Files.ReadPart " + house.UserPath(name)).size();
    EXPECT_LE(reads, row.first.ends_with("/") ? 10000U : 9U) << row.story;
  }
}

}  // namespace
}  // namespace ondura
