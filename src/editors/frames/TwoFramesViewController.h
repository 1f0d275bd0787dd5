#pragma once

#include "editors/frames/FramesViewController.h"

namespace lamina {

/// The frames of two photos, 2000 to 2007. Each operation masks the slot layers of the two photos; see
/// FramesViewController. Main thread.
class TwoFramesViewController : public FramesViewController {
    Q_OBJECT

public:
    /// Masks both slots and brings to the front of `parentView`, which holds them, the one that the frame raises.
    /// A number that is none's changes nothing.
    void setLayout(int frame, UIView& first, UIView& second, UIView& parentView);

    void firstView(UIView& first, UIView& second);  ///< 2000, a diagonal cut
    void firstView1(UIView& first, UIView& second); ///< 2001, a zigzag from top to bottom
    void firstView2(UIView& first, UIView& second); ///< 2002, a zigzag from left to right
    void firstView3(UIView& first, UIView& second); ///< 2003, two halves side by side
    void firstView4(UIView& first, UIView& second); ///< 2004, two halves one above the other
    void firstView5(UIView& first, UIView& second); ///< 2005, a circle in a circle
    void firstView6(UIView& first, UIView& second); ///< 2006, a diamond over the first photo
    void firstView7(UIView& first, UIView& second); ///< 2007, a wedge in the corner of the first photo

protected:
    UIImage roundMask() const override;
};

} // namespace lamina
