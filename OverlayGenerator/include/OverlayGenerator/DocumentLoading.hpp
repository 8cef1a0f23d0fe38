#pragma once

// The one way a document from outside comes in: from a file, a file URL, a
// web address, standard input or bytes already in memory, read with a size
// bound (a download is stopped once it passes the bound),
// decoded and checked. Every host (the command, the thumbnailer, the preview
// provider, the fuzzer) goes through loadDocument, so a document that could
// stop the process on drawing is refused in one place.

#include <OverlayGenerator/DocumentCheck.hpp>
#include <OverlayGenerator/OverlayGen.hpp>
#include <Platform/Data.hpp>
#include <Platform/URL.hpp>

#include <cstddef>
#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vantel {

// Documents are a few kilobytes; hundreds of guides stay below one megabyte.
// Larger inputs are refused before they are decoded: decoding 100 MB takes
// seconds and most of a gigabyte, and /dev/zero never ends.
inline constexpr std::size_t maximumDocumentBytes = 8 << 20;

// Where a document comes from, and the name messages give it.
class DocumentSource {
public:
    static DocumentSource file(std::filesystem::path path);
    // A file URL reads the file; an http(s) URL downloads, named by its address.
    static DocumentSource url(const URL& url);
    // Text naming a URL ("https://...", "file:///..."); text that is not one
    // gives a source that fails to read with that reason.
    static DocumentSource address(std::string_view text);
    static DocumentSource standardInput();  // named "stdin"
    static DocumentSource bytes(Data data, std::string name);

    const std::string& name() const { return name_; }

private:
    struct StandardInput {};
    struct InvalidAddress {};
    using Origin = std::variant<std::filesystem::path, StandardInput, Data, URL, InvalidAddress>;
    DocumentSource(Origin origin, std::string name) : origin_(std::move(origin)), name_(std::move(name)) {}

    friend class DocumentReader;
    Origin origin_;
    std::string name_;
};

// What went wrong, from the host's point of view: it could not read the
// input at all, or what it read is not a document it can draw.
enum class DocumentFailure { none, unreadable, tooLarge, undecodable, undrawable };

// A decoded document that cannot be drawn, as an error: its first problem is
// the message, all of them are in `problems`.
class UndrawableDocumentError : public std::runtime_error {
public:
    explicit UndrawableDocumentError(std::vector<DocumentProblem> problems);
    std::vector<DocumentProblem> problems;
};

struct LoadedDocument {
    std::shared_ptr<OverlayGen> document;  // set when it passed; the host's to adjust before drawing
    DocumentFailure failure = DocumentFailure::none;
    // One line each, without the source's name: "cannot read: No such file
    // or directory", "ratios[0].weight: ...".
    std::vector<DocumentProblem> problems;
    // The failure as thrown: std::filesystem::filesystem_error (unreadable,
    // or file_too_large), DownloadError (a web address that could not be
    // fetched, or answered other than 2xx), DecodingError, or
    // UndrawableDocumentError.
    std::exception_ptr error;

    bool ok() const { return document != nullptr; }
};

// The bytes of a source, read with the same bound and the same failures as
// loadDocument, for a host that decides by the bytes which kind of document
// they hold (an overlay document or a framing decision list).
struct LoadedBytes {
    Data bytes;                                   // the whole input when it was read
    DocumentFailure failure = DocumentFailure::none;  // unreadable or tooLarge otherwise
    std::vector<DocumentProblem> problems;
    std::exception_ptr error;

    bool ok() const { return failure == DocumentFailure::none; }
};

LoadedBytes loadDocumentBytes(const DocumentSource& source);

// Reads at most maximumDocumentBytes, decodes the property list and, unless
// `check` is false (for describing a document that may be bad), checks that
// it can be drawn. Never throws for bad input; std::bad_alloc passes through.
LoadedDocument loadDocument(const DocumentSource& source, bool check = true);

}  // namespace vantel
