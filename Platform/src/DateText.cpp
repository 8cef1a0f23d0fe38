#include <Platform/DateText.hpp>
#include <Platform/Fatal.hpp>

#include <unicode/calendar.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <memory>
#include <optional>
#include <string>

namespace vantel {

namespace {

icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

std::unique_ptr<icu::SimpleDateFormat> formatterFor(std::string_view pattern, const icu::Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    auto formatter = std::make_unique<icu::SimpleDateFormat>(unicode(pattern), locale, status);
    if (U_FAILURE(status)) {
        fatalError("Invalid date pattern \"" + std::string(pattern) + "\": " + u_errorName(status));
    }
    return formatter;
}

std::string utf8(const icu::UnicodeString& text) {
    std::string bytes;
    return text.toUTF8String(bytes);
}

UDate icuDate(Date date) {
    return static_cast<UDate>(std::chrono::duration_cast<std::chrono::milliseconds>(date.time_since_epoch()).count());
}

UCalendarDateFields fieldOf(CalendarUnit unit) {
    switch (unit) {
    case CalendarUnit::year: return UCAL_YEAR;
    case CalendarUnit::month: return UCAL_MONTH;
    case CalendarUnit::weekOfMonth: return UCAL_WEEK_OF_MONTH;
    case CalendarUnit::day: return UCAL_DATE;
    case CalendarUnit::hour: return UCAL_HOUR_OF_DAY;
    case CalendarUnit::minute: return UCAL_MINUTE;
    case CalendarUnit::second: return UCAL_SECOND;
    }
    fatalError("Unknown calendar unit");
}

}  // namespace

std::string formatNow(std::string_view icuPattern) {
    icu::UnicodeString formatted;
    formatterFor(icuPattern, icu::Locale::getDefault())->format(icu::Calendar::getNow(), formatted);
    return utf8(formatted);
}

std::string DateFormatter::string(Date date) const {
    if (dateFormat.empty()) return "";
    icu::Locale locale = localeIdentifier.empty() ? icu::Locale::getDefault() : icu::Locale(localeIdentifier.c_str());
    auto formatter = formatterFor(dateFormat, locale);
    if (!timeZoneIdentifier.empty()) formatter->adoptTimeZone(icu::TimeZone::createTimeZone(unicode(timeZoneIdentifier)));
    icu::UnicodeString formatted;
    formatter->format(icuDate(date), formatted);
    return utf8(formatted);
}

namespace {

// Hours, minutes and seconds have a fixed length on ICU's calendar (adding
// one moves the time by that many milliseconds, whatever the clocks do), and
// ICU counts field differences in 32 bits: seconds overflow after 68 years.
std::optional<std::int64_t> fixedLengthDifference(Date start, Date end, CalendarUnit unit) {
    std::int64_t milliseconds = static_cast<std::int64_t>(icuDate(end)) - static_cast<std::int64_t>(icuDate(start));
    switch (unit) {
    case CalendarUnit::hour: return milliseconds / 3'600'000;
    case CalendarUnit::minute: return milliseconds / 60'000;
    case CalendarUnit::second: return milliseconds / 1'000;
    default: return std::nullopt;
    }
}

}  // namespace

std::int64_t calendarDifference(Date start, Date end, CalendarUnit unit) {
    if (std::optional<std::int64_t> fixed = fixedLengthDifference(start, end, unit)) return *fixed;
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(status));
    if (U_FAILURE(status)) fatalError(std::string("Cannot create the default calendar: ") + u_errorName(status));
    calendar->setTime(icuDate(start), status);
    int32_t difference = calendar->fieldDifference(icuDate(end), fieldOf(unit), status);
    return U_FAILURE(status) ? 0 : difference;
}

}  // namespace vantel
