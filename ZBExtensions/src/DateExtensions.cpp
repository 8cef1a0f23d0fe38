#include <ZBExtensions/DateExtensions.hpp>

#include <chrono>

namespace vantel {

std::int64_t years(Date date, Date from) { return calendarDifference(from, date, CalendarUnit::year); }
std::int64_t months(Date date, Date from) { return calendarDifference(from, date, CalendarUnit::month); }
std::int64_t weeks(Date date, Date from) { return calendarDifference(from, date, CalendarUnit::weekOfMonth); }
std::int64_t days(Date date, Date from) { return calendarDifference(from, date, CalendarUnit::day); }
std::int64_t hours(Date date, Date from) { return calendarDifference(from, date, CalendarUnit::hour); }
std::int64_t minutes(Date date, Date from) { return calendarDifference(from, date, CalendarUnit::minute); }
std::int64_t seconds(Date date, Date from) { return calendarDifference(from, date, CalendarUnit::second); }

std::string stringForNow(const DateFormatter& formatter) {
    return formatter.string(std::chrono::system_clock::now());
}

}  // namespace vantel
