#pragma once

// Whole-file reading and writing. Failures throw std::filesystem::filesystem_error
// naming the path and the system's reason.

#include <Platform/Data.hpp>
#include <Platform/URL.hpp>

#include <cstddef>
#include <filesystem>
#include <string>

namespace vantel {

// The system's reason for a file error ("No such file or directory"), or
// the error's own text when it has no code.
std::string fileErrorReason(const std::filesystem::filesystem_error& error);

Data readData(const URL& url);
Data readData(const std::filesystem::path& path);
// At most maximumBytes: the whole of a shorter file, the start of a longer
// one. Reads a pipe or a device such as /dev/zero only that far.
Data readData(const std::filesystem::path& path, std::size_t maximumBytes);
// Standard input, to its end or maximumBytes, whichever comes first; errors
// name "stdin".
Data readStandardInput(std::size_t maximumBytes);

// Creates or overwrites the file in place; the folder must exist.
void writeData(const Data& data, const URL& url);
void writeData(const Data& data, const std::filesystem::path& path);

// Writes a unique temporary file beside the target, then renames it over the
// target, so that readers see the old file or the new one, never a part.
void writeDataAtomically(const Data& data, const std::filesystem::path& path);
void writeDataAtomically(const Data& data, const URL& url);

// Writes into the file itself (created if absent; the folder must exist)
// under an exclusive flock held while it truncates and writes: writers that
// take the same lock leave one whole content, and a reader that opened the
// file before sees the new bytes through its descriptor. If writing fails the
// file is left empty, never holding a part.
void writeDataInPlaceLocked(const Data& data, const std::filesystem::path& path);

// Writes the bytes to standard output. False when the reader has gone (a
// closed pipe: the caller ends quietly); other failures throw
// std::filesystem::filesystem_error naming "stdout". SIGPIPE must be ignored
// for a closed pipe to come back as false rather than end the process.
bool writeToStandardOutput(const Data& data);

}  // namespace vantel
