#include <OverlayGenerator/DocumentLoading.hpp>

#include <Platform/Coding.hpp>
#include <Platform/FileIO.hpp>
#include <Platform/PropertyList.hpp>

#include <ZBExtensions/Download.hpp>

#include <system_error>

namespace vantel {

DocumentSource DocumentSource::file(std::filesystem::path path) {
    std::string name = path.string();
    return {std::move(path), std::move(name)};
}

DocumentSource DocumentSource::url(const URL& url) {
    if (url.isFileURL()) return file(url.path());
    return {url, url.absoluteString()};
}

DocumentSource DocumentSource::address(std::string_view text) {
    if (auto url = URL::fromString(text)) return DocumentSource::url(*url);
    return {InvalidAddress{}, std::string(text)};
}

DocumentSource DocumentSource::standardInput() { return {StandardInput{}, "stdin"}; }

DocumentSource DocumentSource::bytes(Data data, std::string name) { return {std::move(data), std::move(name)}; }

UndrawableDocumentError::UndrawableDocumentError(std::vector<DocumentProblem> problems)
    : std::runtime_error(problems.empty() ? "the document cannot be drawn" : problems.front().text()),
      problems(std::move(problems)) {}

namespace {

std::string readReason(const std::filesystem::filesystem_error& error) {
    return "cannot read: " + fileErrorReason(error);
}

std::string limitText() { return std::to_string(maximumDocumentBytes >> 20) + " MiB"; }

// The body of a successful answer, at most `limit` bytes: the transfer is
// stopped as soon as more arrive.
Data download(const URL& url, std::size_t limit) {
    DownloadLimits limits;
    limits.maximumBytes = limit;
    DownloadedFile file = downloadFile(url, limits);
    long status = file.response.statusCode;
    if (status < 200 || status > 299) {
        throw DownloadError(DownloadError::Reason::unsuccessfulStatus, "the server answered " + statusText(status));
    }
    return readData(file.location.path(), limit);
}

LoadedDocument failed(DocumentFailure failure, std::vector<DocumentProblem> problems, std::exception_ptr error) {
    LoadedDocument loaded;
    loaded.failure = failure;
    loaded.problems = std::move(problems);
    loaded.error = std::move(error);
    return loaded;
}

}  // namespace

// Reads the source's bytes, one byte past the limit so that a larger input
// is known to be larger.
class DocumentReader {
public:
    static Data read(const DocumentSource& source) {
        constexpr std::size_t limit = maximumDocumentBytes + 1;
        if (const auto* data = std::get_if<Data>(&source.origin_)) {
            return data->size() > limit ? Data(data->begin(), data->begin() + limit) : *data;
        }
        if (std::holds_alternative<DocumentSource::StandardInput>(source.origin_)) return readStandardInput(limit);
        if (const auto* url = std::get_if<URL>(&source.origin_)) return download(*url, maximumDocumentBytes);
        if (std::holds_alternative<DocumentSource::InvalidAddress>(source.origin_)) {
            throw DownloadError(DownloadError::Reason::other, "not a valid http, https or file URL");
        }
        const auto& path = std::get<std::filesystem::path>(source.origin_);
        if (std::filesystem::is_directory(path)) {
            throw std::filesystem::filesystem_error("cannot read file", path,
                                                    std::make_error_code(std::errc::is_a_directory));
        }
        return readData(path, limit);
    }
};

LoadedBytes loadDocumentBytes(const DocumentSource& source) {
    LoadedBytes loaded;
    auto fail = [&](DocumentFailure failure, std::string problem, std::exception_ptr error) {
        loaded.bytes.clear();
        loaded.failure = failure;
        loaded.problems = {{"", std::move(problem)}};
        loaded.error = std::move(error);
        return std::move(loaded);
    };
    try {
        loaded.bytes = DocumentReader::read(source);
    } catch (const std::filesystem::filesystem_error& error) {
        return fail(DocumentFailure::unreadable, readReason(error), std::current_exception());
    } catch (const DownloadError& error) {
        if (error.reason == DownloadError::Reason::tooLarge) {
            return fail(DocumentFailure::tooLarge,
                        "cannot download: larger than the limit of " + limitText() +
                            " for an overlay document; the transfer was stopped",
                        std::current_exception());
        }
        return fail(DocumentFailure::unreadable, std::string("cannot download: ") + error.what(),
                    std::current_exception());
    }
    if (loaded.bytes.size() > maximumDocumentBytes) {
        std::string limit = limitText();
        auto error = std::filesystem::filesystem_error("larger than the limit of " + limit + " for a document",
                                                       source.name(), std::make_error_code(std::errc::file_too_large));
        return fail(DocumentFailure::tooLarge, "the file is larger than the limit of " + limit + " for an overlay document",
                    std::make_exception_ptr(error));
    }
    return loaded;
}

LoadedDocument loadDocument(const DocumentSource& source, bool check) {
    LoadedBytes read = loadDocumentBytes(source);
    if (!read.ok()) return failed(read.failure, std::move(read.problems), std::move(read.error));
    const Data& bytes = read.bytes;
    std::shared_ptr<OverlayGen> document;
    try {
        document = std::make_shared<OverlayGen>(PropertyListDecoder().decode<OverlayGen>(bytes));
    } catch (const DecodingError& error) {
        return failed(DocumentFailure::undecodable, {{"", error.what()}}, std::current_exception());
    }
    if (check) {
        std::vector<DocumentProblem> problems = checkDocument(*document);
        if (!problems.empty()) {
            auto error = std::make_exception_ptr(UndrawableDocumentError(problems));
            return failed(DocumentFailure::undrawable, std::move(problems), error);
        }
    }
    LoadedDocument loaded;
    loaded.document = std::move(document);
    return loaded;
}

}  // namespace vantel
