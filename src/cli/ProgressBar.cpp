#include "cli/ProgressBar.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace lamina {

namespace {

constexpr int kCells = 40;

} // namespace

ProgressBar::ProgressBar(bool shown)
    : m_shown(shown && isatty(STDERR_FILENO))
{
}

ProgressBar::~ProgressBar()
{
    if (m_percent >= 0)
        std::fputs("\r\x1b[K", stderr); // back to the line's beginning, and clear it
}

void ProgressBar::show(double done)
{
    const int percent = static_cast<int>(100 * std::clamp(done, 0.0, 1.0));
    if (!m_shown || percent == m_percent)
        return;
    m_percent = percent;
    const int full = percent * kCells / 100;
    const std::string bar =
        std::string(static_cast<std::size_t>(full), '#') + std::string(static_cast<std::size_t>(kCells - full), '.');
    std::fprintf(stderr, "\r[%s] %d %%", bar.c_str(), percent);
}

} // namespace lamina
