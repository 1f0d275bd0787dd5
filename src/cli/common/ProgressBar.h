#pragma once

#include <chrono>
#include <functional>
#include <string>

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
    /// The same with words behind the bar, which are asked for ten times a second at most.
    void show(double done, const std::function<std::string()>& words);
    /// Words alone, of work that nobody knows the length of; asked for in the same way.
    void show(const std::function<std::string()>& words);
    /// Takes the bar away, so that a line can be printed; the next `show` draws it again.
    void hide();

private:
    bool isTime();
    void draw(double done, const std::string& words);
    void draw(const std::string& line);

    bool m_shown;
    bool m_isDrawn = false;
    int m_percent = -1;
    std::chrono::steady_clock::time_point m_next;
};

} // namespace lamina
