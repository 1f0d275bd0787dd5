#pragma once

#include "editors/frames/Frames.h"
#include "platform/base/UIColor.h"
#include "platform/view/CAShapeLayer.h"
#include "platform/view/UIView.h"

#include <memory>

namespace lamina {

/// The lines of a collage: its border, inside the canvas's edge, and a gap along its frame's cuts. They lie over the
/// photos and move none. It takes no touches. Main thread.
class CollageBorderView : public UIView {
public:
    /// On a canvas of `side` points.
    explicit CollageBorderView(double side);

    /// The border's width and colour are those of the view's layer. A gap of 0 draws nothing.
    void showGap(const FrameShape& shape, double width, const UIColor& color);

private:
    std::shared_ptr<CALayer> m_slot; ///< beyond which no gap is seen
    std::shared_ptr<CAShapeLayer> m_gap;
};

} // namespace lamina
