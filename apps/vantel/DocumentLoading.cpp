#include "DocumentLoading.hpp"

#include <iostream>
#include <new>

namespace vantel::cli {

DocumentSource documentSource(const std::string& argument) {
    return argument == "-" ? DocumentSource::standardInput() : DocumentSource::file(argument);
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
