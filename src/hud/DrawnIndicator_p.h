#pragma once

#include "hud/MBProgressIndicator.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/view/CALayer.h"
#include "platform/view/UIView.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <utility>

namespace lamina {

/// A layer that is drawn by a function, over its bounds.
class DrawnLayer : public CALayer {
public:
    using Draw = std::function<void(CGContext&, const CGRect& bounds)>;
    void setDraw(Draw draw) { m_draw = std::move(draw); }
    /// What it draws is another now.
    void setNeedsDisplay() { changed(); }

protected:
    void drawInContext(CGContext& context) const override
    {
        context.saveGState();
        m_draw(context, bounds());
        context.restoreGState();
    }
    CGRect drawnBounds() const override { return bounds(); }

private:
    Draw m_draw;
};

/// A value that a drawn view shows. Setting another one has the view drawn anew.
template <class Value>
bool replace(Value& member, const Value& value, DrawnLayer& layer)
{
    if (member == value)
        return false;
    member = value;
    layer.setNeedsDisplay();
    return true;
}

/// `progress` as it can be drawn; what is no number counts as 0.
inline float drawableProgress(float progress)
{
    return std::isfinite(progress) ? std::clamp(progress, 0.0F, 1.0F) : 0.0F;
}

} // namespace lamina
