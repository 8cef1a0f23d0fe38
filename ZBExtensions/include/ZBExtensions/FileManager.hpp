#pragma once

// Questions about what is at a file URL's path (symbolic links followed).

#include <Platform/URL.hpp>

namespace vantel {

// Whether something exists at the path; isDirectory tells whether it is a
// directory (false when nothing exists).
bool fileExists(const URL& url, bool& isDirectory);

// True only when a directory exists at the path.
bool fileIsDirectory(const URL& url);

}  // namespace vantel
