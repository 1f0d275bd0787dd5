#include "app/PinchZoomViewController.h"

#include "app/MainStoryboard.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"
#include "platform/base/Localization.h"
#include "platform/base/UIScreen.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/ImageRendering.h"
#include "platform/view/UIView.h"

#include <utility>

namespace lamina {

PinchZoomViewController::PinchZoomViewController() = default;
PinchZoomViewController::~PinchZoomViewController() = default;

void PinchZoomViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    m_step = m_task ? m_task->number : firstPickedImage ? 2 : 1;
    m_side = m_task ? m_task->side : UIScreen::main().bounds.width;
    const CGRect square{0, 0, m_side, m_side};
    m_containerView = std::make_shared<UIView>(square);
    m_scrollView = std::make_shared<UIScrollView>(square);
    m_scrollView->setDelegate(std::shared_ptr<UIScrollViewDelegate>(shared_from_this(), this));
    m_scrollView->setMinimumZoomScale(1.0);
    m_scrollView->setMaximumZoomScale(kMaximumCropZoom);
    m_containerView->addSubview(m_scrollView);
    view().addSubview(m_containerView);
    layOutPhoto();
    if (m_task && m_task->crop)
        takePlace(*m_task->crop);
    m_containerView->setClipsToBounds(true);
    m_containerView->setOpaque(false); // a translucent photo stays so
}

void PinchZoomViewController::setTask(CropTask task)
{
    pickedImage = task.photo;
    m_task = std::move(task);
}

void PinchZoomViewController::layOutPhoto()
{
    const CGSize photo = pickedImage.size();
    const bool empty = !(photo.width > 0 && photo.height > 0);
    const double widthAtFullHeight = empty ? m_side : photo.width / photo.height * m_side;
    const double heightAtFullWidth = empty ? m_side : photo.height / photo.width * m_side;

    // The shorter side fills the square.
    const bool landscape = heightAtFullWidth < m_side;
    m_containerImageView = std::make_shared<UIImageView>(landscape ? CGRect{0, 0, widthAtFullHeight, m_side}
                                                                   : CGRect{0, 0, m_side, heightAtFullWidth});
    m_containerImageView->setContentMode(UIViewContentMode::ScaleAspectFill);
    m_scrollView->setZoomScale(1.0);
    m_scrollView->addSubview(m_containerImageView);
    // Both terms at once, so that until the first zoom only the longer side scrolls, by its own overhang.
    m_scrollView->setContentSize({widthAtFullHeight, heightAtFullWidth});
    m_containerImageView->setImage(pickedImage);
    m_containerImageView->setUserInteractionEnabled(true);
    m_containerImageView->setMultipleTouchEnabled(true);
}

/// The square may have had another size then.
void PinchZoomViewController::takePlace(const PhotoCrop& place)
{
    const double ratio = place.squareSide > 0 ? m_side / place.squareSide : 1;
    m_scrollView->setZoomScale(place.zoomScale);
    m_scrollView->setContentOffset({place.contentOffset.x * ratio, place.contentOffset.y * ratio});
}

UIView* PinchZoomViewController::viewForZoomingInScrollView(UIScrollView&)
{
    return m_containerImageView.get();
}

void PinchZoomViewController::scrollViewDidZoom(UIScrollView&)
{
    emit zoomScaleChanged();
}

std::shared_ptr<UIView> PinchZoomViewController::canvasView()
{
    view();
    return m_containerView;
}

double PinchZoomViewController::zoomScale() const
{
    return m_scrollView ? m_scrollView->zoomScale() : 1.0;
}

void PinchZoomViewController::setZoomScale(double scale)
{
    if (m_scrollView)
        m_scrollView->setZoomScale(scale);
}

void PinchZoomViewController::nudge(double dx, double dy)
{
    if (!m_scrollView)
        return;
    const CGPoint offset = m_scrollView->contentOffset();
    m_scrollView->setContentOffset({offset.x - dx, offset.y - dy});
}

void PinchZoomViewController::zoomBy(double factor)
{
    setZoomScale(zoomScale() * factor);
}

void PinchZoomViewController::toggleZoom(double x, double y)
{
    if (!m_scrollView)
        return;
    constexpr double kCloseUp = 2.0;
    const CGPoint offset = m_scrollView->contentOffset();
    m_scrollView->zoomToScale(zoomScale() > 1.0 ? 1.0 : kCloseUp, {x + offset.x, y + offset.y});
}

bool PinchZoomViewController::gestureRecognizer(UIGestureRecognizer&, UIGestureRecognizer&)
{
    return true;
}

void PinchZoomViewController::backButton()
{
    if (std::exchange(m_leaving, true))
        return;
    dismiss(true);
    if (!m_task)
        givePickedImagesUp();
}

void PinchZoomViewController::doneButton()
{
    if (m_leaving || presentedViewController())
        return;
    view(); // without it there is no square to cut
    UIImage image = croppedImage();
    if (!image)
        return presentFailure(*this, localizedString("Can’t crop the photo"),
                              {localizedString("The photo"), cause::kNoMemory});
    if (!m_task)
        return takeForSlots(std::move(image));
    m_leaving = true;
    dismiss(true);
    m_task->done(std::move(image), crop());
}

void PinchZoomViewController::takeForSlots(UIImage image)
{
    if (!firstPickedImage) {
        firstPickedImage = std::move(image);
        firstPickedCrop = crop();
        firstPickedSource = pickedSource;
        forgetImageSetAside();
        m_leaving = true;
        dismiss(true);
        return;
    }
    secondPickedImage = std::move(image);
    secondPickedCrop = crop();
    secondPickedSource = pickedSource;
    performSegue(segue::kToBlend, this);
}

UIImage PinchZoomViewController::croppedImage() const
{
    // One pixel a point, whatever the screen: a blend's photos are as many pixels wide as the canvas has points.
    return imageByRenderingView(*m_containerView, 1.0);
}

PhotoCrop PinchZoomViewController::crop() const
{
    return {pickedImage.size(), m_side, m_scrollView->zoomScale(), m_scrollView->contentOffset()};
}

void PinchZoomViewController::handlePan(UIPanGestureRecognizer& gesture)
{
    UIView* const moved = gesture.view();
    if (moved == nullptr)
        return;
    const CGPoint t = gesture.translationInView(&view());
    moved->setCenter({moved->center().x + t.x, moved->center().y + t.y});
    gesture.setTranslation({}, &view());
}

void PinchZoomViewController::handlePinch(UIPinchGestureRecognizer& gesture)
{
    UIView* const scaled = gesture.view();
    if (scaled == nullptr)
        return;
    scaled->setTransform(scaled->transform().scaled(gesture.scale(), gesture.scale()));
    gesture.setScale(1.0);
}

} // namespace lamina
