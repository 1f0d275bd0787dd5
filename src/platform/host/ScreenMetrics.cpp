#include "platform/host/ScreenMetrics.h"

#include "platform/base/UIScreen.h"

#include <QEvent>
#include <QQuickWindow>

#include <algorithm>

namespace lamina {

namespace {

constexpr double kNarrowest = 320;
constexpr double kWidest = 430;
constexpr double kLeastScale = 3;

} // namespace

ScreenMetrics::ScreenMetrics(QQuickWindow& window)
    : m_window(window)
{
    window.installEventFilter(this);
    update();
}

bool ScreenMetrics::eventFilter(QObject* object, QEvent* event)
{
    const bool handled = QObject::eventFilter(object, event);
    if (event->type() == QEvent::Resize || event->type() == QEvent::Expose)
        update();
    return handled;
}

void ScreenMetrics::update()
{
    const double width = m_window.width();
    const double height = m_window.height();
    if (width <= 0 || height <= 0)
        return;
    UIScreen screen;
    screen.bounds.width = std::clamp(std::min(width, height), kNarrowest, kWidest);
    screen.bounds.height =
        std::max(width <= height || height < kWidest ? std::max(width, height) : height, screen.bounds.width);
    screen.scale = std::max(kLeastScale, static_cast<double>(m_window.effectiveDevicePixelRatio()));
    UIScreen::setMain(screen);
    emit sizeChanged({width, height});
}

} // namespace lamina
