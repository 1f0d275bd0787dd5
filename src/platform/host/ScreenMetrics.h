#pragma once

#include <QObject>
#include <QSizeF>

class QQuickWindow;

namespace lamina {

/// Keeps `UIScreen::main()` what the window is: as wide as its shorter side, from 320 to 430 points, and at least three
/// pixels a point, which keeps masks and edges sharp where the display is coarser. A screen that has loaded keeps the
/// width it found.
///
/// Tells of the window's own size too, as it is.
class ScreenMetrics : public QObject {
    Q_OBJECT

public:
    explicit ScreenMetrics(QQuickWindow& window);

    /// Looks at the window now; otherwise that is done when it changes. Nothing while it has no size.
    void update();

signals:
    /// Points; also where only the display's scale is another.
    void sizeChanged(QSizeF size);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    QQuickWindow& m_window;
};

} // namespace lamina
