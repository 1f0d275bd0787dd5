#include "hud/MBBarProgressView.h"

#include "hud/DrawnIndicator_p.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/image/drawing/UIBezierPath.h"

#include <cmath>
#include <numbers>

namespace lamina {

namespace {

using std::numbers::pi;

constexpr CGSize kSize{120, 10};
constexpr double kLineWidth = 2;
constexpr double kOutlineInset = 2;
constexpr double kInset = 4; ///< of the bar within the bounds

/// The bar from its left end to `amount` in an area of `size` at the origin, closed. Its ends are half circles; where
/// `amount` falls into one of these, the bar ends with it, cut straight.
UIBezierPath bar(CGSize size, double amount)
{
    const double radius = size.height / 2 - kInset;
    const double middle = size.height / 2;
    const double rightCentre = size.width - radius - kInset;
    UIBezierPath path;
    if (amount < radius + kInset) { // within the left end, whose angles are counted from its leftmost point
        const double reach = std::acos(std::fmin(1, (radius + kInset - amount) / radius));
        path.addArc({radius + kInset, middle}, radius, pi - reach, pi + reach, true);
    } else if (amount <= rightCentre) {
        path.addArc({radius + kInset, middle}, radius, pi / 2, 3 * pi / 2, true);
        path.addLineToPoint({amount, middle - radius});
        path.addLineToPoint({amount, middle + radius});
    } else { // cut within the right end, whose angles are counted from its rightmost point
        const double reach = std::acos(std::fmin(1, (amount - rightCentre) / radius));
        path.addArc({radius + kInset, middle}, radius, pi / 2, 3 * pi / 2, true);
        path.addArc({rightCentre, middle}, radius, -pi / 2, -reach, true);
        path.addArc({rightCentre, middle}, radius, reach, pi / 2, true);
    }
    path.closePath();
    return path;
}

} // namespace

MBBarProgressView::MBBarProgressView()
    : MBBarProgressView(std::make_shared<DrawnLayer>())
{
}

MBBarProgressView::MBBarProgressView(std::shared_ptr<DrawnLayer> layer)
    : UIView({{}, kSize}, layer)
    , m_drawn(*layer)
{
    m_drawn.setDraw([this](CGContext& context, const CGRect& bounds) { draw(context, bounds); });
    setOpaque(false);
    setBackgroundColor(UIColor::clear());
}

void MBBarProgressView::setProgress(float progress)
{
    replace(m_progress, progress, m_drawn);
}

void MBBarProgressView::setLineColor(const UIColor& color)
{
    replace(m_lineColor, color, m_drawn);
}

void MBBarProgressView::setProgressRemainingColor(const UIColor& color)
{
    replace(m_progressRemainingColor, color, m_drawn);
}

void MBBarProgressView::setProgressColor(const UIColor& color)
{
    replace(m_progressColor, color, m_drawn);
}

CGSize MBBarProgressView::intrinsicContentSize() const
{
    return kSize;
}

void MBBarProgressView::draw(CGContext& context, const CGRect& bounds) const
{
    UIBezierPath outline = UIBezierPath::withRoundedRect(bounds.insetBy(kOutlineInset, kOutlineInset),
                                                         bounds.size.height / 2 - kOutlineInset);
    outline.lineWidth = kLineWidth;
    context.setFillColor(m_progressRemainingColor);
    context.fillPath(outline);
    context.setStrokeColor(m_lineColor);
    context.strokePath(outline);
    const double amount = drawableProgress(m_progress) * bounds.size.width;
    if (amount <= kInset || bounds.size.height <= 2 * kInset)
        return;
    context.translateCTM(bounds.minX(), bounds.minY());
    context.setFillColor(m_progressColor);
    context.fillPath(bar(bounds.size, amount));
}

} // namespace lamina
