#include "cli/BatchProgress.h"

#include "cli/ExitCode.h"
#include "cli/Messages.h"

#include <cmath>

namespace lamina {

namespace {

/// "40 s", "3 min", "2 h".
std::string roundedTime(double seconds)
{
    struct Unit {
        double seconds;
        const char* name;
    };
    constexpr Unit kUnits[] = {{3600, " h"}, {60, " min"}};
    for (const Unit& unit : kUnits) {
        if (seconds >= 2 * unit.seconds)
            return std::to_string(std::lround(seconds / unit.seconds)) + unit.name;
    }
    return std::to_string(std::lround(std::ceil(seconds))) + " s";
}

} // namespace

BatchProgress::BatchProgress(std::size_t files, bool shown)
    : m_files(files)
    , m_bar(shown && files > 1)
{
}

void BatchProgress::done()
{
    const std::lock_guard lock(m_mutex);
    ++m_done;
    m_bar.show(static_cast<double>(m_done) / static_cast<double>(m_files), [this] { return text(); });
}

void BatchProgress::failed(const Error& error)
{
    const std::lock_guard lock(m_mutex);
    tell(error);
    ++m_failures;
}

void BatchProgress::warned(const Error& warning)
{
    const std::lock_guard lock(m_mutex);
    tell(warning);
}

bool BatchProgress::print(const std::string& text)
{
    const std::lock_guard lock(m_mutex);
    m_bar.hide();
    return printData(text) == ExitCode::Good;
}

void BatchProgress::finish()
{
    const std::lock_guard lock(m_mutex);
    m_bar.hide();
    if (m_failures > 0)
        warn({{}, std::to_string(m_failures) + " of " + std::to_string(m_files) + " files failed"});
}

std::size_t BatchProgress::failures() const
{
    const std::lock_guard lock(m_mutex);
    return m_failures;
}

void BatchProgress::tell(const Error& error)
{
    m_bar.hide();
    warn(error);
}

std::string BatchProgress::text() const
{
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - m_begin;
    const double rest = passed.count() / static_cast<double>(m_done) * static_cast<double>(m_files - m_done);
    return std::to_string(m_done) + " of " + std::to_string(m_files) +
           (m_done < m_files ? ", " + roundedTime(rest) + " left" : std::string());
}

} // namespace lamina
