#include "editors/colorpicker/InfSourceColorView.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIBezierPath.h"
#include "platform/view/DrawnLayer.h"
#include "platform/view/UITouch.h"

namespace lamina {

namespace {

constexpr double kRimWidth = 2;
constexpr double kRimInset = 1;
constexpr double kFrameWidth = 1;
constexpr double kFrameInset = 2; ///< of its outer edge

void strokeRect(CGContext& context, const CGRect& rect, const UIColor& color, double width)
{
    UIBezierPath path = UIBezierPath::withRect(rect);
    path.lineWidth = width;
    context.setStrokeColor(color);
    context.strokePath(path);
}

} // namespace

InfSourceColorView::InfSourceColorView(const CGRect& frame)
    : InfSourceColorView(frame, std::make_shared<DrawnLayer>())
{
}

InfSourceColorView::InfSourceColorView(const CGRect& frame, std::shared_ptr<DrawnLayer> layer)
    : UIControl(frame, layer)
    , m_drawn(*layer)
{
    m_drawn.setDraw([this](CGContext& context, const CGRect& bounds) { draw(context, bounds); });
}

void InfSourceColorView::setTrackingInside(bool inside)
{
    replace(m_trackingInside, inside, m_drawn);
}

bool InfSourceColorView::beginTracking(const UITouch& touch)
{
    if (!isEnabled())
        return false;
    setTrackingInside(true);
    return UIControl::beginTracking(touch);
}

bool InfSourceColorView::continueTracking(const UITouch& touch)
{
    setTrackingInside(pointInside(touch.locationInView(this)));
    return UIControl::continueTracking(touch);
}

void InfSourceColorView::endTracking(const UITouch& touch)
{
    setTrackingInside(false);
    UIControl::endTracking(touch);
}

void InfSourceColorView::cancelTracking()
{
    setTrackingInside(false);
    UIControl::cancelTracking();
}

void InfSourceColorView::draw(CGContext& context, const CGRect& bounds) const
{
    if (!isEnabled() || !m_trackingInside)
        return;
    constexpr double kFrameMiddle = kFrameInset + kFrameWidth / 2;
    strokeRect(context, bounds.insetBy(kRimInset, kRimInset), UIColor::white(), kRimWidth);
    strokeRect(context, bounds.insetBy(kFrameMiddle, kFrameMiddle), UIColor::black(), kFrameWidth);
}

} // namespace lamina
