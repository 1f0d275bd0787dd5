#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/view/CALayer.h"

#include <functional>
#include <utility>

namespace lamina {

/// A layer that is drawn by a function, over its bounds; for views that draw themselves. Main thread.
class DrawnLayer : public CALayer {
public:
    /// The state of the context is given back afterwards.
    using Draw = std::function<void(CGContext&, const CGRect& bounds)>;
    /// Must be set before the layer is drawn first.
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

/// A value that a drawn view shows. Setting another one has the view drawn anew; false: it is the same.
template <class Value>
bool replace(Value& member, const Value& value, DrawnLayer& layer)
{
    if (member == value)
        return false;
    member = value;
    layer.setNeedsDisplay();
    return true;
}

} // namespace lamina
