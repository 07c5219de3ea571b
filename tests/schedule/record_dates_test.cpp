#include "schedule/record_dates.h"

#include "schedule/locale_dates.h"
#include "schedule_house.h"

namespace ondura {
namespace {

using TextCase = std::tuple<std::string, std::string, std::string>;

TEST(SortKey, IsCutOutByPositionAroundTheLastSeparator) {
  for (const auto& [story, date, want] :
       {TextCase{"one-digit hour", "11-14-2026 6:09:08", "202611140609"},
        TextCase{"two-digit hour", "11-14-2026 16:09:08", "202611141609"},
        TextCase{"date and time share a separator", "11:14:2026 6:09:08", "202611140609"},
        TextCase{"the separator is a run", "11-14-2026 6::9::08", "202611140609"},
        TextCase{"an empty fifth part does not count", "11:14:2026 6:09:", "202611141114"},
        TextCase{"without a time the date's parts are taken", "11-14-2026", "202611141114"},
        TextCase{"nothing", "", ""}}) {
    EXPECT_EQ(SortKeyOfText(date), want) << story;
  }
}

using LocaleCase = std::tuple<std::string, std::string, const char*>;

TEST(DefaultText, IsReadBackAsTheSameTimeUnderEveryLocale) {
  for (const auto& [date_format, time_format, afternoon] :
       {LocaleCase{"dd.MM.yyyy", "HH:mm:ss", "05.06.2026 16:39:08"},
        LocaleCase{"d/M/yy", "H.mm.ss", "5/6/26 16.39.08"},
        LocaleCase{"dd/MM/yyyy", "hh:mm:ss tt", "05/06/2026 04:39:08 PM"},
        LocaleCase{"dd-MMM-yy", "h:mm:ss t", "05-Jun-26 4:39:08 P"},
        LocaleCase{"dddd, d 'de' MMMM yyyy", "H:mm:ss", "Friday, 5 de June 2026 16:39:08"},
        // What would be read as another time, or would leave the code page, is in the fixed form.
        LocaleCase{"dd-MM-yyyy", "HH:mm:ss", "06-05-2026 16:39:08"},
        LocaleCase{"dd.MM.yyyy", "h:mm:ss", "06-05-2026 16:39:08"},
        LocaleCase{"dd.MM.", "HH:mm:ss", "06-05-2026 16:39:08"},
        LocaleCase{"d.M.yyyy \xD0\xB3.", "H:mm:ss", "06-05-2026 16:39:08"},
        LocaleCase{"", "", "06-05-2026 16:39:08"}}) {
    const LocaleFacts locale{date_format, time_format};
    EXPECT_EQ(DefaultDateText(Time(2026, 6, 5, 16, 39, 8), locale), afternoon);
    for (const LocalTime time : {Time(2026, 6, 5, 16, 39, 8), Time(2026, 12, 31, 23, 59, 59),
                                 Time(2027, 1, 1), Time(2028, 2, 29, 12), Time(2031, 5, 13, 0, 30)}) {
      const std::string text = DefaultDateText(time, locale);
      EXPECT_EQ(ReadRecordDate(text, "", locale), time) << text;
      EXPECT_EQ(ReadRecordDate(text, SortKeyOf(time), locale), time) << text;
      EXPECT_EQ(ReadRecordDate(FormatDate(kStampPicture, time), SortKeyOf(time), locale), time);
    }
  }
}

using ReadCase = std::tuple<std::string, std::string, std::string, std::optional<LocalTime>>;

TEST(RecordDate, IsReadAsItWasMeant) {
  for (const auto& [date_format, text, sortkey, want] :
       {ReadCase{"dd-MM-yyyy", "05-06-2026 7:00:00", "202606050700", Time(2026, 6, 5, 7)},
        ReadCase{"dd-MM-yyyy", "05-06-2026 7:00:00", "202605060700", Time(2026, 5, 6, 7)},
        ReadCase{"dd-MM-yyyy", "05-06-2026 7:00:00", "1", Time(2026, 5, 6, 7)},
        ReadCase{"dd-MM-yyyy", "25-06-2026 7:00:00", "", Time(2026, 6, 25, 7)},
        ReadCase{"dd/MM/yyyy", "05/06/2026 07:00", "", Time(2026, 6, 5, 7)},
        ReadCase{"dd/MM/yyyy", " 05/06/2026 ", "", Time(2026, 6, 5)},
        ReadCase{"", "05-06-2026 12:05:00 am", "", Time(2026, 5, 6, 0, 5)},
        ReadCase{"dd/MM/yyyy", "30/02/2026 07:00", "", std::nullopt},
        ReadCase{"", "05-06-2026 13:00:00 PM", "", std::nullopt},
        ReadCase{"", "05-06-2026 7:00:00 or so", "", std::nullopt},
        ReadCase{"dd/MM/yyyy", "", "", std::nullopt}}) {
    EXPECT_EQ(ReadRecordDate(text, sortkey, {date_format, "HH:mm"}), want) << date_format << " " << text;
  }
}

constexpr const char* kAfternoon = "11-14-2026 16:39:08";

TEST(ConvertToDate, FollowsTheTokenTable) {
  for (const auto& [format, text, want] :
       {TextCase{"dd/MM/yyyy", kAfternoon, "14/11/2026"}, TextCase{"d.M.yy", kAfternoon, "14.11.26"},
        TextCase{"DD-mmm-YY", kAfternoon, "14-Nov-26"}, TextCase{"MMM", "13-14-2026", ""},
        TextCase{"MMM", "12-14-2026", "Dec"}, TextCase{"MMM", "00-14-2026", ""},
        TextCase{"dddd, MMMM dd, yyyy", kAfternoon, "dddd, MMMM dd, yyyy"},
        TextCase{"HH:SS:tt:yyyy", kAfternoon, ":::2026"}, TextCase{"dd/MM/yyyy", "11-1", "1/11/"},
        // The sixteenth token is a separator; what follows it is lost.
        TextCase{"d.d.d.d.d.d.d.d.d", kAfternoon, "14.14.14.14.14.14.14.14."},
        // A separator is one token, of however many bytes.
        TextCase{"yyyy年M月d日", kAfternoon, "2026年11月14日"}, TextCase{"年年d", kAfternoon, "年年14"},
        TextCase{"", kAfternoon, ""}}) {
    EXPECT_EQ(ConvertToDate(text, format), want) << format;
  }
}

TEST(ConvertToTime, FollowsTheTokenTable) {
  for (const auto& [format, text, want] :
       {TextCase{"h:mm:ss tt", kAfternoon, "04:39:08 PM"},
        TextCase{"h:mm:ss tt", "11-14-2026 12:39:08", "00:39:08 PM"},
        TextCase{"hh:mm:ss tt", "11-14-2026 00:39:08", "00:39:08 AM"},
        TextCase{"HH:mm:ss", "11-14-2026 07:39:08", "07:39:08"},
        // Only a "tt" in the seventh place makes the clock a 12-hour one.
        TextCase{"h:mm tt", kAfternoon, "16:39 "}, TextCase{"h:mm:ss TT", kAfternoon, "16:39:08 "},
        // The half of the day belongs to an hour, and no blank comes twice.
        TextCase{"m:m:s tt", kAfternoon, "39:39:08 "}, TextCase{"h時m分s tt", kAfternoon, "04時39分08 PM"},
        TextCase{"tt h:mm:ss", kAfternoon, " 16:39:08"}, TextCase{"h:mm:ss", "11-14-2026", "::"}}) {
    EXPECT_EQ(ConvertToTime(text, format), want) << format;
  }
}

}  // namespace
}  // namespace ondura
