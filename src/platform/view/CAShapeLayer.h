#pragma once

#include "platform/view/CALayer.h"

namespace lamina {

/// A layer that paints a path, in its own coordinates.
class CAShapeLayer : public CALayer {
public:
    const UIBezierPath& path() const { return m_path; }
    void setPath(const UIBezierPath& path);
    /// Default black; none: the inside is not painted.
    std::optional<UIColor> fillColor() const { return m_fillColor; }
    void setFillColor(const std::optional<UIColor>& color);
    /// Default none.
    std::optional<UIColor> strokeColor() const { return m_strokeColor; }
    void setStrokeColor(const std::optional<UIColor>& color);
    /// Points; default 1. Takes the place of the path's own width; ends, joins and dashes are the path's.
    double lineWidth() const { return m_lineWidth; }
    void setLineWidth(double width);

protected:
    void drawInContext(CGContext& context) const override;
    CGRect drawnBounds() const override;

private:
    UIBezierPath m_path;
    std::optional<UIColor> m_fillColor = UIColor::black();
    std::optional<UIColor> m_strokeColor;
    double m_lineWidth = 1;
};

} // namespace lamina
