#include "platform/view/CAShapeLayer.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIBezierPath.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

namespace lamina {

void CAShapeLayer::setPath(const UIBezierPath& path)
{
    if (path == m_path)
        return;
    m_path = path;
    changed();
}

void CAShapeLayer::setFillColor(const std::optional<UIColor>& color)
{
    if (color == m_fillColor)
        return;
    m_fillColor = color;
    changed();
}

void CAShapeLayer::setStrokeColor(const std::optional<UIColor>& color)
{
    if (color == m_strokeColor)
        return;
    m_strokeColor = color;
    changed();
}

void CAShapeLayer::setLineWidth(double width)
{
    const double sane = std::max(0.0, width);
    if (!std::isfinite(width) || sane == m_lineWidth)
        return;
    m_lineWidth = sane;
    changed();
}

CGRect CAShapeLayer::drawnBounds() const
{
    if (m_path.isEmpty() || (!m_fillColor && !m_strokeColor))
        return {};
    const CGRect box = m_path.controlBounds();
    if (!m_strokeColor)
        return box;
    // A mitre reaches no further than its limit of half widths, the corner of a square end than the root of two.
    const double reach = m_lineWidth / 2 * std::max(m_path.miterLimit, std::numbers::sqrt2);
    return box.insetBy(-reach, -reach);
}

void CAShapeLayer::drawInContext(CGContext& context) const
{
    if (m_fillColor) {
        context.setFillColor(*m_fillColor);
        context.fillPath(m_path);
    }
    if (m_strokeColor && m_lineWidth > 0) {
        UIBezierPath outline = m_path;
        outline.lineWidth = m_lineWidth;
        context.setStrokeColor(*m_strokeColor);
        context.strokePath(outline);
    }
}

} // namespace lamina
