#pragma once

// The versions of the libraries linked in, for `vantel --version` and bug
// reports: the command links most of them statically, so what it was built
// with is what runs.

#include <string>
#include <vector>

namespace vantel {

struct LibraryVersion {
    std::string name;
    std::string version;
};

// libplist, libxml2 and ICU.
std::vector<LibraryVersion> platformLibraryVersions();

}  // namespace vantel
