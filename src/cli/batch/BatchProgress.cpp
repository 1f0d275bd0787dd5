#include "cli/batch/BatchProgress.h"

#include "cli/common/ExitCode.h"
#include "cli/common/Messages.h"

namespace lamina {

BatchProgress::BatchProgress(std::size_t files, bool shown)
    : m_files(files)
    , m_bar(shown && files > 1)
{
}

void BatchProgress::done()
{
    const std::lock_guard lock(m_mutex);
    ++m_done;
    m_bar.show(share(), [this] { return text(); });
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

double BatchProgress::share() const
{
    return static_cast<double>(m_done) / static_cast<double>(m_files);
}

std::string BatchProgress::text() const
{
    const std::string left = m_remaining.text(share());
    return std::to_string(m_done) + " of " + std::to_string(m_files) + (left.empty() ? "" : ", " + left);
}

} // namespace lamina
