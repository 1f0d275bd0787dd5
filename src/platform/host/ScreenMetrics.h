#pragma once

#include <QObject>

class QQuickWindow;

namespace lamina {

/// Keeps `UIScreen::main()` what the window is: as wide as its shorter side, from 320 to 430 points, and at least three
/// pixels a point, which keeps masks and edges sharp where the display is coarser. A screen that has loaded keeps the
/// width it found.
class ScreenMetrics : public QObject {
public:
    explicit ScreenMetrics(QQuickWindow& window);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void update();

    QQuickWindow& m_window;
};

} // namespace lamina
