#pragma once

// Whole-file reading and writing. Failures throw std::filesystem::filesystem_error
// naming the path and the system's reason.

#include <Platform/Data.hpp>
#include <Platform/URL.hpp>

#include <filesystem>

namespace vantel {

Data readData(const URL& url);
Data readData(const std::filesystem::path& path);

// Creates or overwrites the file in place; the folder must exist.
void writeData(const Data& data, const URL& url);
void writeData(const Data& data, const std::filesystem::path& path);

// Writes a unique temporary file beside the target, then renames it over the
// target, so that readers see the old file or the new one, never a part.
void writeDataAtomically(const Data& data, const std::filesystem::path& path);
void writeDataAtomically(const Data& data, const URL& url);

}  // namespace vantel
