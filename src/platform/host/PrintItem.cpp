#include "platform/host/PrintItem.h"

#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/host/ImageConversion.h"
#include "platform/host/PictureItem.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIBezierPath.h"
#include "platform/image/drawing/UIImageDrawing.h"
#include "platform/image/named/NamedPictures.h"
#include "platform/view/UIImageMetaType.h"

#include <cmath>
#include <numbers>
#include <optional>

namespace lamina {

namespace {

/// One edge of the shadow of `sheet`.
CGRect edgeOf(const QVariantMap& edge, const CGRect& sheet)
{
    const double grow = edge.value(QStringLiteral("grow")).toDouble();
    return sheet.insetBy(-grow, -grow).offsetBy(0, edge.value(QStringLiteral("offset")).toDouble());
}

CGAffineTransform turned(const CGRect& sheet, double degrees)
{
    return CGAffineTransform::translation(-sheet.midX(), -sheet.midY())
        .concatenating(CGAffineTransform::rotation(degrees * std::numbers::pi / 180))
        .concatenating(CGAffineTransform::translation(sheet.midX(), sheet.midY()));
}

void fillRounded(CGContext& context, const CGRect& rect, double radius, const UIColor& color)
{
    context.setFillColor(color);
    context.fillPath(UIBezierPath::withRoundedRect(rect, radius));
}

} // namespace

PrintItem::PrintItem(QQuickItem* parent)
    : DrawnItem(parent)
{
    connect(this, &PrintItem::shownChanged, this, &PrintItem::redraw);
}

void PrintItem::setPicture(const QVariant& picture)
{
    m_picture = picture.value<UIImage>();
    emit shownChanged();
}

QRectF PrintItem::drawnRect() const
{
    const CGRect sheet(0, 0, width(), height());
    CGRect all = sheet;
    for (const QVariant& edge : m_shadow)
        all = all.unionWith(edgeOf(edge.toMap(), sheet));
    const CGRect box = turned(sheet, m_turn).boundingBox(all);
    const double left = std::floor(box.minX());
    const double top = std::floor(box.minY());
    return {left, top, std::ceil(box.maxX()) - left, std::ceil(box.maxY()) - top};
}

QImage PrintItem::drawn(double pixelsPerUnit) const
{
    const CGRect sheet(0, 0, width(), height());
    const QRectF area = drawnRect();
    std::optional<CGContext> context = CGContext::image({area.width(), area.height()}, false, pixelsPerUnit);
    if (!context)
        return {};
    context->translateCTM(-area.x(), -area.y());
    context->concatCTM(turned(sheet, m_turn));
    for (const QVariant& edge : m_shadow) {
        const QVariantMap values = edge.toMap();
        fillRounded(*context, edgeOf(values, sheet), m_radius,
                    uiColor(m_shadowColor, values.value(QStringLiteral("alpha")).toDouble()));
    }
    fillRounded(*context, sheet, m_radius, uiColor(m_color));
    if (!m_art.isEmpty())
        drawImageNamed(m_art.toStdString(), *context, sheet);
    if (m_picture) {
        const CGRect inside = sheet.insetBy(m_margin, m_margin);
        context->saveGState();
        context->clipToPath(UIBezierPath::withRect(inside));
        drawInRect(m_picture, *context, coveringRect(m_picture.size(), inside));
        context->restoreGState();
    }
    return qImage(context->makeImage());
}

} // namespace lamina
