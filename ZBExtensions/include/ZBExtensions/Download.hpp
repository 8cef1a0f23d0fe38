#pragma once

// Downloading a web address into a temporary file that lives as long as the
// handle: move the file away to keep it.

#include <Platform/HTTPDownload.hpp>
#include <Platform/URL.hpp>

namespace vantel {

class DownloadedFile {
public:
    DownloadedFile(URL location, HTTPResponse response, CleanupOnSignal cleanup = {})
        : location(std::move(location)), response(std::move(response)), cleanup_(std::move(cleanup)) {}
    DownloadedFile(DownloadedFile&& other) noexcept;
    DownloadedFile& operator=(DownloadedFile&& other) noexcept;
    DownloadedFile(const DownloadedFile&) = delete;
    DownloadedFile& operator=(const DownloadedFile&) = delete;
    ~DownloadedFile();

    URL location;  // the temporary file
    HTTPResponse response;

private:
    void removeFile() noexcept;
    CleanupOnSignal cleanup_;
    bool owned_ = true;
};

// Blocks until the transfer ends. Any answer comes back, whatever its status
// (check response.statusCode); failing to get one throws DownloadError.
DownloadedFile downloadFile(const URL& from, const DownloadLimits& limits = {});

}  // namespace vantel
