#include "platform/host/PictureItem.h"

#include "platform/base/CGGeometry.h"
#include "platform/host/ImageConversion.h"
#include "platform/host/ImageNode.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIImageDrawing.h"
#include "platform/view/UIImageMetaType.h"

#include <QQuickWindow>

#include <algorithm>
#include <optional>

namespace lamina {

namespace {

/// The rectangle in which a picture of `picture` covers `box`, centred.
CGRect coveringRect(CGSize picture, CGSize box)
{
    const double scale = std::max(box.width / picture.width, box.height / picture.height);
    const CGSize size{picture.width * scale, picture.height * scale};
    return {(box.width - size.width) / 2, (box.height - size.height) / 2, size.width, size.height};
}

QImage drawn(const UIImage& picture, CGSize size, double radius, double pixelsPerUnit)
{
    std::optional<CGContext> context = CGContext::image(size, false, pixelsPerUnit);
    if (!context)
        return {};
    if (radius > 0)
        context->clipToPath(UIBezierPath::withRoundedRect(CGRect({}, size), radius));
    drawInRect(picture, *context, coveringRect(picture.size(), size));
    return qImage(context->makeImage());
}

} // namespace

PictureItem::PictureItem(QQuickItem* parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

QVariant PictureItem::picture() const
{
    return QVariant::fromValue(m_picture);
}

void PictureItem::setPicture(const QVariant& picture)
{
    const UIImage image = picture.value<UIImage>();
    if (image.cgImage().sharesBytesWith(m_picture.cgImage()) && image.cgImage().size() == m_picture.cgImage().size())
        return;
    m_picture = image;
    polish();
    emit pictureChanged();
}

void PictureItem::setRadius(qreal radius)
{
    if (m_radius == radius)
        return;
    m_radius = radius;
    polish();
    emit radiusChanged();
}

void PictureItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        polish();
}

void PictureItem::itemChange(ItemChange change, const ItemChangeData& data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange)
        polish();
}

void PictureItem::updatePolish()
{
    const bool visible = m_picture && window() && width() > 0 && height() > 0;
    m_drawn =
        visible ? drawn(m_picture, {width(), height()}, m_radius, window()->effectiveDevicePixelRatio()) : QImage();
    m_drawnChanged = true;
    update();
}

QSGNode* PictureItem::updatePaintNode(QSGNode* former, UpdatePaintNodeData*)
{
    return showImage(former, *window(), m_drawn, boundingRect(), m_drawnChanged);
}

} // namespace lamina
