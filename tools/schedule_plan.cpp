#include "schedule_plan.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "Failure.h"
#include "schedule/job_kind.h"
#include "schedule/record_dates.h"
#include "start_time.h"
#include "text/text.h"
#include "util/date_text.h"

namespace ondura {

namespace {

struct Word {
  std::string_view word;
  std::string_view code;
};

constexpr std::array kMailTimes = {Word{"never", "1"}, Word{"failure", "2"}, Word{"always", "3"}};
constexpr std::array<std::string_view, 7> kDays = {"sun", "mon", "tue", "wed", "thu", "fri", "sat"};

constexpr std::string_view kOnce = "4";
constexpr std::string_view kMonthly = "5";
constexpr std::string_view kListedDays = "6";
constexpr std::string_view kEveryDay = "1111111";
constexpr std::string_view kNoDay = "0000000";

[[noreturn]] void Refuse(const std::string& option, const std::string& value, const std::string& advice) {
  throw Failure(Exit::kUsage, option + ": '" + value + "' means nothing here; " + advice);
}

template <typename Row, std::size_t kCount>
std::string CodeOf(const std::array<Row, kCount>& words, const std::string& option,
                   const std::string& value) {
  const auto found = std::ranges::find(words, value, &Row::word);
  if (found != words.end()) return std::string{found->code};
  std::string all;
  for (const Row& word : words) all += (all.empty() ? "" : ", ") + std::string{word.word};
  Refuse(option, value, "use one of " + all);
}

template <typename Row, std::size_t kCount>
std::string WordOf(const std::array<Row, kCount>& words, const std::string& code) {
  const auto found = std::ranges::find(words, code, &Row::code);
  return found == words.end() ? code : std::string{found->word};
}

// The number of `text`, which must be digits alone.
std::optional<int> Digits(std::string_view text) {
  const bool digits = std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
  const auto number = ParseInteger(text);
  if (!digits || !number) return std::nullopt;
  return static_cast<int>(*number);
}

LocalTime TimeOf(const SchedulePlan& plan, LocalTime now) {
  if (const auto time = ParseStartTime(plan.at, now)) return *time;
  Refuse("--at", plan.at,
         "give a time such as 12:30, 'tomorrow 12:30', 'mon 12:30' or '2090-11-14 12:30', or now");
}

// Seven digits, Sunday first.
std::string MaskOf(const std::string& repeat) {
  std::string mask{kNoDay};
  for (const auto& name : Split(repeat.substr(std::string_view{"weekly:"}.size()), ",")) {
    const auto day = std::ranges::find(kDays, ToLower(name));
    if (day == kDays.end()) Refuse("--repeat", repeat, "name the days as in weekly:mon,wed");
    mask[static_cast<std::size_t>(day - kDays.begin())] = '1';
  }
  return mask;
}

std::size_t WeekdayOf(LocalTime time) {
  return std::chrono::weekday{std::chrono::floor<std::chrono::days>(time)}.c_encoding();
}

void SetRepeat(ScheduleRecord& record, const std::string& repeat) {
  record.daymask = kNoDay;
  if (repeat == "once") {
    record.repeatkind = kOnce;
  } else if (repeat == "monthly") {
    record.repeatkind = kMonthly;
  } else if (repeat == "daily" || repeat.starts_with("weekly:")) {
    record.repeatkind = kListedDays;
    record.daymask = repeat == "daily" ? std::string{kEveryDay} : MaskOf(repeat);
  } else {
    Refuse("--repeat", repeat, "use once, daily, monthly or days such as weekly:mon,wed");
  }
}

void SetMail(ScheduleRecord& record, const SchedulePlan& plan) {
  for (const auto& address : plan.mail) {
    const bool plain = std::ranges::all_of(address, [](char c) { return c > ' ' && c <= '~' && c != ';'; });
    const auto at = address.find('@');
    if (!plain || at == 0 || at == std::string::npos || at + 1 == address.size()) {
      Refuse("--mail", address, "give one address such as ann@example.com and repeat --mail for more");
    }
  }
  record.mailids = Join(plan.mail, ";");
  record.mailoption = CodeOf(kMailTimes, "--mail-when", plan.mail_when);
  record.maillog = "1";
}

}  // namespace

ScheduleRecord RecordOf(const SchedulePlan& plan, LocalTime now) {
  ScheduleRecord record;
  record.recordno = CodeOf(kJobKinds, "--kind", plan.kind);
  SetRepeat(record, plan.repeat);
  SetMail(record, plan);
  LocalTime time = TimeOf(plan, now);
  if (record.repeatkind == kListedDays) {
    while (record.daymask[WeekdayOf(time)] != '1') time += std::chrono::days{1};
  }
  record.nexttime = FormatDate(kStampPicture, time);
  record.sortkey = SortKeyOf(time);
  record.schedtime = FormatDate("HH:mm", time);
  // A run that happens once and was missed would otherwise be reported as missed on every pass.
  record.onceflag = record.repeatkind == kOnce ? "8" : "0";
  record.schname = plan.name.empty() ? plan.kind : plan.name;
  if (std::ranges::any_of(record.schname, [](char c) { return static_cast<unsigned char>(c) < ' '; })) {
    Refuse("--name", record.schname, "leave control characters out");
  }
  record.schtext = plan.repeat;
  return record;
}

std::string KindWord(const std::string& recordno) { return WordOf(kJobKinds, recordno); }

std::string RepeatWord(const ScheduleRecord& record) {
  if (record.repeatkind == kOnce) return "once";
  if (record.repeatkind == kMonthly) return "monthly";
  if (record.repeatkind != kListedDays) return record.repeatkind;
  if (record.daymask == kEveryDay) return "daily";
  std::vector<std::string> days;
  const std::string mask =
      std::string(7 - std::min<std::size_t>(7, record.daymask.size()), '0') + record.daymask;
  for (std::size_t day = 0; day < kDays.size(); ++day) {
    if (mask[mask.size() - 7 + day] == '1') days.emplace_back(kDays[day]);
  }
  return "weekly:" + Join(days, ",");
}

std::string MailWord(const ScheduleRecord& record) {
  return record.mailids.empty() ? "never" : WordOf(kMailTimes, record.mailoption);
}

std::string TimeWord(const std::string& sortkey) {
  if (sortkey.size() != 12 || !Digits(sortkey.substr(0, 9)) || !Digits(sortkey.substr(9))) return sortkey;
  return sortkey.substr(0, 4) + "-" + sortkey.substr(4, 2) + "-" + sortkey.substr(6, 2) + " " +
         sortkey.substr(8, 2) + ":" + sortkey.substr(10, 2);
}

}  // namespace ondura
