#include <Platform/LibraryVersions.hpp>

#include <libxml/xmlversion.h>
#include <unicode/uversion.h>

namespace vantel {

std::vector<LibraryVersion> platformLibraryVersions() {
    UVersionInfo icu;
    u_getVersion(icu);
    char icuText[U_MAX_VERSION_STRING_LENGTH];
    u_versionToString(icu, icuText);
    // libplist has no run-time version call; the build records the one it found.
    return {{"libplist", VANTEL_PLIST_VERSION}, {"libxml2", LIBXML_DOTTED_VERSION}, {"ICU", icuText}};
}

}  // namespace vantel
