#include "editors/colorpicker/ColorTrackControl.h"

#include "editors/colorpicker/ColorTrack.h"
#include "editors/colorpicker/InfColorIndicatorView.h"

namespace lamina {

ColorTrackControl::ColorTrackControl(const CGRect& frame)
    : UIControl(frame)
{
    setOpaque(false);
}

void ColorTrackControl::valueChanged()
{
    const auto self = weak_from_this().lock();
    sendActions(UIControlEvents::ValueChanged);
    layoutIndicator();
}

void ColorTrackControl::layoutIndicator()
{
    if (!m_indicator) {
        m_indicator = std::make_shared<InfColorIndicatorView>(
            CGRect{0, 0, colortrack::kIndicatorSize, colortrack::kIndicatorSize});
        addSubview(m_indicator);
    }
    placeIndicator(*m_indicator);
}

void ColorTrackControl::setFrame(const CGRect& frame)
{
    UIControl::setFrame(frame);
    layoutIndicator();
}

void ColorTrackControl::setBounds(const CGRect& bounds)
{
    UIControl::setBounds(bounds);
    layoutIndicator();
}

bool ColorTrackControl::beginTracking(const UITouch& touch)
{
    trackIndicator(touch);
    return true;
}

bool ColorTrackControl::continueTracking(const UITouch& touch)
{
    trackIndicator(touch);
    return true;
}

UIAccessibilityTraits::Set ColorTrackControl::accessibilityTraits() const
{
    return UIControl::accessibilityTraits() | UIAccessibilityTraits::Adjustable;
}

} // namespace lamina
