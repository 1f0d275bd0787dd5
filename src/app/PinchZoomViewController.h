#pragma once

#include "editors/blend/PickedImages.h"
#include "platform/view/UIGestureRecognizer.h"
#include "platform/view/UIImageView.h"
#include "platform/view/UIPanGestureRecognizer.h"
#include "platform/view/UIPinchGestureRecognizer.h"
#include "platform/view/UIScrollView.h"
#include "platform/view/UIViewController.h"

#include <memory>

namespace lamina {

/// How far a photo can be zoomed in the crop square; a decoder must leave the pixels for it.
inline constexpr double kMaximumCropZoom = 6.0;

/// The crop screen: a photo placed behind a square by scrolling and zooming, and cut out of it. What the square shows at
/// that moment becomes a picture of S × S pixels, one a point, S being the main screen's width when the view loads. Main thread only.
class PinchZoomViewController : public UIViewController,
                                public UIScrollViewDelegate,
                                public UIGestureRecognizerDelegate {
    Q_OBJECT
public:
    PinchZoomViewController();
    ~PinchZoomViewController() override;

    /// The photo to be cropped, upright; set before the view loads.
    UIImage pickedImage;

    /// Lays the square out; at zoom 1 the photo fills it on its shorter side and starts at its top left.
    void viewDidLoad() override;

    /// Leaves without a crop, and gives up a first photo that was taken already.
    void backButton();
    /// Cuts the photo. The first crop goes to the first slot and the screen is dismissed; the second goes to the second slot and the
    /// blend editor opens. Nothing happens when memory is short.
    void doneButton();

    /// Attached to nothing here; for any recogniser whose view is to be moved or scaled. Each event adds its increment.
    void handlePan(UIPanGestureRecognizer& gesture);
    void handlePinch(UIPinchGestureRecognizer& gesture);

    UIView* viewForZoomingInScrollView(UIScrollView& scrollView) override;
    bool gestureRecognizer(UIGestureRecognizer& recognizer,
                           UIGestureRecognizer& shouldRecognizeSimultaneouslyWithGestureRecognizer) override;

    UIView& containerView() const { return *m_containerView; }
    UIImageView& containerImageView() const { return *m_containerImageView; }
    UIScrollView& scrollView() const { return *m_scrollView; }
    /// Height of the square, points.
    double containerViewHeightConstraint() const { return m_side; }

private:
    void layOutPhoto();
    UIImage croppedImage();
    PhotoCrop crop() const;

    double m_side = 0; ///< S
    std::shared_ptr<UIView> m_containerView;
    std::shared_ptr<UIScrollView> m_scrollView;
    std::shared_ptr<UIImageView> m_containerImageView;
};

} // namespace lamina
