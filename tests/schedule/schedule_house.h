#pragma once

#include <string>
#include <string_view>

#include "machines/simulated/SimulatedMachine.h"
#include "reporting/Options.h"
#include "reporting/Trace.h"
#include "schedule/Scheduler.h"
#include "util/TextFiles.h"

namespace ondura {

// A machine with one user, "ann", whose schedule file is the one worked on.
struct ScheduleHouse {
  ScheduleHouse() {
    installation.VirtualPath = "C:\\data\\";
    installation.ProductInstallationName = "Ondura";
    installation.CurrentUser = "ann";
    machine.PutFolder(installation.UserFolder());
    schedule.ScheduleFilePath = path = installation.UserFile("scheduleData.txt");
  }

  void PutSchedule(std::string_view bytes) { machine.PutFile(path, bytes); }

  // The user's trace lines.
  std::vector<std::string> TraceLines() {
    return TextFiles{machine.outside().files, machine.outside().code_page}
        .ReadLines(installation.UserFile("ScheduleTraceFile.txt"), Encoding::kUtf16)
        .value_or(std::vector<std::string>{});
  }

  SimulatedMachine machine;
  Installation installation;
  std::string path;
  Options options{machine.machine(), installation};
  Trace trace{options, machine.machine().clock};
  Transfer transfer{machine.machine(), installation};
  DBaction schedule{machine.machine(), installation, trace};
  Scheduler scheduler{machine.machine(), trace, transfer, schedule};
};

inline std::string Line(std::string_view nexttime, std::string_view sortkey,
                        std::string_view recordno = "1") {
  return std::string{recordno} + "\b\bdocs\b\b" + std::string{nexttime} +
         "\b\b12:30 daily\b\b0\b\bevery day\b\bann@example.org\b\b3\b\b1\b\b" + std::string{sortkey} +
         "\b\b6\b\b1111111\r\n";
}

inline LocalTime Time(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  return ToLocalTime({year, month, day, hour, minute, second});
}

}  // namespace ondura
