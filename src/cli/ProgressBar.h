#pragma once

namespace lamina {

/// A bar on standard error, where that is a terminal, that goes away with its owner. One thread at a time.
class ProgressBar {
public:
    /// Not `shown`: nothing is ever drawn.
    explicit ProgressBar(bool shown);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// What is done, 0 to 1. Drawn anew when the number on it changes.
    void show(double done);

private:
    bool m_shown;
    int m_percent = -1;
};

} // namespace lamina
