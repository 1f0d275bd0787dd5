#pragma once

#include <QImage>
#include <QQmlEngine>
#include <QQuickItem>
#include <QRectF>

namespace lamina {

/// A part of the chrome that we draw ourselves, at the display's own pixels: drawn again when its size, its screen or
/// what it shows changes. The same pixels come out of every renderer of the window.
class DrawnItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS

public:
    explicit DrawnItem(QQuickItem* parent = nullptr);

protected:
    /// What stands over `drawnRect`, so many pixels to the item's unit; null: nothing. Main thread; only with an area.
    virtual QImage drawn(double pixelsPerUnit) const = 0;
    /// Where, in the item's coordinates; its top left counts, the size is the drawn image's. Default: the item.
    virtual QRectF drawnRect() const { return boundingRect(); }
    /// To be called when something else is to be shown.
    void redraw() { polish(); }

    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void updatePolish() override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;

private:
    QImage m_image;
    QRectF m_rect;
    bool m_imageChanged = false;
};

} // namespace lamina
