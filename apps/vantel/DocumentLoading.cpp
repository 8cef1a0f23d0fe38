#include "DocumentLoading.hpp"

#include <Platform/URL.hpp>

#include <array>
#include <cctype>
#include <filesystem>
#include <iostream>
#include <new>
#include <string_view>

namespace vantel::cli {

namespace {

bool namesURL(const std::string& argument) {
    constexpr std::array<std::string_view, 3> schemes = {"http://", "https://", "file://"};
    for (std::string_view scheme : schemes) {
        if (argument.size() < scheme.size()) continue;
        bool same = true;
        for (std::size_t at = 0; at < scheme.size(); ++at) {
            same = same && std::tolower(static_cast<unsigned char>(argument[at])) == scheme[at];
        }
        if (same) return true;
    }
    return false;
}

}  // namespace

DocumentSource documentSource(const std::string& argument) {
    if (argument == "-") return DocumentSource::standardInput();
    if (namesURL(argument)) return DocumentSource::address(argument);
    return DocumentSource::file(argument);
}

std::string outputStem(const std::string& argument) {
    if (argument == "-") return "stdin";
    if (namesURL(argument)) {
        auto url = URL::fromString(argument);
        if (!url) return "index";  // loading it reports what is wrong
        std::optional<std::string> stem = url->deletingPathExtension().lastPathComponentAsFileName();
        if (!stem) throw CLI::ValidationError(argument + ": the address's last path component cannot name a file");
        return stem->empty() ? "index" : *stem;
    }
    return std::filesystem::path(argument).stem().string();
}

CommandDocument readDocument(const DocumentSource& source, bool checks, const std::optional<Color>& background) {
    CommandDocument result;
    LoadedDocument loaded;
    try {
        loaded = loadDocument(source, checks);
    } catch (const std::bad_alloc&) {  // a document too big to decode in this memory: this input only
        result.failure = ExitCode::badDocument;
        result.problems.push_back(source.name() + ": cannot read: not enough memory");
        return result;
    }
    result.document = std::move(loaded.document);
    if (result.document && background) result.document->setBackgroundColor(*background);
    if (loaded.failure != DocumentFailure::none) {
        result.failure = loaded.failure == DocumentFailure::unreadable ? ExitCode::ioFailure : ExitCode::badDocument;
    }
    for (const DocumentProblem& problem : loaded.problems) result.problems.push_back(source.name() + ": " + problem.text());
    return result;
}

void reportProblems(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) std::cerr << line << '\n';
}

}  // namespace vantel::cli
