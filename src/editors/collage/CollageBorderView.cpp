#include "editors/collage/CollageBorderView.h"

#include "editors/frames/Frames.h"
#include "platform/view/CALayer.h"

#include <optional>
#include <utility>

namespace lamina {

CollageBorderView::CollageBorderView(double side, double screenHeight)
    : UIView({0, 0, side, side})
    , m_screenHeight(screenHeight)
    , m_slot(std::make_shared<CALayer>())
    , m_gap(std::make_shared<CAShapeLayer>())
{
    setOpaque(false);
    setUserInteractionEnabled(false);
    m_slot->setMasksToBounds(true);
    m_gap->setFillColor(std::nullopt);
    m_slot->addSublayer(m_gap);
    layer().addSublayer(m_slot);
}

void CollageBorderView::showGap(int layout, double width, const UIColor& color)
{
    m_slot->setHidden(!(width > 0));
    if (m_slot->isHidden())
        return;
    if (std::exchange(m_layout, layout) != layout)
        layCuts(layout);
    m_gap->setLineWidth(width);
    m_gap->setStrokeColor(color);
}

void CollageBorderView::layCuts(int layout)
{
    const FrameShape shape = frameShape(layout, bounds().size.width, m_screenHeight);
    m_slot->setBounds(shape.slot); // which keeps the canvas's coordinates
    m_slot->setPosition({shape.slot.midX(), shape.slot.midY()});
    m_gap->setPath(frameCuts(shape));
}

} // namespace lamina
