#include "hud/MBRoundProgressView.h"

#include "hud/DrawnIndicator_p.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/image/drawing/UIBezierPath.h"

#include <numbers>

namespace lamina {

namespace {

constexpr double kSide = 37;
constexpr double kTop = -std::numbers::pi / 2;
constexpr double kTurn = 2 * std::numbers::pi;
constexpr double kOutline = 2; ///< width of the pie's circle, and of the ring
constexpr double kPieLine = 4;

/// Clockwise from the top.
UIBezierPath arc(const CGRect& bounds, double radius, double share, double lineWidth)
{
    UIBezierPath path;
    path.addArc({bounds.midX(), bounds.midY()}, radius, kTop, kTop + kTurn * share, true);
    path.lineWidth = lineWidth;
    return path;
}

} // namespace

MBRoundProgressView::MBRoundProgressView()
    : MBRoundProgressView(std::make_shared<DrawnLayer>())
{
}

MBRoundProgressView::MBRoundProgressView(std::shared_ptr<DrawnLayer> layer)
    : UIView({0, 0, kSide, kSide}, layer)
    , m_drawn(*layer)
{
    m_drawn.setDraw([this](CGContext& context, const CGRect& bounds) { draw(context, bounds); });
    setOpaque(false);
}

void MBRoundProgressView::setProgress(float progress)
{
    replace(m_progress, progress, m_drawn);
}

void MBRoundProgressView::setAnnular(bool annular)
{
    replace(m_annular, annular, m_drawn);
}

void MBRoundProgressView::setProgressTintColor(const UIColor& color)
{
    replace(m_progressTintColor, color, m_drawn);
}

void MBRoundProgressView::setBackgroundTintColor(const UIColor& color)
{
    replace(m_backgroundTintColor, color, m_drawn);
}

CGSize MBRoundProgressView::intrinsicContentSize() const
{
    return {kSide, kSide};
}

void MBRoundProgressView::draw(CGContext& context, const CGRect& bounds) const
{
    if (m_annular)
        drawRing(context, bounds);
    else
        drawPie(context, bounds);
}

void MBRoundProgressView::drawPie(CGContext& context, const CGRect& bounds) const
{
    constexpr double kInset = kOutline / 2;
    UIBezierPath circle = UIBezierPath::withOvalIn(bounds.insetBy(kInset, kInset));
    circle.lineWidth = kOutline;
    context.setStrokeColor(m_progressTintColor);
    context.strokePath(circle);
    // Where the arc lies on the circle a translucent colour is to be seen once, not twice.
    context.setBlendMode(CGBlendMode::Copy);
    context.strokePath(arc(bounds, bounds.size.width / 2 - kPieLine / 2, drawableProgress(m_progress), kPieLine));
}

void MBRoundProgressView::drawRing(CGContext& context, const CGRect& bounds) const
{
    const double radius = (bounds.size.width - kOutline) / 2;
    context.setStrokeColor(m_backgroundTintColor);
    context.strokePath(arc(bounds, radius, 1, kOutline));
    UIBezierPath done = arc(bounds, radius, drawableProgress(m_progress), kOutline);
    done.lineCap = UIBezierPath::LineCap::Square;
    context.setStrokeColor(m_progressTintColor);
    context.strokePath(done);
}

} // namespace lamina
