#include "gpu/core/DrawingFailures.h"

#include "platform/base/Log.h"

#include <mutex>
#include <utility>

namespace lamina {

namespace {

std::mutex s_mutex;
DrawingFailures* s_youngest = nullptr;

} // namespace

DrawingFailures::DrawingFailures()
{
    const std::scoped_lock lock(s_mutex);
    m_former = std::exchange(s_youngest, this);
}

DrawingFailures::~DrawingFailures()
{
    const std::scoped_lock lock(s_mutex);
    s_youngest = m_former;
}

std::optional<std::string> DrawingFailures::first() const
{
    const std::scoped_lock lock(s_mutex);
    return m_first;
}

void DrawingFailures::note(const std::string& cause)
{
    {
        const std::scoped_lock lock(s_mutex);
        if (s_youngest && !s_youngest->m_first)
            s_youngest->m_first = cause;
        if (s_youngest)
            return;
    }
    logError("OpenGL ES: " + cause);
}

void DrawingFailures::note(const std::string& cause, IntSize pixels)
{
    note(cause + " for " + std::to_string(pixels.width) + " x " + std::to_string(pixels.height) + " pixels");
}

} // namespace lamina
