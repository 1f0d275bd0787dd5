#pragma once

#include "editors/blend/PhotoCutting.h"
#include "editors/blend/PickedImages.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PhotoSource.h"
#include "platform/view/UIGestureRecognizer.h"
#include "platform/view/UIImageView.h"
#include "platform/view/UIPanGestureRecognizer.h"
#include "platform/view/UIPinchGestureRecognizer.h"
#include "platform/view/UIScrollView.h"
#include "platform/view/UIViewController.h"

#include <memory>
#include <optional>

namespace lamina {

/// The crop screen: a photo placed behind a square by scrolling and zooming, and cut out of it. What the square shows
/// at that moment becomes a picture of S × S pixels, one a point, S being the main screen's width when the view loads,
/// or what a task says. Main thread only.
class PinchZoomViewController : public UIViewController,
                                public PhotoCropScreen,
                                public UIScrollViewDelegate,
                                public UIGestureRecognizerDelegate {
    Q_OBJECT
    Q_PROPERTY(double zoomScale READ zoomScale WRITE setZoomScale NOTIFY zoomScaleChanged FINAL)
    Q_PROPERTY(double minimumZoomScale READ minimumZoomScale CONSTANT FINAL)
    Q_PROPERTY(double maximumZoomScale READ maximumZoomScale CONSTANT FINAL)
    Q_PROPERTY(int step READ step CONSTANT FINAL)

public:
    PinchZoomViewController();
    ~PinchZoomViewController() override;

    /// The photo to be cropped, upright; set before the view loads.
    UIImage pickedImage;
    /// Where it came from; set likewise.
    PhotoSource pickedSource;

    /// Cuts a photo of an editor: neither button touches the slots then.
    void setTask(CropTask task) override;

    /// Lays the square out; at zoom 1 the photo fills it on its shorter side and starts at its top left.
    void viewDidLoad() override;

    /// Leaves without a crop, and gives up a first photo that was taken already; that one can be taken again.
    Q_INVOKABLE void backButton();
    /// Cuts the photo. The first crop goes to the first slot and the screen is dismissed; the second goes to the second
    /// slot and the blend editor opens. When memory is short an alert says so, and the screen stays as it is.
    Q_INVOKABLE void doneButton();

    /// Whose photo of the blend is cropped, 1 or 2. As it was when the view loaded.
    int step() const { return m_step; }
    /// How large the photo stands behind the square, from 1, which fills it. Setting it zooms about the middle of the
    /// square, within the limits.
    double zoomScale() const;
    void setZoomScale(double scale);
    double minimumZoomScale() const { return 1.0; }
    double maximumZoomScale() const { return kMaximumCropZoom; }

    /// Scrolls so that the photo moves by points, as a drag and the arrow keys do.
    Q_INVOKABLE void nudge(double dx, double dy);
    /// Zooms about the middle of the square, as a pinch there and the keys do.
    Q_INVOKABLE void zoomBy(double factor);
    /// A double tap: goes in twice at a point of the square or, when zoomed already, all the way out.
    Q_INVOKABLE void toggleZoom(double x, double y);

    std::shared_ptr<UIView> canvasView() override;

    /// Attached to nothing here; for any recogniser whose view is to be moved or scaled. Each event adds its increment.
    void handlePan(UIPanGestureRecognizer& gesture);
    /// The same for the view's scale.
    void handlePinch(UIPinchGestureRecognizer& gesture);

    UIView* viewForZoomingInScrollView(UIScrollView& scrollView) override;
    void scrollViewDidZoom(UIScrollView& scrollView) override;
    bool gestureRecognizer(UIGestureRecognizer& recognizer,
                           UIGestureRecognizer& shouldRecognizeSimultaneouslyWithGestureRecognizer) override;

    UIView& containerView() const { return *m_containerView; }
    UIImageView& containerImageView() const { return *m_containerImageView; }
    UIScrollView& scrollView() const { return *m_scrollView; }
    /// Height of the square, points.
    double containerViewHeightConstraint() const { return m_side; }

signals:
    void zoomScaleChanged();

private:
    void layOutPhoto();
    void takePlace(const PhotoCrop& place);
    void takeForSlots(UIImage image);
    UIImage croppedImage() const;
    PhotoCrop crop() const;

    std::optional<CropTask> m_task;
    int m_step = 1;
    bool m_leaving = false; ///< an impatient second press must not take the photo for the other step
    double m_side = 0;      ///< S
    std::shared_ptr<UIView> m_containerView;
    std::shared_ptr<UIScrollView> m_scrollView;
    std::shared_ptr<UIImageView> m_containerImageView;
};

} // namespace lamina
