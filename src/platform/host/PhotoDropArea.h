#pragma once

#include <QQuickItem>

namespace lamina {

/// Where pictures can be dropped from other windows: what comes goes to the screen on top, if that takes pictures.
class PhotoDropArea : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// True while something that can be dropped here is held over the area.
    Q_PROPERTY(bool hovered READ isHovered NOTIFY hoveredChanged FINAL)

public:
    explicit PhotoDropArea(QQuickItem* parent = nullptr);
    bool isHovered() const { return m_hovered; }

signals:
    void hoveredChanged();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void setHovered(bool hovered);

    bool m_hovered = false;
};

} // namespace lamina
