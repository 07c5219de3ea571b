#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "reporting/NotificationMail.h"
#include "reporting/WebDavControl.h"
#include "support/CheckedMachine.h"
#include "text/utf16.h"

namespace ondura {

// The user ann, and whatever reports on her jobs.
class ReportingHouse : public testing::Test {
 protected:
  static constexpr const char* kLog = "C:\\data\\Acmeann\\Session\\run.txt";
  static constexpr const char* kWorkFile = "C:\\data\\Acme\\TmpLogAttach.txt";
  static constexpr const char* kTrace = "C:\\data\\Acmeann\\ScheduleTraceFile.txt";

  ReportingHouse() {
    machine_.PutFolder("C:\\data\\Acmeann");
    machine_.SetNow(ToLocalTime({2026, 11, 14, 9, 5, 7}));
  }

  static Installation Ann() {
    Installation installation;
    installation.ExeLocation = "C:\\app\\";
    installation.VirtualPath = "C:\\data\\";
    installation.ProductInstallationName = "Acme";
    installation.ProductName = "Acme Backup";
    installation.ProductCaption = "Acme Online";
    installation.CurrentUser = "ann";
    return installation;
  }

  void PutLog(std::string_view text) { machine_.PutFile(kLog, std::string{kUtf16Mark} + ToUtf16(text)); }

  std::string TraceText() { return FromUtf16(machine_.FileBytes(kTrace).value_or("")); }

  void ExpectUtf16(std::string_view path, std::string_view text) {
    EXPECT_THAT(machine_.FileBytes(path), testing::Optional(std::string{kUtf16Mark} + ToUtf16(text))) << path;
  }

  // The body of the last post.
  std::string Posted() {
    const auto& posts = machine_.surroundings().web_requests;
    return posts.empty() ? "" : posts.back().body;
  }

  CheckedMachine machine_;
  Installation installation_ = Ann();
  Options options_{machine_.machine(), installation_};
  Trace trace_{options_, machine_.machine().clock};
  Transfer transfer_{machine_.machine(), installation_};
  ProfileStore store_{machine_.machine(), installation_};
  MachineFacts facts_{machine_.machine(), options_};
  MailValues values_;
  LogExtract log_extract_{machine_.machine(), installation_, values_};
  WebSecurity security_;
  WebDavControl web_{machine_.machine(), transfer_, options_, security_};
  HttpFunctions http_{machine_.machine(), installation_, web_, trace_};
  NotificationMail mail_{machine_.machine(), installation_, store_,  facts_, trace_,
                         log_extract_,       http_,         values_, "-414"};
};

}  // namespace ondura
