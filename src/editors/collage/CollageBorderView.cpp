#include "editors/collage/CollageBorderView.h"

namespace lamina {

CollageBorderView::CollageBorderView(double side)
    : UIView({0, 0, side, side})
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

void CollageBorderView::showGap(const FrameShape& shape, double width, const UIColor& color)
{
    m_slot->setHidden(!(width > 0));
    m_slot->setBounds(shape.slot); // which keeps the canvas's coordinates
    m_slot->setPosition({shape.slot.midX(), shape.slot.midY()});
    m_gap->setPath(frameCuts(shape));
    m_gap->setLineWidth(width);
    m_gap->setStrokeColor(color);
}

} // namespace lamina
