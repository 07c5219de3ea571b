#pragma once

#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <thread>

#include "profile/LightCiphers.h"
#include "rehearsal.h"
#include "schedule/schedule_record.h"
#include "util/date_text.h"

namespace ondura::demo {

// A host as a process of its own; ended with the test at the latest.
class HostProcess {
 public:
  HostProcess(const std::string& root, const char* role, const char* ticks) {
    id_ = fork();
    if (id_ != 0) return;
    execl(ONDURA_HOST, ONDURA_HOST, role, "--root", root.c_str(), "--speed", "60", "--period", "3", "--ticks",
          ticks, nullptr);
    _exit(127);
  }
  ~HostProcess() {
    if (id_ > 0) End(SIGKILL);
  }
  HostProcess(const HostProcess&) = delete;
  HostProcess& operator=(const HostProcess&) = delete;

  // The exit code; -1 for a host that has not left by itself within a minute.
  int Finish() {
    for (int look = 0; look < 1200; ++look) {
      int status = 0;
      if (waitpid(id_, &status, WNOHANG) == id_) {
        id_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds{50});
    }
    return -1;
  }

  int Stop() { return End(SIGTERM); }

 private:
  int End(int signal) {
    kill(id_, signal);
    int status = 0;
    waitpid(id_, &status, 0);
    id_ = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  pid_t id_ = 0;
};

// A rehearsal whose user has one small file to back up and a record for the hosts to find.
class JobRehearsal : public Rehearsal {
 public:
  JobRehearsal() {
    PutFile("C:\\Docs\\a.txt", "hello");
    PutLines("atbkupfolderlist.txt", {"C:\\Docs\\"});
    PutFile(std::string{kData} + "userlist.ini", "ann;\r\n");
    transfer().Trf_WriteUserProfile("port", "11905");
    transfer().Trf_WriteUserProfile("STARTMISSEDSCH", "1");
    transfer().Trf_WriteUserNameDBProfile("DB", "0");
    transfer().Trf_WriteUserNameProfile("Standard", "0");
    transfer().Trf_WriteUserNameProfile("Started", "0");
    LightCiphers ciphers(machine().code_page, machine().pump);
    transfer().Trf_WriteUserNameRegistryProfile("Default User name", ciphers.ShiftEncode("ann"));
    transfer().Trf_WriteUserNameRegistryProfile("StandbyBackup", "0");
  }

  // The user's one record is due now, and mails to the addresses as the option says.
  void MakeDue(const char* recordno, const char* mailids = "", const char* mailoption = "0") {
    const LocalTime now = machine().clock.Now();
    ScheduleRecord record;
    record.recordno = recordno;
    record.mailids = mailids;
    record.maillog = "0";
    record.mailoption = mailoption;
    record.schname = "Nightly";
    record.nexttime = FormatDate(kStampPicture, now);
    record.schedtime = "12:30";
    record.onceflag = "0";
    record.sortkey = FormatDate("yyyymmddHHmm", now);
    record.repeatkind = "6";
    record.daymask = "1111111";
    PutFile(UserFile("scheduleData.txt"), "0\r\n" + LineOfRecord(record) + "\r\n");
  }
};

}  // namespace ondura::demo
