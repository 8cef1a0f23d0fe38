#include "BatchProgress.hpp"

#include <unistd.h>

#include <ostream>

namespace vantel::cli {

BatchProgress::BatchProgress(std::size_t total, bool showProgress, std::ostream& output, std::ostream& errors)
    : total_(total), done_(total, false), waitingLines_(total), showProgress_(showProgress), output_(output),
      errors_(errors) {}

void BatchProgress::succeeded(std::size_t index) {
    std::lock_guard lock(mutex_);
    ++rendered_;
    finished(index, {});
}

void BatchProgress::failed(std::size_t index, std::vector<std::string> lines) {
    std::lock_guard lock(mutex_);
    ++failed_;
    finished(index, std::move(lines));
}

// Writes the lines of every file whose turn has come, then the progress.
void BatchProgress::finished(std::size_t index, std::vector<std::string> lines) {
    done_.at(index) = true;
    waitingLines_[index] = std::move(lines);
    bool cleared = false;
    for (; nextToReport_ < total_ && done_[nextToReport_]; ++nextToReport_) {
        std::vector<std::string> due = std::move(waitingLines_[nextToReport_]);
        if (due.empty()) continue;
        if (!cleared) clearProgress();
        cleared = true;
        for (const std::string& line : due) errors_ << line << '\n';
    }
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
