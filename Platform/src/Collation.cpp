#include <Platform/Collation.hpp>
#include <Platform/Fatal.hpp>

#include <unicode/coll.h>

#include <memory>
#include <string>

namespace vantel {
namespace {

std::unique_ptr<icu::Collator> makeNaturalCollator() {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale::getRoot(), status));
    // Secondary strength tells accents apart but not case, which is a
    // tertiary difference.
    if (U_SUCCESS(status)) collator->setStrength(icu::Collator::SECONDARY);
    if (U_SUCCESS(status)) collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    if (U_FAILURE(status)) fatalError(std::string("ICU collator unavailable: ") + u_errorName(status));
    return collator;
}

}  // namespace

int compareNaturally(std::string_view a, std::string_view b) {
    // One collator per thread: creating one is costly, and a thread of its
    // own spares relying on a shared collator's thread safety.
    thread_local const std::unique_ptr<icu::Collator> collator = makeNaturalCollator();
    UErrorCode status = U_ZERO_ERROR;
    UCollationResult result = collator->compareUTF8(icu::StringPiece(a.data(), static_cast<int32_t>(a.size())),
                                                    icu::StringPiece(b.data(), static_cast<int32_t>(b.size())), status);
    if (U_FAILURE(status)) fatalError(std::string("ICU collation failed: ") + u_errorName(status));
    return static_cast<int>(result);
}

}  // namespace vantel
