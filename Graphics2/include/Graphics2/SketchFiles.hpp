#pragma once

#include <Graphics2/Sketch.hpp>

#include <filesystem>
#include <string>
#include <string_view>

namespace vantel {

// The SHA-1 digest of the text's UTF-8 bytes as 40 lower-case hex digits.
std::string sha1(std::string_view text);

// The current date and time in the ICU pattern, a "-", and the first eight
// hex digits of sha1("<process id>-<date text>"): "2024-05-01-1a2b3c4d".
// Names made within one formatted period of one process are equal; the
// process id keeps concurrent processes apart.
std::string hashedFileName(const Sketch& sketch, std::string_view dateFormat);

// True when the folder directly holds an entry named "Package.manifest";
// false too when the folder cannot be listed.
bool isRootFolder(const std::filesystem::path& folder);

// The "Output" folder of the project holding the file at path: walks up from
// the file's folder to the first root folder. When there is none up to the
// file-system root, it is the file-system root's "Output".
std::filesystem::path outputFolder(const std::string& path);

}  // namespace vantel
