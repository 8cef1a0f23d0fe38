#pragma once

// What a batch of renders tells the person running it: one error line per
// failed file as it happens, a progress line ("\rrendered 3/10") while the
// batch runs when standard error is a terminal, and a summary at the end.
// Workers on any thread report here; the lines never interleave.

#include <cstddef>
#include <iosfwd>
#include <mutex>
#include <string>
#include <vector>

namespace vantel::cli {

class BatchProgress {
public:
    // `showProgress`: draw the progress line on `errors` (a terminal).
    BatchProgress(std::size_t total, bool showProgress, std::ostream& output, std::ostream& errors);

    void succeeded();
    void failed(const std::vector<std::string>& lines);

    // "rendered 9 of 10 files, 1 failed" on `output`, after clearing the progress line.
    void finish();

    std::size_t failures() const;

    // Whether standard error is a terminal.
    static bool standardErrorIsTerminal();

private:
    void drawProgress();
    void clearProgress();

    mutable std::mutex mutex_;
    std::size_t total_;
    std::size_t rendered_ = 0;
    std::size_t failed_ = 0;
    bool showProgress_;
    std::ostream& output_;
    std::ostream& errors_;
};

}  // namespace vantel::cli
