#pragma once

// Downloading a web address into a temporary file, over libcurl. Certificates
// are checked, only http and https are spoken (redirects included), and the
// transfer has a time limit and, when asked, a size limit that stops it as
// soon as more bytes arrive than allowed.

#include <Platform/TemporaryFiles.hpp>
#include <Platform/URL.hpp>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

namespace vantel {

struct HTTPResponse {
    URL url;                   // the address that answered, after redirects
    long statusCode = 0;       // 200, 404, ...
    std::string mimeType;      // from Content-Type; empty when not given
    std::optional<std::uint64_t> expectedContentLength;
};

struct DownloadLimits {
    std::chrono::milliseconds timeout{std::chrono::seconds(60)};  // the whole transfer
    std::chrono::milliseconds connectTimeout{std::chrono::seconds(15)};
    long maximumRedirects = 5;
    std::optional<std::uint64_t> maximumBytes;  // of the body as it arrives
    // A PEM file of certificate authorities to trust instead of the system's.
    std::optional<std::filesystem::path> certificateAuthorities;
};

class DownloadError : public std::runtime_error {
public:
    enum class Reason {
        certificateRefused,
        timedOut,
        connectionRefused,
        hostNotFound,
        tooLarge,
        tooManyRedirects,
        fileError,
        unsuccessfulStatus,  // for callers that want a 2xx answer: downloadToTemporaryFile never throws it
        other
    };
    DownloadError(Reason reason, const std::string& message) : std::runtime_error(message), reason(reason) {}
    Reason reason;
};

struct HTTPDownload {
    std::filesystem::path file;  // a new file in the temporary folder; the caller's to remove
    HTTPResponse response;
    CleanupOnSignal cleanup;     // removes the file if a signal ends the process first
};

// Any answer is a response, whatever its status: a 404 comes back with status
// 404 and its body in the file. Failures to get an answer throw DownloadError
// with a one-line reason ("the connection was refused") and leave no file.
HTTPDownload downloadToTemporaryFile(const URL& url, const DownloadLimits& limits = {});

// "404 Not Found": the status with its usual reason phrase, when it has a
// well-known one.
std::string statusText(long statusCode);

}  // namespace vantel
