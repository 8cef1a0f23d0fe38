#include <Platform/DateText.hpp>
#include <Platform/Fatal.hpp>

#include <unicode/calendar.h>
#include <unicode/smpdtfmt.h>
#include <unicode/unistr.h>

#include <string>

namespace vantel {

std::string formatNow(std::string_view icuPattern) {
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString pattern = icu::UnicodeString::fromUTF8(
        icu::StringPiece(icuPattern.data(), static_cast<int32_t>(icuPattern.size())));
    icu::SimpleDateFormat formatter(pattern, status);
    if (U_FAILURE(status)) {
        fatalError("Invalid date pattern \"" + std::string(icuPattern) + "\": " + u_errorName(status));
    }
    icu::UnicodeString formatted;
    formatter.format(icu::Calendar::getNow(), formatted);
    std::string text;
    return formatted.toUTF8String(text);
}

}  // namespace vantel
