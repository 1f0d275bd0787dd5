#include "cli/common/ProgressBar.h"

#include "platform/base/StandardStreams.h"

#include <algorithm>
#include <cstddef>
#include <unistd.h>

namespace lamina {

namespace {

constexpr int kCells = 40;
constexpr const char* kEmptyLine = "\r\x1b[K"; // back to the line's beginning, and clear it

int percentOf(double done)
{
    return static_cast<int>(100 * std::clamp(done, 0.0, 1.0));
}

} // namespace

ProgressBar::ProgressBar(bool shown)
    : m_shown(shown && isatty(messageDescriptor()))
{
}

ProgressBar::~ProgressBar()
{
    hide();
}

void ProgressBar::show(double done)
{
    const int percent = percentOf(done);
    if (!m_shown || percent == m_percent)
        return;
    m_percent = percent;
    draw(done, std::to_string(percent) + " %");
}

bool ProgressBar::isTime()
{
    constexpr std::chrono::milliseconds kPause{100};
    const auto now = std::chrono::steady_clock::now();
    if (!m_shown || (m_isDrawn && now < m_next))
        return false;
    m_next = now + kPause;
    return true;
}

void ProgressBar::show(double done, const std::function<std::string()>& words)
{
    if (isTime())
        draw(done, words());
}

void ProgressBar::show(const std::function<std::string()>& words)
{
    if (isTime())
        draw(words());
}

void ProgressBar::hide()
{
    if (m_isDrawn)
        writeMessage(kEmptyLine);
    m_isDrawn = false;
    m_percent = -1;
}

void ProgressBar::draw(double done, const std::string& words)
{
    const auto full = static_cast<std::size_t>(percentOf(done) * kCells / 100);
    const std::string bar = std::string(full, '#') + std::string(static_cast<std::size_t>(kCells) - full, '.');
    draw("[" + bar + "] " + words);
}

void ProgressBar::draw(const std::string& line)
{
    writeMessage((m_isDrawn ? kEmptyLine : "") + line);
    m_isDrawn = true;
}

} // namespace lamina
