#include "platform/host/PictureItem.h"

#include "platform/host/ImageConversion.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIBezierPath.h"
#include "platform/image/drawing/UIImageDrawing.h"
#include "platform/view/UIImageMetaType.h"

#include <algorithm>
#include <optional>

namespace lamina {

namespace {

CGRect centredRect(CGSize picture, double scale, const CGRect& box)
{
    const CGSize size{picture.width * scale, picture.height * scale};
    return {box.midX() - size.width / 2, box.midY() - size.height / 2, size.width, size.height};
}

} // namespace

CGRect coveringRect(CGSize picture, const CGRect& box)
{
    return centredRect(picture, std::max(box.size.width / picture.width, box.size.height / picture.height), box);
}

CGRect containedRect(CGSize picture, const CGRect& box)
{
    return centredRect(picture, std::min(box.size.width / picture.width, box.size.height / picture.height), box);
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
    redraw();
    emit pictureChanged();
}

void PictureItem::setRadius(qreal radius)
{
    if (m_radius == radius)
        return;
    m_radius = radius;
    redraw();
    emit radiusChanged();
}

void PictureItem::setCutOut(bool cutOut)
{
    if (m_cutOut == cutOut)
        return;
    m_cutOut = cutOut;
    redraw();
    emit cutOutChanged();
}

QImage PictureItem::drawn(double pixelsPerUnit) const
{
    const CGRect whole(0, 0, width(), height());
    std::optional<CGContext> context = CGContext::image(whole.size, false, pixelsPerUnit);
    if (!m_picture || !context)
        return {};
    if (m_cutOut) {
        drawInRect(m_picture, *context, containedRect(m_picture.size(), whole));
        return qImage(context->makeImage());
    }
    if (m_radius > 0)
        context->clipToPath(UIBezierPath::withRoundedRect(whole, m_radius));
    context->beginTransparencyLayer(); // so that white is not seen along round corners
    drawOnPaper(m_picture, *context, whole, coveringRect(m_picture.size(), whole));
    context->endTransparencyLayer();
    return qImage(context->makeImage());
}

} // namespace lamina
