#include <Platform/NumberFormat.hpp>

#include <Platform/Fatal.hpp>

#include <unicode/locid.h>
#include <unicode/numberformatter.h>
#include <unicode/unistr.h>

namespace vantel {

namespace {

// Built once: a localized formatter is immutable and safe to share between threads.
const icu::number::LocalizedNumberFormatter& defaultFormatter() {
    static const icu::number::LocalizedNumberFormatter formatter =
        icu::number::NumberFormatter::withLocale(icu::Locale::getDefault());
    return formatter;
}

}  // namespace

std::string formatDecimal(double value) {
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString text = defaultFormatter().formatDouble(value, status).toString(status);
    if (U_FAILURE(status)) fatalError(std::string("ICU number formatting failed: ") + u_errorName(status));
    std::string result;
    return text.toUTF8String(result);
}

}  // namespace vantel
