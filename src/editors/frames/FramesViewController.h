#pragma once

#include "platform/image/pixels/UIImage.h"
#include "platform/view/UIView.h"
#include "platform/view/UIViewController.h"

#include <functional>
#include <span>

namespace lamina {

/// The named picture whose alpha makes views round: a disc that reaches a little beyond the square's sides, so that the
/// layer's rounded corners alone draw the edge and nothing softens it twice.
inline constexpr const char* kRoundMaskName = "4";

/// What the libraries of frames for two and for three photos have in common. Neither has a screen: their own view is
/// never shown, and its size, at first the main screen's, is what lines are measured from that go by the screen.
///
/// Laying a frame on views replaces the masks of those that it names. The others keep theirs, and what was made round
/// keeps its size, so whoever changes frames builds its views anew first. Main thread.
class FramesViewController : public UIViewController {
    Q_OBJECT

public:
    /// Makes the view a circle about its centre: bounds of `diameter` (points) on both sides, the layer's corner radius
    /// half of it, and the picture `roundMask` as mask. What stands in the view keeps its size and place, so that a
    /// smaller circle shows the top left of it.
    void setRoundedView(UIView& view, float toDiameter);

protected:
    using Views = std::span<const std::reference_wrapper<UIView>>;

    /// Masks the views as the frame's row says. Nothing for a number that is none's.
    void applyMasks(int frame, Views views);
    /// Brings the views to the front that the frame raises.
    static void bringToFront(int frame, Views views, UIView& parent);
    /// What `setRoundedView` masks by; empty: a mask that lets nothing through.
    virtual UIImage roundMask() const = 0;
};

} // namespace lamina
