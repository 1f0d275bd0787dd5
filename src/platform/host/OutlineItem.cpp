#include "platform/host/OutlineItem.h"

#include "platform/base/CGAffineTransform.h"
#include "platform/host/ImageConversion.h"
#include "platform/image/drawing/CGContext.h"

#include <optional>
#include <utility>

namespace lamina {

OutlineItem::OutlineItem(QQuickItem* parent)
    : DrawnItem(parent)
{
    connect(this, &OutlineItem::shownChanged, this, &OutlineItem::redraw);
}

void OutlineItem::setPath(const QVariant& path)
{
    const auto wanted = path.value<UIBezierPath>();
    if (wanted == m_path)
        return;
    m_path = wanted;
    emit shownChanged();
}

QImage OutlineItem::drawn(double pixelsPerUnit) const
{
    std::optional<CGContext> context =
        m_path.isEmpty() ? std::nullopt : CGContext::image({width(), height()}, false, pixelsPerUnit);
    if (!context)
        return {};
    UIBezierPath line = m_path;
    // Inside by half of its width, so that all of it is seen along the item's edges.
    line.applyTransform(CGAffineTransform::scaling(width() - m_lineWidth, height() - m_lineWidth)
                            .concatenating(CGAffineTransform::translation(m_lineWidth / 2, m_lineWidth / 2)));
    line.lineJoin = UIBezierPath::LineJoin::Round;
    for (const auto& [color, grow] : {std::pair{m_underColor, 2.0}, {m_color, 0.0}}) {
        line.lineWidth = m_lineWidth + grow;
        context->setStrokeColor(uiColor(color));
        context->strokePath(line);
    }
    return qImage(context->makeImage());
}

} // namespace lamina
