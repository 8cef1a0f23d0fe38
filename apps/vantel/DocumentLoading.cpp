#include "DocumentLoading.hpp"

#include <OverlayGenerator/DocumentCheck.hpp>
#include <Platform/FileIO.hpp>
#include <Platform/PropertyList.hpp>

#include <cstddef>
#include <cstring>
#include <iostream>
#include <string>

namespace vantel::cli {

namespace {

// Documents are a few kilobytes; hundreds of guides stay below one megabyte.
// Larger files are refused before they are read: decoding a document of
// 100 MB takes seconds and most of a gigabyte.
constexpr std::size_t maximumDocumentBytes = 8 << 20;

std::string readFailure(const std::filesystem::path& file, const std::filesystem::filesystem_error& error) {
    std::string reason = error.code() ? error.code().message() : error.what();
    return file.string() + ": cannot read: " + reason;
}

}  // namespace

LoadedDocument loadDocument(const std::filesystem::path& file, bool checks) {
    LoadedDocument loaded;
    Data bytes;
    try {
        if (std::filesystem::is_directory(file)) {
            throw std::filesystem::filesystem_error("is a folder", file,
                                                    std::make_error_code(std::errc::is_a_directory));
        }
        bytes = readData(file, maximumDocumentBytes + 1);
    } catch (const std::filesystem::filesystem_error& error) {
        loaded.failure = ExitCode::ioFailure;
        loaded.problems.push_back(readFailure(file, error));
        return loaded;
    }
    if (bytes.size() > maximumDocumentBytes) {
        loaded.failure = ExitCode::badDocument;
        loaded.problems.push_back(file.string() + ": the file is larger than the limit of " +
                                  std::to_string(maximumDocumentBytes >> 20) + " MiB for an overlay document");
        return loaded;
    }
    try {
        loaded.document.emplace(PropertyListDecoder().decode<OverlayGen>(bytes));
    } catch (const DecodingError& error) {
        loaded.failure = ExitCode::badDocument;
        loaded.problems.push_back(file.string() + ": " + error.what());
        return loaded;
    }
    if (!checks) return loaded;
    for (const DocumentProblem& problem : checkDocument(*loaded.document)) {
        loaded.problems.push_back(file.string() + ": " + problem.text());
    }
    if (!loaded.problems.empty()) {
        loaded.document.reset();
        loaded.failure = ExitCode::badDocument;
    }
    return loaded;
}

void reportProblems(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) std::cerr << line << '\n';
}

}  // namespace vantel::cli
