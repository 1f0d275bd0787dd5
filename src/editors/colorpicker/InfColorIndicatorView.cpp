#include "editors/colorpicker/InfColorIndicatorView.h"

#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIBezierPath.h"
#include "platform/view/DrawnLayer.h"

namespace lamina {

namespace {

constexpr double kTurn = 6.2831854820251465; // in single precision
constexpr double kLineWidth = 2;
constexpr double kEdgeInset = 1;
constexpr double kRimInset = 2;
constexpr UIColor kEdgeColor = UIColor::fromWhite(0, 0.5);
constexpr UIColor kRimColor = UIColor::fromWhite(1, 1);

} // namespace

InfColorIndicatorView::InfColorIndicatorView(const CGRect& frame)
    : InfColorIndicatorView(frame, std::make_shared<DrawnLayer>())
{
}

InfColorIndicatorView::InfColorIndicatorView(const CGRect& frame, std::shared_ptr<DrawnLayer> layer)
    : UIView(frame, layer)
    , m_drawn(*layer)
{
    m_drawn.setDraw([this](CGContext& context, const CGRect& bounds) { draw(context, bounds); });
    setOpaque(false);
    setUserInteractionEnabled(false);
}

void InfColorIndicatorView::setColor(const UIColor& color)
{
    replace(m_color, std::optional(color), m_drawn);
}

void InfColorIndicatorView::draw(CGContext& context, const CGRect& bounds) const
{
    const CGPoint center{bounds.midX(), bounds.midY()};
    const auto circle = [&](double inset) {
        UIBezierPath path = UIBezierPath::withArcCenter(center, bounds.size.width / 2 - inset, 0, kTurn, true);
        path.closePath();
        path.lineWidth = kLineWidth;
        return path;
    };
    if (m_color) {
        context.setFillColor(*m_color);
        context.fillPath(circle(kEdgeInset));
    }
    context.setStrokeColor(kEdgeColor);
    context.strokePath(circle(kEdgeInset));
    context.setStrokeColor(kRimColor);
    context.strokePath(circle(kRimInset));
}

} // namespace lamina
