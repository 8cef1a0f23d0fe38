#include <ZBExtensions/Download.hpp>

#include <filesystem>
#include <system_error>

namespace vantel {

DownloadedFile::DownloadedFile(DownloadedFile&& other) noexcept
    : location(std::move(other.location)),
      response(std::move(other.response)),
      cleanup_(std::move(other.cleanup_)),
      owned_(other.owned_) {
    other.owned_ = false;
}

DownloadedFile& DownloadedFile::operator=(DownloadedFile&& other) noexcept {
    if (this != &other) {
        removeFile();
        location = std::move(other.location);
        response = std::move(other.response);
        cleanup_ = std::move(other.cleanup_);
        owned_ = other.owned_;
        other.owned_ = false;
    }
    return *this;
}

DownloadedFile::~DownloadedFile() { removeFile(); }

// A file already moved away is simply not there any more.
void DownloadedFile::removeFile() noexcept {
    if (!owned_) return;
    std::error_code ignored;
    std::filesystem::remove(location.path(), ignored);
    cleanup_.release();
    owned_ = false;
}

DownloadedFile downloadFile(const URL& from, const DownloadLimits& limits) {
    HTTPDownload download = downloadToTemporaryFile(from, limits);
    return {URL::fileURL(download.file), std::move(download.response), std::move(download.cleanup)};
}

}  // namespace vantel
