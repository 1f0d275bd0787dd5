#include "editors/colorpicker/InfColorBarView.h"

#include "editors/colorpicker/ColorImages.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIImageDrawing.h"
#include "platform/view/DrawnLayer.h"

namespace lamina {

InfColorBarView::InfColorBarView(const CGRect& frame)
    : InfColorBarView(frame, std::make_shared<DrawnLayer>())
{
}

InfColorBarView::InfColorBarView(const CGRect& frame, std::shared_ptr<DrawnLayer> layer)
    : UIView(frame, layer)
    , m_hues(hsbSweepImage(HSBComponent::Hue, {0, 1, 1}))
{
    layer->setDraw([this](CGContext& context, const CGRect& bounds) { drawInRect(m_hues, context, bounds); });
}

} // namespace lamina
