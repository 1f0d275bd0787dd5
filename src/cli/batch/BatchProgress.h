#pragma once

#include "cli/common/ProgressBar.h"
#include "cli/common/RemainingTime.h"
#include "platform/base/Result.h"

#include <cstddef>
#include <mutex>
#include <string>

namespace lamina {

/// What is told of many files while they are worked on: a bar with how many are done and how long the rest may take,
/// and a line for each one that fails. Usable from any thread.
class BatchProgress {
public:
    /// `shown`: draws the bar, where standard error is a terminal.
    BatchProgress(std::size_t files, bool shown);

    /// A file is done, for good or not.
    void done();
    /// A file has failed: its line is printed at once.
    void failed(const Error& error);
    /// Something that should be known of a file, which goes on.
    void warned(const Error& warning);

    /// Writes to standard output, which may be the terminal with the bar. Whether it could be written; if not, that is
    /// told.
    bool print(const std::string& text);

    /// Takes the bar away, and says how many have failed, if any.
    void finish();
    /// How many have failed.
    std::size_t failures() const;

private:
    void tell(const Error& error);
    double share() const;
    std::string text() const;

    const std::size_t m_files;
    const RemainingTime m_remaining;
    mutable std::mutex m_mutex;
    ProgressBar m_bar;
    std::size_t m_done = 0;
    std::size_t m_failures = 0;
};

} // namespace lamina
