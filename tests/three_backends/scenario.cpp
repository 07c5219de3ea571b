#include "scenario.h"

#include <array>
#include <chrono>
#include <stdexcept>
#include <vector>

#include "canonical.h"
#include "profile/ProductConfiguration.h"
#include "profile/Transfer.h"
#include "schedule/schedule_record.h"
#include "service/Component.h"
#include "util/date_text.h"
#include "util/text.h"
#include "util/text_files.h"

namespace ondura::scenario {

namespace {

using namespace std::chrono_literals;

struct User {
  const char* name;
  std::chrono::minutes due_before_now;  // the earliest occurrence is served first
};

constexpr std::array<User, 3> kUsers{{{"ann", 3min}, {"ben", 2min}, {"cat", 1min}}};

void Require(bool done, const std::string& what) {
  if (!done) throw std::runtime_error("the machine refused " + what);
}

// Sets the scene as installer and user interface do.
class Preparation {
 public:
  explicit Preparation(const Stage& stage) : stage_(stage), machine_(stage.outside) {
    installation_.ExeLocation = kInstall;
    installation_.VirtualPath = kData;
    installation_.ProductInstallationName = "Ondura";
    installation_.ProfileIniName = "\\Ondura.ini";
  }

  void Prepare(LocalTime now) {
    if (machine_.folders.Exists(kRoot)) {
      Require(machine_.folders.Remove("C:\\Scenario", Removal::kForce), "to clear the last run away");
    }
    MakeFolders("C:\\Scenario\\Install\\");
    MakeFolders("C:\\Scenario\\Data\\");
    stage_.put_programs();
    WriteConfiguration();
    WriteDocuments();
    std::string list;
    for (const User& user : kUsers) {
      list += std::string{user.name} + ";";
      AddUser(user.name, now - user.due_before_now);
    }
    Write("C:\\Scenario\\Data\\userlist.ini", list + "\r\n", Encoding::kCodePage);
    // The server has seen cat with another password.
    MakeFolders("C:\\Scenario\\Data\\Vault\\cat\\");
    WriteIni("C:\\Scenario\\Data\\Vault\\cat\\account.ini", "Rehearsal", "24", "-403");
  }

 private:
  void MakeFolders(const std::string& folder) {
    for (auto end = folder.find('\\', 3); end != std::string::npos; end = folder.find('\\', end + 1)) {
      const std::string part = folder.substr(0, end);
      if (!machine_.folders.Exists(part)) Require(machine_.folders.Make(part), "the folder " + part);
    }
  }

  void Write(const std::string& path, const std::string& text, Encoding encoding) {
    Require(TextFiles(machine_.files, machine_.code_page).Write(path, text, encoding), "the file " + path);
  }

  void WriteIni(const std::string& file, std::string_view section, std::string_view key,
                std::string_view value) {
    Require(machine_.profiles.WriteString({file, section, key}, value), "the file " + file);
  }

  void WriteConfiguration() {
    const ProductConfiguration configuration(machine_, installation_);
    const std::vector<std::pair<const char*, const char*>> values{
        {"ProductNumber", "3"}, {"ProductName", "Ondura"},           {"ProductInstallationName", "Ondura"},
        {"ExeGroup", "Scn"},    {"ProductCaption", "Ondura Backup"}, {"Language", "English"}};
    for (const auto& [key, value] : values) {
      WriteIni(installation_.DataFile("Configuration.ini"), "ProductInfo", configuration.StoredForm(key),
               configuration.StoredForm(value));
    }
    WriteIni(installation_.ExeLocation + "UserName.ini", "Registry", "VirtualPath", kData);
    const std::string shared = installation_.DataFile("UserName.ini");
    WriteIni(shared, "Tolmera", "Standard", "0");
    WriteIni(shared, "Tolmera", "Started", "0");
    WriteIni(shared, "ScanType", "DB", "0");
    // A run that begins just before the full hour is not to be taken for a missed one.
    WriteIni(shared, "Registry", "STARTMISSEDSCH", "1");
  }

  void WriteDocuments() {
    const std::string folder = "C:\\Scenario\\Docs\\";
    MakeFolders(folder + "Deep\\Deeper\\");
    MakeFolders(folder + "Excluded\\");
    MakeFolders("C:\\Scenario\\Elsewhere\\");
    Write(folder + "plain.txt", "plain\r\n", Encoding::kCodePage);
    Write(folder + "empty.txt", "", Encoding::kCodePage);
    Write(folder + "Grüße für März.txt", "umlauts\r\n", Encoding::kUtf16);
    Write(folder + "日本語.txt", "beyond the code page\r\n", Encoding::kUtf16);
    Write(folder + "Deep\\Deeper\\deep.txt", std::string(70, 'd'), Encoding::kCodePage);
    Write(folder + "not this one.txt", "excluded file\r\n", Encoding::kCodePage);
    Write(folder + "Excluded\\inside.txt", "in an excluded folder\r\n", Encoding::kCodePage);
    Write("C:\\Scenario\\Elsewhere\\alone.txt", "selected alone\r\n", Encoding::kCodePage);
    Write("C:\\Scenario\\Elsewhere\\unselected.txt", "left out\r\n", Encoding::kCodePage);
  }

  void AddUser(const std::string& name, LocalTime due) {
    installation_.CurrentUser = name;
    MakeFolders(installation_.UserFile(""));
    const Transfer transfer(machine_, installation_);
    transfer.Trf_WriteUserProfile("username", name);
    transfer.Trf_WriteUserProfile("password", "swordfish");
    transfer.Trf_WriteUserProfile("encpassword", "rosebud");
    transfer.Trf_WriteUserProfile("serverip", "localhost");
    transfer.Trf_WriteUserProfile("port", "11905");
    Write(installation_.UserFile("atbkupfolderlist.txt"),
          "C:\\Scenario\\Docs\\\r\nC:\\Scenario\\Elsewhere\\alone.txt\r\n", Encoding::kUtf16);
    Write(installation_.UserFile("atbkupExcludelist.txt"), "C:\\Scenario\\Docs\\Excluded\\\r\n",
          Encoding::kUtf16);
    Write(installation_.UserFile("atbkupExcludeFilePath.txt"), "C:\\Scenario\\Docs\\not this one.txt\r\n",
          Encoding::kUtf16);
    Write(installation_.UserFile("scheduleData.txt"), "0\r\n" + Daily(due) + "\r\n", Encoding::kCodePage);
  }

  static std::string Daily(LocalTime due) {
    ScheduleRecord record;
    record.recordno = "1";
    record.schname = "Nightly";
    record.nexttime = FormatDate(kStampPicture, due);
    record.schedtime = FormatDate("H:mm:ss", due);
    record.onceflag = "0";
    record.schtext = "every day";
    record.mailoption = "0";
    record.maillog = "0";
    record.sortkey = FormatDate("yyyymmdd", due) + FormatDate("HHmm", due);
    record.repeatkind = "6";
    record.daymask = "1111111";
    return LineOfRecord(record);
  }

  const Stage& stage_;
  const Machine& machine_;
  Installation installation_;
};

}  // namespace

void Prepare(const Stage& stage) {
  Preparation(stage).Prepare(std::chrono::floor<std::chrono::minutes>(stage.outside.clock.Now()));
}

void Run(const Stage& stage) {
  Component component(stage.component);
  component.controller().cont_InitialSch(kInstall);
  const auto tick_with_method = [&](std::string_view method) {
    component.transfer().Trf_WriteUserNameDBProfile("DB", method);
    component.controller().Cont_CheckStandardRunning();
  };
  tick_with_method("0");
  tick_with_method("1");
  tick_with_method("1");
  tick_with_method("1");  // nobody is due any more
}

std::string Show(const Stage& stage) {
  return CanonicalFiles(stage.outside, kData, stage.outside.clock.Now());
}

std::string Play(const Stage& stage) {
  Prepare(stage);
  Run(stage);
  return Show(stage);
}

}  // namespace ondura::scenario
