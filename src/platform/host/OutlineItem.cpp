#include "platform/host/OutlineItem.h"

#include "platform/base/CGAffineTransform.h"
#include "platform/base/UIColor.h"
#include "platform/host/ImageConversion.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIBezierPath.h"

#include <optional>
#include <utility>
#include <vector>

namespace lamina {

namespace {

std::vector<UIBezierPath> scaledPaths(const QVariantList& paths, double width, double height)
{
    std::vector<UIBezierPath> scaled;
    for (const QVariant& path : paths) {
        scaled.push_back(path.value<UIBezierPath>());
        scaled.back().applyTransform(CGAffineTransform::scaling(width, height));
        scaled.back().lineJoin = UIBezierPath::LineJoin::Round;
    }
    return scaled;
}

/// The edge of the first along its inside; each of those over it takes away what it covers, and its own edge goes on
/// round that.
void strokeInside(CGContext& context, std::vector<UIBezierPath>& paths, const UIColor& color, double width)
{
    context.setStrokeColor(color);
    for (UIBezierPath& path : paths) {
        path.lineWidth = 2 * width;
        context.strokePath(path);
        if (&path == &paths.front())
            continue;
        context.setBlendMode(CGBlendMode::Clear);
        context.fillPath(path);
        context.setBlendMode(CGBlendMode::Normal);
    }
}

} // namespace

OutlineItem::OutlineItem(QQuickItem* parent)
    : DrawnItem(parent)
{
    connect(this, &OutlineItem::shownChanged, this, &OutlineItem::redraw);
}

QImage OutlineItem::drawn(double pixelsPerUnit) const
{
    std::vector<UIBezierPath> paths = scaledPaths(m_paths, width(), height());
    std::optional<CGContext> context =
        paths.empty() ? std::nullopt : CGContext::image({width(), height()}, false, pixelsPerUnit);
    if (!context)
        return {};
    context->clipToPath(paths.front());
    strokeInside(*context, paths, uiColor(m_underColor), m_lineWidth + 1);
    strokeInside(*context, paths, uiColor(m_color), m_lineWidth);
    return qImage(context->makeImage());
}

} // namespace lamina
