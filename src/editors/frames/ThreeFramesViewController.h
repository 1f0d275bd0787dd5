#pragma once

#include "editors/frames/FramesViewController.h"
#include "platform/image/pixels/UIImage.h"

namespace lamina {

/// The frames of three photos, 3000 to 3009. Each operation masks the slot layers of the three photos; see
/// FramesViewController. The centre square of a picture, which editors of three photos ask for too, is
/// `squareImageFromImage`. Main thread.
class ThreeFramesViewController : public FramesViewController {
    Q_OBJECT

public:
    /// The picture whose alpha makes views round, set by the frame of three circles. Without it, the default, a view
    /// that is made round lets nothing be seen.
    UIImage maskImage;

    /// Brings the third, the second and the first view to the front of `parentView`, which holds them, so that the
    /// first is on top, whatever the number; then masks the slots, and brings to the front what the frame raises. A
    /// number that is none's changes no mask.
    void setLayout(int frame, UIView& first, UIView& second, UIView& third, UIView& parentView);

    void firstView(UIView& first, UIView& second, UIView& third);  ///< 3000, three columns
    void firstView1(UIView& first, UIView& second, UIView& third); ///< 3001, three rows
    void firstView2(UIView& first, UIView& second, UIView& third); ///< 3002, triangles about the centre
    void firstView3(UIView& first, UIView& second, UIView& third); ///< 3003, triangles from the top edge
    void firstView4(UIView& first, UIView& second, UIView& third); ///< 3004, a half above two quarters
    void firstView5(UIView& first, UIView& second, UIView& third); ///< 3005, a half beside two quarters
    void firstView6(UIView& first, UIView& second, UIView& third); ///< 3006, columns with zigzag edges
    void firstView7(UIView& first, UIView& second, UIView& third); ///< 3007, rows with zigzag edges
    void firstView8(UIView& first, UIView& second, UIView& third); ///< 3008, three circles; sets `maskImage`
    void firstView9(UIView& first, UIView& second, UIView& third); ///< 3009, a wedge and a zigzag over the first photo

protected:
    UIImage roundMask() const override { return maskImage; }
};

} // namespace lamina
