#include <random>

#include "mail_house.h"
#include "reporting/mail_encoding.h"
#include "util/separators.h"
#include "util/text.h"

namespace ondura {
namespace {

using namespace std::string_literals;

class LogExtractTest : public MailHouse {
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

struct ClosingCase {
  const char* story;
  std::vector<std::string> lines;
  const char* every_line;  // what is put behind the subject
  const char* summary;
};

TEST_F(LogExtractTest, TheSubjectGetsTheFiguresOfTheLastClosingLine) {
  const auto at = [](std::size_t index, std::size_t highest) {
    std::vector<std::string> lines(highest + 1, "x");
    lines[index] = "Backup Completed [1]";
    return lines;
  };
  const std::vector<ClosingCase> cases{
      {"the last of two runs",
       {"Backup Completed [1]", "Backup Completed     [2] [3]", ""},
       "[2] [3]",
       "[2] [3]"},
      {"blanks and letter case", {"  backup CANCELED by [x]", ""}, "[x]", "[x]"},
      {"not at the line's start", {"No Backup Completed [1]", ""}, "", ""},
      {"a hard stop", {"backed UP files, Hard Stop [h]", ""}, "[h]", ""},
      {"a cut-off", {"cut off, BACKED up files [c]", ""}, "", "[c]"},
      {"no figures end the search too", {"Backup Completed [1]", "Backup Canceled", ""}, "", ""},
      {"the last line does not count", {"x", "Backup Completed [1]"}, "", ""},
      {"one line without an end", {"Backup Completed [1]"}, "", ""},
      {"a short log's first line", at(0, 15), "[1]", "[1]"},
      {"a long log's eleventh line", at(10, 16), "[1]", "[1]"},
      {"a long log's tenth line", at(9, 16), "", ""},
  };
  for (const ClosingCase& one : cases) {
    PutLog(Join(one.lines, "\r\n"));
    for (const bool every_line : {true, false}) {
      values_.MailSubject = "S";
      Extract(every_line);
      EXPECT_EQ(values_.MailSubject, "S"s + (every_line ? one.every_line : one.summary)) << one.story;
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
  // 99 lines of 202 bytes and the mark, for what is behind a terminator is left out.
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

// The whole file read and split, and walked backwards.
struct PlainWalk {
  std::string text;
  std::string sleeps;
  int pumps = 1;

  PlainWalk(std::string_view bytes, bool every_line) {
    const auto lines = Split(FromUtf16(bytes), "\r\n");
    std::size_t work_file_bytes = 2;
    for (std::size_t index = lines.size(); lines.size() > 1 && index-- > 0;) {
      ++pumps;
      const std::string cut = TrimAtTerminator(lines[index]);
      if (!Trim(cut).empty()) {
        int times = every_line ? 1 : 0;
        for (const char* summary : {"backed up files", "number of files found to be in sync :",
                                    "number of files considered for backup:"}) {
          if (!every_line && ToLower(lines[index]).find(summary) != std::string::npos) ++times;
        }
        for (; times > 0; --times) {
          text.insert(0, URLEncodeWebd(lines[index]) + "\r\n");
          work_file_bytes += 2 * (Utf16Length(Trim(cut)) + 2);
        }
        if (work_file_bytes >= 20000) break;
      }
      if (index % 50 == 0) sleeps += "1;";
    }
  }
};

TEST_F(LogExtractTest, ReadsFromTheEndWhatTheWholeFileWouldGive) {
  const std::vector<std::string> pool{"",
                                      "   ",
                                      "x",
                                      "Backed up Files : 7",
                                      "number of files considered for backup: \xF0\x9F\x98\x80",
                                      "\xEF\xBB\xBFmark",
                                      "a\rb",
                                      "a\nb",
                                      "\r",
                                      "\n",
                                      "a\0Backed up files"s,
                                      "\0x"s,
                                      "\xE0\xB4\x85\xE0\xA8\x80\xE4\x84\x80"};
  machine_.journal().RecordAlso("Clock.Sleep");
  machine_.journal().RecordAlso("MessagePump.Pump");
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
    for (const bool every_line : {true, false}) {
      machine_.ClearCalls();
      const std::string got = Extract(every_line);
      const PlainWalk want(bytes, every_line);
      EXPECT_TRUE(got == want.text) << "seed " << seed << " every line " << every_line;
      std::string sleeps;
      for (const std::string& call : machine_.CallsMatching("Clock.Sleep ")) sleeps += call.substr(12) + ";";
      EXPECT_EQ(sleeps, want.sleeps) << "seed " << seed;
      EXPECT_EQ(machine_.CallsMatching("MessagePump.Pump").size(), static_cast<std::size_t>(want.pumps));
    }
  }
}

// A log as long as wanted that is nowhere kept: one line again and again.
class LongLog : public ForwardingFiles {
 public:
  LongLog(Files& next, std::string_view path, std::string_view line, std::uint64_t lines)
      : ForwardingFiles(next),
        path_(path),
        line_(ToUtf16(line) + ToUtf16("\r\n")),
        size_(line_.size() * lines) {}

  bool Exists(std::string_view path) override { return path == path_ || ForwardingFiles::Exists(path); }
  std::optional<std::uint64_t> Size(std::string_view path) override {
    return path == path_ ? size_ : ForwardingFiles::Size(path);
  }
  std::optional<std::string> Read(std::string_view path) override {
    EXPECT_NE(path, path_);
    return ForwardingFiles::Read(path);
  }
  std::optional<std::string> ReadPart(std::string_view, std::uint64_t offset, std::size_t limit) override {
    largest_read = std::max(largest_read, limit);
    std::string part;
    while (part.size() < limit + line_.size()) part += line_;
    return part.substr(offset % line_.size(), std::min<std::uint64_t>(limit, size_ - offset));
  }

  std::size_t largest_read = 0;

 private:
  std::string path_;
  std::string line_;
  std::uint64_t size_;
};

TEST_F(LogExtractTest, ALongLogIsReadInSmallParts) {
  struct Case {
    bool every_line;
    std::uint64_t lines;
    std::size_t taken_bytes;
  };
  const std::string line = "Backup Completed     [Figures : 00000000000000000000000000000000000000000]";
  for (const auto& [every_line, lines, taken_bytes] :
       {Case{true, 1'000'000, std::size_t{132} * 98}, Case{false, 20'000, 0}}) {
    LongLog files(machine_.machine().files, kLog, line, lines);
    const Machine& all = machine_.machine();
    const Machine machine{all.clock,   all.pump,      files,        all.folders,   all.watches,
                          all.drives,  all.profiles,  all.registry, all.processes, all.system,
                          all.locale,  all.code_page, all.internet, all.crypto,    all.services,
                          all.desktop, all.power,     all.names,    all.mutexes,   all.continuous_backup,
                          all.web};
    LogExtract extract(machine, installation_, values_);
    const std::string text = every_line ? extract.ReadLinesfromtracefiles(kLog)
                                        : extract.ReadLinesfromtracefilesWithoutLogExtract(kLog);
    EXPECT_EQ(text.size(), taken_bytes);
    EXPECT_LE(files.largest_read, std::size_t{1} << 20);
  }
  EXPECT_EQ(values_.MailSubject, line.substr(21) + line.substr(21));
}

}  // namespace
}  // namespace ondura
