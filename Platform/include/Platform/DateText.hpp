#pragma once

// Dates as ICU sees them: written with a pattern, and differences counted on
// the calendar of the default locale and time zone.

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace vantel {

using Date = std::chrono::system_clock::time_point;

// The current date and time written with an ICU date pattern ("yyyy-MM-dd",
// "HH:mm"), in the default locale and time zone. A pattern ICU rejects is a
// programming error and stops the process.
std::string formatNow(std::string_view icuPattern);

// Writes dates with a pattern, a locale and a time zone, each left empty for
// its default: no pattern writes nothing, the locale and time zone default to
// the process's own ("en_US", "Europe/Berlin" name others).
struct DateFormatter {
    std::string dateFormat;
    std::string localeIdentifier;
    std::string timeZoneIdentifier;

    // A pattern ICU rejects stops the process, as in formatNow.
    std::string string(Date date) const;
};

enum class CalendarUnit { year, month, weekOfMonth, day, hour, minute, second };

// Whole units from start to end on the default calendar: positive when end
// is later, truncated toward zero (36 hours are 1 day).
std::int64_t calendarDifference(Date start, Date end, CalendarUnit unit);

}  // namespace vantel
