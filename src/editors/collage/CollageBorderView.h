#pragma once

#include "platform/base/UIColor.h"
#include "platform/view/CAShapeLayer.h"
#include "platform/view/UIView.h"

#include <memory>

namespace lamina {

/// The lines of a collage: its border, inside the canvas's edge, and a gap along its frame's cuts. They lie over the
/// photos and move none. It takes no touches. Main thread.
class CollageBorderView : public UIView {
public:
    /// On a canvas of `side` points, for a screen of that height.
    CollageBorderView(double side, double screenHeight);

    /// The border's width and colour are those of the view's layer. The gap follows the cuts of the layout of that
    /// number; a width of 0 draws none.
    void showGap(int layout, double width, const UIColor& color);

private:
    void layCuts(int layout);

    double m_screenHeight;
    int m_layout = 0;                ///< whose cuts are laid
    std::shared_ptr<CALayer> m_slot; ///< beyond which no gap is seen
    std::shared_ptr<CAShapeLayer> m_gap;
};

} // namespace lamina
