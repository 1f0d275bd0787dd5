#include "editors/frames/FramesViewController.h"

#include "editors/frames/FrameTable_p.h"
#include "editors/frames/FrameTerms_p.h"
#include "platform/base/CGGeometry.h"
#include "platform/view/CALayer.h"
#include "platform/view/CAShapeLayer.h"

#include <cstddef>
#include <memory>
#include <utility>

namespace lamina {

namespace {

/// A layer that covers `bounds`.
template <class Layer>
std::shared_ptr<Layer> layerOver(const CGRect& bounds)
{
    auto layer = std::make_shared<Layer>();
    layer->setBounds({{}, bounds.size});
    layer->setPosition({bounds.midX(), bounds.midY()});
    return layer;
}

} // namespace

void FramesViewController::applyMasks(int frame, Views views)
{
    const FrameRow* const row = findFrame(frame);
    if (!row)
        return;
    FrameSizes sizes;
    for (std::size_t i = 0; i < views.size(); ++i)
        sizes.sizes[i] = views[i].get().frame().size;
    sizes.sizes[FrameSizes::kScreen] = view().frame().size;
    for (const FrameMask& mask : row->masks) {
        const auto layer = layerOver<CAShapeLayer>(views[mask.boundsOf].get().bounds());
        layer->setPath(maskPath(mask, sizes));
        layer->setShadow(mask.shadow);
        views[mask.slot].get().layer().setMask(layer);
    }
    for (const FrameRound& round : row->rounds)
        setRoundedView(views[round.slot], roundDiameter(round, sizes));
}

void FramesViewController::bringToFront(int frame, Views views, UIView& parent)
{
    if (const FrameRow* const row = findFrame(frame))
        for (const std::size_t i : row->raised)
            parent.bringSubviewToFront(views[i]);
}

void FramesViewController::setRoundedView(UIView& view, float toDiameter)
{
    const CGPoint center = view.center();
    view.setFrame({view.frame().origin, {toDiameter, toDiameter}});
    view.layer().setCornerRadius(toDiameter / 2.0);
    view.setCenter(center);
    const auto mask = layerOver<CALayer>(view.bounds());
    mask->setContents(roundMask());
    view.layer().setMask(mask);
}

} // namespace lamina
