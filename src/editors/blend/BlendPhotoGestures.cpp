// What moves a photo of a blend: fingers, wheel and keys.

#include "editors/blend/BlendPhotoViewController.h"

#include <cmath>

namespace lamina {

void BlendPhotoViewController::addGesture(UIImageView& view)
{
    view.setUserInteractionEnabled(true);
    auto pan = std::make_shared<UIPanGestureRecognizer>();
    pan->addTarget(this, &BlendPhotoViewController::handlePan1);
    view.addGestureRecognizer(pan);
    auto zoom = std::make_shared<UIPinchGestureRecognizer>();
    zoom->addTarget(this, &BlendPhotoViewController::pinch);
    view.addGestureRecognizer(zoom);
}

void BlendPhotoViewController::handlePan1(UIPanGestureRecognizer& gesture)
{
    const std::optional<std::size_t> photo = photoOf(gesture.view());
    if (!photo)
        return;
    if (!gesture.isActive())
        return endGesture(gesture, BlendSeries::Move);
    const CGPoint t = gesture.translationInView(&saveTheImg());
    setPhotoTransform(*photo, m_composition.photos[*photo].transform.translated(t.x, t.y));
    gesture.setTranslation({}, &saveTheImg());
}

void BlendPhotoViewController::pinch(UIPinchGestureRecognizer& gesture)
{
    const std::optional<std::size_t> photo = photoOf(gesture.view());
    if (!photo)
        return;
    setPhotoTransform(*photo, m_composition.photos[*photo].transform.scaled(gesture.scale(), gesture.scale()));
    gesture.setScale(1);
    endGesture(gesture, BlendSeries::Zoom);
}

void BlendPhotoViewController::rotationGes(UIRotationGestureRecognizer& gesture)
{
    const std::optional<std::size_t> photo = photoOf(gesture.view());
    if (!photo)
        return;
    setPhotoTransform(*photo, m_composition.photos[*photo].transform.rotated(gesture.rotation()));
    gesture.setRotation(0);
    endGesture(gesture, BlendSeries::None);
}

void BlendPhotoViewController::nudge(double dx, double dy)
{
    if (!panBool())
        return;
    const std::size_t photo = m_composition.current;
    setPhotoTransform(photo, m_composition.photos[photo].transform.translated(dx, dy));
    m_history.record(m_composition, BlendSeries::Move);
    tell();
}

void BlendPhotoViewController::zoomBy(double factor)
{
    if (!panBool() || !std::isfinite(factor) || !(factor > 0))
        return;
    const std::size_t photo = m_composition.current;
    setPhotoTransform(photo, m_composition.photos[photo].transform.scaled(factor, factor));
    m_history.record(m_composition, BlendSeries::Zoom);
    tell();
}

void BlendPhotoViewController::endGesture(const UIGestureRecognizer& gesture, BlendSeries series)
{
    if (gesture.isActive())
        return;
    // Without fingers it is a notch of a wheel or a moment of a touchpad's pinch.
    const bool whole = gesture.numberOfTouches() > 0;
    m_history.record(m_composition, whole ? BlendSeries::None : series);
    tell();
}

void BlendPhotoViewController::cancelGestures()
{
    for (const auto& view : m_imgViews) {
        if (!view)
            continue;
        for (const auto& gesture : std::vector(view->gestureRecognizers())) {
            if (!gesture->isActive())
                continue;
            gesture->setEnabled(false);
            gesture->setEnabled(true);
        }
    }
}

std::optional<std::size_t> BlendPhotoViewController::photoOf(const UIView* view) const
{
    for (const std::size_t index : {std::size_t{0}, std::size_t{1}}) {
        if (view == m_imgViews[index].get())
            return index;
    }
    return std::nullopt;
}

void BlendPhotoViewController::setPhotoTransform(std::size_t photo, const CGAffineTransform& transform)
{
    // A photo of no size could not be zoomed or even touched again.
    if (!transform.inverted())
        return;
    m_composition.photos[photo].transform = transform;
    m_imgViews[photo]->setTransform(transform);
    emit changed();
    tellEdited();
}

} // namespace lamina
