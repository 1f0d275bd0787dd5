#include "platform/host/DrawnItem.h"

#include "platform/host/ImageNode.h"

#include <QQuickWindow>

namespace lamina {

DrawnItem::DrawnItem(QQuickItem* parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

void DrawnItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        redraw();
}

void DrawnItem::itemChange(ItemChange change, const ItemChangeData& data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange)
        redraw();
}

void DrawnItem::updatePolish()
{
    const bool visible = window() && width() > 0 && height() > 0;
    const double scale = visible ? window()->effectiveDevicePixelRatio() : 1;
    m_image = visible ? drawn(scale) : QImage();
    m_rect = {drawnRect().topLeft(), QSizeF(m_image.size()) / scale};
    m_imageChanged = true;
    update();
}

QSGNode* DrawnItem::updatePaintNode(QSGNode* former, UpdatePaintNodeData*)
{
    return showImage(former, *window(), m_image, m_rect, m_imageChanged);
}

} // namespace lamina
