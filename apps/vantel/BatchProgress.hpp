#pragma once

// What a batch of renders tells the person running it: the error lines of
// each failed file, a progress line ("\rrendered 3/10") while the batch runs
// when standard error is a terminal, and a summary at the end. Workers on any
// thread report here; the lines never interleave.
//
// Error lines come in the batch's order (natural order of the names), not in
// the order workers happen to finish: a file's lines wait until every file
// before it is done, so two runs of one batch report alike.

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

    // Report on the file at `index` (0 to total - 1) of the batch.
    void succeeded(std::size_t index);
    void failed(std::size_t index, std::vector<std::string> lines);

    // "rendered 9 of 10 files, 1 failed" on `output`, after clearing the progress line.
    void finish();

    std::size_t failures() const;

    // Whether standard error is a terminal.
    static bool standardErrorIsTerminal();

private:
    void finished(std::size_t index, std::vector<std::string> lines);
    void drawProgress();
    void clearProgress();

    mutable std::mutex mutex_;
    std::size_t total_;
    std::size_t rendered_ = 0;
    std::size_t failed_ = 0;
    std::vector<bool> done_;
    std::vector<std::vector<std::string>> waitingLines_;  // of files done before an earlier one
    std::size_t nextToReport_ = 0;
    bool showProgress_;
    std::ostream& output_;
    std::ostream& errors_;
};

}  // namespace vantel::cli
