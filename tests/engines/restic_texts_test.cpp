// What restic says, and what the engine takes it for. The texts are as restic 0.14 and ssh print them.

#include "engines/restic/ResticProgram.h"
#include "engines/restic/exclude_patterns.h"
#include "engines/restic/restic_errors.h"
#include "engines/restic/restic_messages.h"
#include "engines/restic/snapshot_files.h"

namespace ondura::engines {
namespace {

constexpr const char* kLock =
    "unable to create lock in backend: repository is already locked exclusively by PID 61 on nas by root "
    "(UID 0, GID 0)\n"
    "lock was created at 2026-11-23 21:28:35 (8s ago)\n";

TEST(ResticErrorsTest, WordsHaveAResult) {
  using Case = std::tuple<const char*, std::uint32_t, double, double>;
  for (const auto& [words, exit_code, entering, transferring] : {
           Case{"Fatal: wrong password or no key found", 1, -404, -404},
           Case{"anything", 12, -404, -404},
           Case{"Fatal: unable to open config file: stat /x/config: no such file or directory\nIs there a "
                "repository at the following location?\n/x",
                1, -416, -504},
           Case{"anything", 10, -416, -416},
           Case{"server response unexpected: 401 Unauthorized (401)", 1, -403, -403},
           Case{"subprocess ssh: ann@nas: Permission denied (publickey).\nFatal: unable to start the sftp "
                "session, "
                "error: EOF",
                1, -403, -403},
           Case{"subprocess ssh: Host key verification failed.\nFatal: unable to start the sftp session, "
                "error: EOF",
                1, -416, -416},
           Case{"subprocess ssh: ssh: connect to host 127.0.0.1 port 22: Connection refused", 1, -416, -504},
           Case{"Head \"https://nas/config\": x509: certificate signed by unknown authority", 1, -416, -416},
           Case{"proxyconnect tcp: dial tcp 10.0.0.9:3128: connect: connection refused", 1, -12008, -12008},
           Case{"Proxy Authentication Required", 1, -12009, -12009},
           Case{"Head \"https://nas/config\": Bad Gateway\nIs there a repository at", 1, -12010, -12010},
           Case{"Save(<data/1>) failed: write /x/data/1: no space left on device", 1, -432, -432},
           Case{"ssh command exited: exit status 255", 1, -416, -504},
           Case{kLock, 1, -434, -434},
           Case{kLock, 11, -434, -434},
           Case{"Fatal: unknown flag: --iexclude-file", 1, -431, -431},
           Case{"panic: something else", 2, -1, -1},
       }) {
    EXPECT_EQ(ResultOfWords(words, exit_code, ResticPhase::kEntering, "pc").number, entering) << words;
    EXPECT_EQ(ResultOfWords(words, exit_code, ResticPhase::kTransferring, "pc").number, transferring)
        << words;
  }
  EXPECT_EQ(ResultOfWords(kLock, 1, ResticPhase::kEntering, "NAS").number, -429) << "this machine's own lock";
  EXPECT_EQ(LockHolder(kLock), "nas");
}

TEST(ResticErrorsTest, OnlyAMissingRepositoryIsANewBeginning) {
  const std::string question = "\nIs there a repository at the following location?\n/x";
  EXPECT_TRUE(SaysNoRepository(
      "Fatal: unable to open config file: stat /x/config: no such file or directory" + question, 1));
  EXPECT_TRUE(SaysNoRepository("Fatal: unable to open config file: <config/> does not exist" + question, 1));
  EXPECT_FALSE(SaysNoRepository(
      "Fatal: unable to open config file: dial tcp: connect: connection refused" + question, 1));
  EXPECT_FALSE(SaysNoRepository("Fatal: wrong password or no key found", 1));
}

TEST(ResticMessagesTest, OnlyTheStatusOfTheRunHasFigures) {
  const auto parsed = [](const char* line) { return ParseResticMessage(line); };
  const auto status =
      parsed(R"({"message_type":"status","percent_done":0.5,"total_files":4,"files_done":2,"total_bytes":8,)"
             R"("bytes_done":3,"current_files":["/D/a","/D/b"]})");
  ASSERT_TRUE(status);
  EXPECT_EQ(std::get<ResticStatus>(*status).bytes_done, 3U);
  EXPECT_EQ(std::get<ResticStatus>(*status).current_file, "/D/a");
  for (const char* const line :
       {R"({"message_type":"status","action":"scan_finished","total_files":4})", "{", "[]", "words",
        R"({"message_type":"verbose_status","action":"removed","item":"/D/a"})"}) {
    EXPECT_FALSE(parsed(line)) << line;
  }
}

TEST(ExcludePatternsTest, AMarkStandsForItself) {
  EXPECT_EQ(ExcludeLine(R"(/l/D/a [b]*?\ $x )", true), R"(/l/D/a \[b\]\*\?\\ $$x[ ])");
  EXPECT_EQ(ExcludeLine(R"(D:\a [b]$x)", false), R"(D:\a [[]b]$$x)");
  EXPECT_EQ(ExcludeLine("/l/D/two\nlines", true), "");
}

TEST(SnapshotTest, ATimeMeansTheNewestThatIsNotLater) {
  const std::vector<ResticSnapshot> snapshots{{"aa11", "2026-11-20T22:05:10.5+01:00", {}, {}, {}},
                                              {"bb22", "2026-11-20T22:06:00+01:00", {}, {}, {}},
                                              {"cc33", "2026-11-22T01:00:00Z", {}, {}, {}}};
  for (const auto& [when, id] : {std::pair{"", "cc33"},
                                 {"latest", "cc33"},
                                 {"2026-11-20", "bb22"},
                                 {"2026-11-21", "bb22"},
                                 {"2026-11-20 22:05", "aa11"},
                                 {"2026-11-20 22:05:10", "aa11"},
                                 {"bb", "bb22"}}) {
    const ResticSnapshot* const picked = PickSnapshot(snapshots, when);
    ASSERT_NE(picked, nullptr) << when;
    EXPECT_EQ(picked->id, id) << when;
  }
  for (const char* const when : {"2026-11-19", "2026-11-20 22:05:09", "2026-13-40", "zz"}) {
    EXPECT_EQ(PickSnapshot(snapshots, when), nullptr) << when;
  }
}

TEST(SshCommandTest, NamesTheHostAsTheLocationDoes) {
  const std::string lead = "ssh -o BatchMode=yes";
  EXPECT_EQ(SshCommand("sftp:ann@nas:/srv/x", "", ""), lead + " ann@nas -s sftp");
  EXPECT_EQ(SshCommand("sftp://ann@nas:2222//srv/x", "/etc/c", "/l"),
            lead + " -E '/l' -F '/etc/c' -p 2222 ann@nas -s sftp");
  EXPECT_EQ(SshCommand("sftp://[::1]/x", "", ""), lead + " [::1] -s sftp");
}

}  // namespace
}  // namespace ondura::engines
