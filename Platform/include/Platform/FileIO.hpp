#pragma once

// Whole-file reading and writing. Failures throw std::filesystem::filesystem_error
// naming the path and the system's reason.

#include <Platform/Data.hpp>
#include <Platform/URL.hpp>

#include <cstddef>
#include <filesystem>
#include <string>
#include <system_error>

namespace vantel {

inline constexpr int quietInputSeconds = 3;

// Failures of our own, beside the system's: codes of fileErrorCategory().
enum class FileError { nothingArrived = 1, noReader };
const std::error_category& fileErrorCategory();

// The system's reason for a file error ("No such file or directory"), or
// the error's own text when it has no code.
std::string fileErrorReason(const std::filesystem::filesystem_error& error);

Data readData(const URL& url);
Data readData(const std::filesystem::path& path);
// At most maximumBytes: the whole of a shorter file, the start of a longer
// one. Reads a pipe or a device such as /dev/zero only that far, and gives
// up on one once nothing has arrived for quietInputSeconds, with the error
// FileError::nothingArrived (a named pipe that no one writes to would
// otherwise be waited on forever).
Data readData(const std::filesystem::path& path, std::size_t maximumBytes);
// Standard input, to its end or maximumBytes, whichever comes first; errors
// name "stdin".
Data readStandardInput(std::size_t maximumBytes);

// Creates or overwrites the file in place; the folder must exist.
void writeData(const Data& data, const URL& url);
void writeData(const Data& data, const std::filesystem::path& path);

// Writes a unique temporary file beside the target, then renames it over the
// target, so that readers see the old file or the new one, never a part, and
// a failure or an interruption (see TemporaryFiles.hpp) leaves the old file
// as it was. A symbolic link at the target is replaced, not written through,
// unless it leads to a device or a pipe: a device or a pipe is written into
// as it is (renaming over it would replace /dev/null itself), and a pipe
// that no one reads fails at once with FileError::noReader.
void writeDataAtomically(const Data& data, const std::filesystem::path& path);
void writeDataAtomically(const Data& data, const URL& url);

// For a file that a reader may hold open and read back through its
// descriptor, as thumbnail services hand over an empty file they made: an
// existing empty regular file is filled in place under an exclusive flock,
// and cut back to empty if writing fails (a full disk, a file-size limit) or
// a signal ends the process. Anything else (no file, an earlier content, a
// link) is written atomically, so nothing earlier is ever lost.
void writeDataInPlaceOrAtomically(const Data& data, const std::filesystem::path& path);

// Writes the bytes to standard output. False when the reader has gone (a
// closed pipe: the caller ends quietly); other failures throw
// std::filesystem::filesystem_error naming "stdout". SIGPIPE must be ignored
// for a closed pipe to come back as false rather than end the process.
bool writeToStandardOutput(const Data& data);

}  // namespace vantel
