#pragma once

#include <csignal>

namespace lamina {

/// Growing past the process's limit for files raises a signal that ends it; held back for as long as this object lives,
/// in its thread, the write fails in the ordinary way.
class FileSizeSignalBlocker {
public:
    FileSizeSignalBlocker();
    ~FileSizeSignalBlocker();
    FileSizeSignalBlocker(const FileSizeSignalBlocker&) = delete;
    FileSizeSignalBlocker& operator=(const FileSizeSignalBlocker&) = delete;

private:
    sigset_t m_signal;
    sigset_t m_before;
};

} // namespace lamina
