#include "BatchProgress.hpp"

#include <unistd.h>

#include <ostream>

namespace vantel::cli {

BatchProgress::BatchProgress(std::size_t total, bool showProgress, std::ostream& output, std::ostream& errors)
    : total_(total), showProgress_(showProgress), output_(output), errors_(errors) {}

void BatchProgress::succeeded() {
    std::lock_guard lock(mutex_);
    ++rendered_;
    drawProgress();
}

void BatchProgress::failed(const std::vector<std::string>& lines) {
    std::lock_guard lock(mutex_);
    ++failed_;
    clearProgress();
    for (const std::string& line : lines) errors_ << line << '\n';
    drawProgress();
}

void BatchProgress::finish() {
    std::lock_guard lock(mutex_);
    clearProgress();
    errors_.flush();
    output_ << "rendered " << rendered_ << " of " << total_ << (total_ == 1 ? " file" : " files");
    if (failed_ > 0) output_ << ", " << failed_ << " failed";
    output_ << '\n';
    output_.flush();
}

std::size_t BatchProgress::failures() const {
    std::lock_guard lock(mutex_);
    return failed_;
}

bool BatchProgress::standardErrorIsTerminal() { return ::isatty(STDERR_FILENO) == 1; }

void BatchProgress::drawProgress() {
    if (!showProgress_) return;
    errors_ << "\rrendered " << rendered_ + failed_ << '/' << total_ << std::flush;
}

// Erases the progress line so that the next line starts at the left edge.
void BatchProgress::clearProgress() {
    if (!showProgress_) return;
    errors_ << "\r\033[K" << std::flush;
}

}  // namespace vantel::cli
