#include <random>

#include "ReportingHouse.h"
#include "reporting/LinesFromEnd.h"
#include "reporting/mail_encoding.h"
#include "text/text.h"

namespace ondura {
namespace {

using namespace std::string_literals;

class LogExtractTest : public ReportingHouse {
 protected:
  std::string Extract(bool every_line) {
    return every_line ? log_extract_.ReadLinesfromtracefiles(kLog)
                      : log_extract_.ReadLinesfromtracefilesWithoutLogExtract(kLog);
  }
};

TEST(MailEncoding, KeepsDigitsLettersAndSlashesAndPadsNothing) {
  EXPECT_EQ(URLEncodeWebd("/09:@AZ[`az{. -"), "/09%3A%40AZ%5B%60az%7B%2E%20%2D");
  EXPECT_EQ(URLEncodeWebd("\tt\xC3\xBC\n"), "%9t%C3%BC%A");
  EXPECT_EQ(URLEncodeWebd("   "), "");
  EXPECT_EQ(UTF8_Encode("\xC3\xBC"), (std::vector<std::uint8_t>{0xC3, 0xBC}));
}

TEST_F(LogExtractTest, TheSubjectGetsTheFiguresOfTheLastClosingLine) {
  const auto lines_around = [](std::size_t before, std::size_t after) {
    const auto lines = [](std::size_t count) { return Join(std::vector<std::string>(count, "x\n"), ""); };
    return lines(before) + "Backup Completed [1]\n" + lines(after);
  };
  // What is put after the subject where every line is taken and where the summary is.
  for (const auto& [story, lines, every_line, summary] : std::vector<std::array<std::string, 4>>{
           {"the last of two runs", "Backup Completed [1]\nBackup Completed     [2] [3]\n", "[2] [3]",
            "[2] [3]"},
           {"blanks and letter case", "  backup CANCELED by [x]\n", "[x]", "[x]"},
           {"not at the line's start", "No Backup Completed [1]\n", "", ""},
           {"a hard stop", "backed UP files, Hard Stop [h]\n", "[h]", ""},
           {"a cut-off", "cut off, BACKED up files [c]\n", "", "[c]"},
           {"no figures end the search too", "Backup Completed [1]\nBackup Canceled\n", "", ""},
           {"the last line does not count", "x\nBackup Completed [1]", "", ""},
           {"one line without an end", "Backup Completed [1]", "", ""},
           {"a short log's first line", lines_around(0, 14), "[1]", "[1]"},
           {"a long log's eleventh line", lines_around(10, 5), "[1]", "[1]"},
           {"a long log's tenth line", lines_around(9, 6), "", ""}}) {
    PutLog(ReplaceAll(lines, "\n", "\r\n"));
    for (const bool takes_every_line : {true, false}) {
      values_.MailSubject = "S";
      Extract(takes_every_line);
      EXPECT_EQ(values_.MailSubject, "S" + (takes_every_line ? every_line : summary)) << story;
    }
  }
}

TEST_F(LogExtractTest, ASummaryLineIsTakenOnceForEachTextItHolds) {
  PutLog(
      "z\r\nBACKED up Files 1\r\nnumber of files considered for backup: 2 backed up files\r\n"
      "Number of files found to be in sync : 3\r\nNumber of files found to be in sync: 4\r\n");
  EXPECT_EQ(Extract(false),
            "BACKED%20up%20Files%201\r\n"
            "number%20of%20files%20considered%20for%20backup%3A%202%20backed%20up%20files\r\n"
            "number%20of%20files%20considered%20for%20backup%3A%202%20backed%20up%20files\r\n"
            "Number%20of%20files%20found%20to%20be%20in%20sync%20%3A%203\r\n");
}

TEST_F(LogExtractTest, TheWorkFileStopsTheWalkAt20000BytesWithItsMark) {
  // 99 lines of 202 bytes and the mark, since what comes after a terminator is left out.
  std::string log;
  for (int i = 0; i < 150; ++i) log += std::string(99, 'x') + "\0y\r\n"s;
  PutLog(log);
  std::size_t most_bytes = 0;
  machine_.OnPump(
      [&] { most_bytes = std::max(most_bytes, machine_.FileBytes(kWorkFile).value_or("").size()); });
  EXPECT_EQ(Extract(true).size(), std::size_t{99} * 104);
  EXPECT_EQ(most_bytes, 2U + 98 * 202);
  EXPECT_EQ(machine_.FileBytes(kWorkFile), std::nullopt);
  machine_.Fail("Files.Append", CallJournal::kAlways);
  EXPECT_EQ(Extract(true).size(), std::size_t{150} * 104) << "without the work file the whole log is taken";
}

TEST_F(LogExtractTest, FailuresLeaveAnEmptyTextAndNoWorkFile) {
  machine_.PutFile(kWorkFile, "another's");
  EXPECT_EQ(Extract(true), "");
  EXPECT_EQ(machine_.FileBytes(kWorkFile), "another's") << "without a log it is left out of it";
  PutLog("one line without an end");
  EXPECT_EQ(Extract(true), "");
  PutLog("Backup Completed [1]\r\nx\r\n");
  machine_.Fail("Files.ReadPart");
  EXPECT_EQ(Extract(true), "");
  EXPECT_EQ(values_.MailSubject, "");
  EXPECT_EQ(machine_.FileBytes(kWorkFile), std::nullopt);
}

TEST_F(LogExtractTest, AnAppendedLineIsTrimmedAndMakesFolderAndFile) {
  log_extract_.AppendLogAttach("  t\xC3\xBCr ");
  log_extract_.AppendLogAttach("");
  EXPECT_EQ(machine_.FileBytes(kWorkFile), std::string{kUtf16Mark} + ToUtf16("t\xC3\xBCr\r\n\r\n"));
}

TEST_F(LogExtractTest, LinesWithoutTextAreLeftOutAndTheWalkListensAndRests) {
  std::string log = "a\r\n";
  for (int i = 0; i < 50; ++i) log += "   \r\n\0x\r\n"s;
  PutLog(log + "z");
  int pumps = 0;
  machine_.OnPump([&] { ++pumps; });
  EXPECT_EQ(Extract(true), "a\r\nz\r\n");
  EXPECT_EQ(pumps, 1 + 102);
  EXPECT_EQ(machine_.Elapsed(), std::chrono::milliseconds{3}) << "at the lines 100, 50 and 0";
}

TEST_F(LogExtractTest, ReadsFromTheEndWhatTheWholeFileWouldGive) {
  const std::vector<std::string> pool{"",      "   ",
                                      "x",     "\xEF\xBB\xBFmark",
                                      "a\rb",  "a\nb",
                                      "\r",    "\n",
                                      "a\0b"s, "\xE0\xB4\x85\xE0\xA8\x80\xE4\x84\x80"};
  for (unsigned seed = 0; seed < 60; ++seed) {
    std::mt19937 random(seed);
    std::string text;
    for (auto lines = random() % 160; lines > 0; --lines) text += pool[random() % pool.size()] + "\r\n";
    // Line ends and halves of characters on both sides of a block's border, seen from either end.
    const std::string filler(128 * 1024 - 19 + seed / 3, ' ');
    if (seed % 3 == 1) text += filler + "\xF0\x9F\x98\x80\r\nx\xF0\x9F\x98\x80\xF0\x9F\x98\x80\r\n";
    if (seed % 3 == 2)
      text = Join({filler, "\xF0\x9F\x98\x80y", std::string(2 * filler.size(), ' '), text}, "\r\n");
    if (seed % 3 != 1) text += pool[random() % pool.size()];
    const std::string bytes =
        (seed % 4 == 0 ? "" : std::string{kUtf16Mark}) + ToUtf16(text) + (seed % 5 == 0 ? "o" : "");
    machine_.PutFile(kLog, bytes);
    LinesFromEnd from_end(machine_.machine().files, kLog);
    std::vector<std::string> lines(static_cast<std::size_t>(from_end.HighestIndex() + 1));
    for (auto line = lines.rbegin(); line != lines.rend(); ++line)
      *line = from_end.Previous().value_or("lost");
    EXPECT_TRUE(lines == Split(FromUtf16(bytes), "\r\n")) << "seed " << seed;
    EXPECT_EQ(from_end.Previous(), std::nullopt);
  }
}

TEST_F(LogExtractTest, ALongLogIsReadInSmallParts) {
  std::string log;
  for (int i = 0; i < 20'000; ++i)
    log += "Backup Completed     [Figures : 00000000000000000000000000000000000000000]\r\n";
  PutLog(log);
  EXPECT_EQ(Extract(false), "");
  EXPECT_TRUE(machine_.CallsMatching("Files.Read C:").empty());
  EXPECT_GE(machine_.CallsMatching("Files.ReadPart ").size(), 2 * machine_.FileBytes(kLog)->size() >> 20U);
}

}  // namespace
}  // namespace ondura
