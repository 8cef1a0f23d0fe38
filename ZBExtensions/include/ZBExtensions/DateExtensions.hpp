#pragma once

// Whole calendar units between two dates, and a formatter's text for now.

#include <Platform/DateText.hpp>

#include <cstdint>
#include <string>

namespace vantel {

// Units from `from` to `date` on the default calendar: positive when `date`
// is later, whole units only. `weeks` counts the week-of-month unit, which
// steps by seven days like any week.
std::int64_t years(Date date, Date from);
std::int64_t months(Date date, Date from);
std::int64_t weeks(Date date, Date from);
std::int64_t days(Date date, Date from);
std::int64_t hours(Date date, Date from);
std::int64_t minutes(Date date, Date from);
std::int64_t seconds(Date date, Date from);

// The formatter's text for the current moment, with its own pattern, locale
// and time zone.
std::string stringForNow(const DateFormatter& formatter);

}  // namespace vantel
