#include "gpu/endpoints/FrameExchange.h"

#include "gpu/core/GPUImageContext.h"
#include "platform/base/Clock.h"
#include "platform/base/UIScreen.h"

#include <cmath>
#include <utility>

namespace lamina {

namespace {

/// More pixels than on a side of any window.
constexpr double kLongestSide = 8192;

} // namespace

bool DisplayGeometry::isSettled() const
{
    return Clock::shared()->now() - since >= kSettlingTime;
}

IntSize DisplayGeometry::pixels() const
{
    const CGSize sides = GPUImageContext::sizeThatFits({bounds.width * scale, bounds.height * scale}, kLongestSide);
    return {static_cast<int>(std::lround(sides.width)), static_cast<int>(std::lround(sides.height))};
}

FrameExchange::FrameExchange()
{
    m_geometry.scale = UIScreen::main().scale;
}

/// Under the lock, and whether it was another one.
bool FrameExchange::change(const DisplayGeometry& geometry)
{
    if (geometry.bounds == m_geometry.bounds && geometry.scale == m_geometry.scale)
        return false;
    m_geometry = geometry;
    m_geometry.since = Clock::shared()->now();
    return true;
}

/// Not under the lock.
void FrameExchange::tellIf(bool hasChanged) const
{
    if (hasChanged && m_geometryChanged)
        m_geometryChanged();
}

void FrameExchange::setBounds(CGSize bounds)
{
    bool hasChanged = false;
    {
        const std::scoped_lock lock(m_mutex);
        hasChanged = change({bounds, m_geometry.scale});
    }
    tellIf(hasChanged);
}

DisplayGeometry FrameExchange::geometry() const
{
    const std::scoped_lock lock(m_mutex);
    return m_geometry;
}

GPUImageFillMode FrameExchange::fillMode() const
{
    const std::scoped_lock lock(m_mutex);
    return m_fillMode;
}

void FrameExchange::setFillMode(GPUImageFillMode fillMode)
{
    const std::scoped_lock lock(m_mutex);
    m_fillMode = fillMode;
}

FrameExchange::Color FrameExchange::backgroundColor() const
{
    const std::scoped_lock lock(m_mutex);
    return m_backgroundColor;
}

void FrameExchange::setBackgroundColor(const Color& color)
{
    const std::scoped_lock lock(m_mutex);
    m_backgroundColor = color;
}

IntSize FrameExchange::sizeInPixels() const
{
    const std::scoped_lock lock(m_mutex);
    return m_sizeInPixels;
}

void FrameExchange::setSizeInPixels(IntSize size)
{
    const std::scoped_lock lock(m_mutex);
    m_sizeInPixels = size;
}

bool FrameExchange::notePainting(double scale)
{
    bool hasChanged = false;
    {
        const std::scoped_lock lock(m_mutex);
        hasChanged = scale > 0 && std::isfinite(scale) && change({m_geometry.bounds, scale});
    }
    tellIf(hasChanged);
    const std::scoped_lock lock(m_mutex);
    if (m_step != Step::Unseen && m_step != Step::OnShow)
        return false;
    m_step = Step::Wanted;
    return std::exchange(m_frameWaits, false);
}

std::optional<DisplayedFrame> FrameExchange::take()
{
    const std::scoped_lock lock(m_mutex);
    if (m_step == Step::OnItsWay)
        m_step = Step::OnShow;
    return std::exchange(m_coming, std::nullopt);
}

bool FrameExchange::beginDrawing()
{
    const std::scoped_lock lock(m_mutex);
    m_frameWaits = m_step != Step::Wanted;
    if (m_frameWaits)
        return false;
    m_step = Step::Drawing;
    return true;
}

void FrameExchange::endDrawing(std::optional<DisplayedFrame> frame)
{
    const std::scoped_lock lock(m_mutex);
    m_step = frame ? Step::OnItsWay : Step::Wanted;
    m_coming = std::move(frame);
}

} // namespace lamina
