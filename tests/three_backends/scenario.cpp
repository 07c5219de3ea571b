#include "scenario.h"

#include <chrono>
#include <exception>
#include <iostream>
#include <stdexcept>

#include "profile/ProductConfiguration.h"
#include "profile/Transfer.h"
#include "service/Component.h"
#include "text/text.h"
#include "util/TextFiles.h"
#include "util/date_text.h"

namespace ondura::scenario {

namespace {

using namespace std::chrono_literals;

// Before the present minute; the earliest occurrence is served first.
constexpr std::pair<const char*, std::chrono::minutes> kUsersDue[] = {
    {"ann", 3min}, {"ben", 2min}, {"cat", 1min}};

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
    MakeFolders(kInstall);
    stage_.put_programs();
    WriteConfiguration();
    WriteDocuments();
    std::string list;
    for (const auto& [name, due_before_now] : kUsersDue) {
      list += std::string{name} + ";";
      AddUser(name, now - due_before_now);
    }
    Write(installation_.DataFile("userlist.ini"), list + "\r\n");
    // The server has seen cat with another password.
    Write(installation_.DataFile("Vault\\cat\\account.ini"), "[Rehearsal]\r\n24=-403\r\n");
  }

 private:
  void MakeFolders(const std::string& path) {
    for (auto end = path.find('\\', 3); end != std::string::npos; end = path.find('\\', end + 1)) {
      const std::string part = path.substr(0, end);
      if (!machine_.folders.Exists(part)) Require(machine_.folders.Make(part), "the folder " + part);
    }
  }

  void Write(const std::string& path, const std::string& text, Encoding encoding = Encoding::kCodePage) {
    MakeFolders(path);
    Require(TextFiles(machine_.files, machine_.code_page).Write(path, text, encoding), "the file " + path);
  }

  void WriteIni(const std::string& file, std::string_view section, std::string_view key,
                std::string_view value) {
    MakeFolders(file);
    Require(machine_.profiles.WriteString({file, section, key}, value), "the file " + file);
  }

  void WriteConfiguration() {
    const ProductConfiguration configuration(machine_, installation_);
    for (const auto& [key, value] : {std::pair{"ProductNumber", "3"},
                                     {"ProductName", "Ondura"},
                                     {"ProductInstallationName", "Ondura"},
                                     {"ExeGroup", "Scn"},
                                     {"ProductCaption", "Ondura Backup"},
                                     {"Language", "English"}}) {
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
    Write(folder + "plain.txt", "plain\r\n");
    Write(folder + "empty.txt", "");
    Write(folder + "Grüße für März.txt", "umlauts\r\n", Encoding::kUtf16);
    Write(folder + "日本語.txt", "beyond the code page\r\n", Encoding::kUtf16);
    Write(folder + "Deep\\Deeper\\deep.txt", std::string(70, 'd'));
    Write(folder + "not this one.txt", "excluded file\r\n");
    Write(folder + "Excluded\\inside.txt", "in an excluded folder\r\n");
    Write("C:\\Scenario\\Elsewhere\\alone.txt", "selected alone\r\n");
    Write("C:\\Scenario\\Elsewhere\\unselected.txt", "left out\r\n");
  }

  void AddUser(const std::string& name, LocalTime due) {
    installation_.CurrentUser = name;
    Write(installation_.UserFile("atbkupfolderlist.txt"),
          "C:\\Scenario\\Docs\\\r\nC:\\Scenario\\Elsewhere\\alone.txt\r\n", Encoding::kUtf16);
    Write(installation_.UserFile("atbkupExcludelist.txt"), "C:\\Scenario\\Docs\\Excluded\\\r\n",
          Encoding::kUtf16);
    Write(installation_.UserFile("atbkupExcludeFilePath.txt"), "C:\\Scenario\\Docs\\not this one.txt\r\n",
          Encoding::kUtf16);
    Write(installation_.UserFile("scheduleData.txt"), "0\r\n" + Daily(due) + "\r\n");
    const Transfer transfer(machine_, installation_);
    for (const auto& [key, value] : {std::pair{"username", name.c_str()},
                                     {"password", "swordfish"},
                                     {"encpassword", "rosebud"},
                                     {"serverip", "localhost"},
                                     {"port", "11905"}}) {
      transfer.Trf_WriteUserProfile(key, value);
    }
  }

  static std::string Daily(LocalTime due) {
    const std::string day = FormatDate("yyyymmdd", due);
    return Join({"1", "Nightly", FormatDate(kStampPicture, due), FormatDate("H:mm:ss", due), "0", "every day",
                 "", "0", "0", day + FormatDate("HHmm", due), "6", "1111111"},
                "\b\b");
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

int main(int argc, char** argv) {
  try {
    return ondura::scenario::PlayOnMachine({argv + 1, argv + argc});
  } catch (const std::exception& error) {
    std::cerr << argv[0] << ": " << error.what() << "\n";
    return 1;
  }
}
