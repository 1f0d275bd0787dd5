#include "editors/common/EditorViewController.h"

#include "editors/common/EditorCanvasView.h"
#include "platform/view/UIView.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace lamina {

namespace {

void cancelGesturesIn(UIView& view)
{
    for (const auto& gesture : std::vector(view.gestureRecognizers())) {
        if (!gesture->isActive())
            continue;
        gesture->setEnabled(false);
        gesture->setEnabled(true);
    }
    for (const auto& child : std::vector(view.subviews()))
        cancelGesturesIn(*child);
}

/// Two boxes under an affine transform are apart if they are so along the sides of either.
bool isOutside(const UIView& view, const UIView& parent)
{
    const CGAffineTransform toParent = view.layer().transformToParent();
    const auto fromParent = toParent.inverted();
    return !fromParent || toParent.boundingBox(view.bounds()).intersection(parent.bounds()).isEmpty() ||
           fromParent->boundingBox(parent.bounds()).intersection(view.bounds()).isEmpty();
}

bool isTurnedByGestures(const UIView& view)
{
    const auto& gestures = view.gestureRecognizers();
    return std::any_of(gestures.begin(), gestures.end(), [](const auto& gesture) {
        return dynamic_cast<const UIRotationGestureRecognizer*>(gesture.get()) != nullptr;
    });
}

} // namespace

EditorViewController::EditorViewController(std::span<const EditorTool> tools, std::string_view active)
    : m_toolBar(tools, active)
    , m_tools(m_toolBar.list())
{
    watch([this] { return m_toolBar; },
          [this] {
              m_tools = m_toolBar.list();
              emit barChanged();
          });
    watch([this] { return std::array{canUndo(), canRedo()}; }, [this] { emit historyChanged(); });
    watch([this] { return stickerActive(); }, [this] { emit stickerChanged(); });
}

EditorViewController::~EditorViewController() = default;

void EditorViewController::setToolAction(std::string_view tool, std::function<void()> action)
{
    m_toolActions[std::string(tool)] = std::move(action);
    m_toolBar.setEnabled(tool, true);
    m_tools = m_toolBar.list();
}

void EditorViewController::chooseTool(const QString& identifier)
{
    const std::string tool = identifier.toStdString();
    const auto found = m_toolActions.find(tool);
    if (found != m_toolActions.end() && m_toolBar.cell(tool).enabled)
        found->second();
}

void EditorViewController::act(const std::function<void()>& change)
{
    cancelGestures();
    change();
    endStep();
}

void EditorViewController::endStep(EditSeries series)
{
    landWork();
    finishStep(series);
}

void EditorViewController::finishStep(EditSeries series)
{
    recordStep(series);
    tell();
}

void EditorViewController::undo()
{
    cancelGestures();
    if (!canUndo())
        return;
    stepBack();
    tell();
}

void EditorViewController::redo()
{
    cancelGestures();
    if (!canRedo())
        return;
    stepForth();
    tell();
}

void EditorViewController::cancelGestures()
{
    endSliding();
    landWork();
    stopCanvasGestures();
}

void EditorViewController::stopCanvasGestures()
{
    if (isViewLoaded())
        cancelGesturesIn(view());
}

void EditorViewController::handlePan1(UIPanGestureRecognizer& gesture)
{
    if (!isPhotoView(gesture.view()))
        return;
    if (!gesture.isActive())
        return endGesture(gesture, EditSeries::Move);
    panPhoto(*gesture.view(), gesture.translationInView(&gestureSpace()));
    gesture.setTranslation({}, &gestureSpace());
}

void EditorViewController::pinch(UIPinchGestureRecognizer& gesture)
{
    UIView* const view = gesture.view();
    if (!isPhotoView(view))
        return;
    transformPhoto(*view, view->transform().scaled(gesture.scale(), gesture.scale()));
    gesture.setScale(1);
    endGesture(gesture, EditSeries::Zoom);
}

void EditorViewController::rotationGes(UIRotationGestureRecognizer& gesture)
{
    UIView* const view = gesture.view();
    if (!isPhotoView(view))
        return;
    transformPhoto(*view, view->transform().rotated(gesture.rotation()));
    gesture.setRotation(0);
    endGesture(gesture, EditSeries::Rotate);
}

void EditorViewController::nudge(double dx, double dy)
{
    cancelGestures();
    if (UIView* const sticker = activeSticker())
        return moveSticker(*sticker, {dx, dy});
    UIView* const view = gestureView();
    if (view == nullptr)
        return;
    panPhoto(*view, {dx, dy});
    endStep(EditSeries::Move);
}

void EditorViewController::zoomBy(double factor)
{
    if (!std::isfinite(factor) || !(factor > 0))
        return;
    cancelGestures();
    if (UIView* const sticker = activeSticker(); sticker && sticker->magnifyBy(factor))
        return;
    UIView* const view = gestureView();
    if (view == nullptr)
        return;
    transformPhoto(*view, view->transform().scaled(factor, factor));
    endStep(EditSeries::Zoom);
}

void EditorViewController::turnBy(double angle)
{
    if (!std::isfinite(angle))
        return;
    cancelGestures();
    if (UIView* const sticker = activeSticker(); sticker && sticker->rotateBy(angle))
        return;
    UIView* const view = gestureView();
    if (view == nullptr || !isTurnedByGestures(*view))
        return;
    transformPhoto(*view, view->transform().rotated(angle));
    endStep(EditSeries::Rotate);
}

void EditorViewController::bringPhotoBack()
{
    UIView* const photo = gestureView();
    const UIView* const parent = photo ? photo->superview() : nullptr;
    if (parent == nullptr || !isOutside(*photo, *parent))
        return;
    act([&] {
        CGAffineTransform transform = photo->transform();
        transform.tx = parent->bounds().midX() - photo->center().x;
        transform.ty = parent->bounds().midY() - photo->center().y;
        transformPhoto(*photo, transform);
    });
}

void EditorViewController::tapCanvas(double x, double y)
{
    const UIView* const sticker = activeSticker();
    const std::shared_ptr<UIView> canvas = canvasView();
    if (sticker == nullptr || !canvas)
        return;
    const UIView* const tapped = canvas->hitTest({x, y});
    if (tapped == nullptr || !tapped->isDescendantOf(*sticker))
        letGoOfStickers();
}

bool EditorViewController::letGo()
{
    const bool held = stickerActive();
    if (held)
        letGoOfStickers();
    return held;
}

std::shared_ptr<UIView> EditorViewController::makeCanvas(const CGRect& frame)
{
    return std::make_shared<EditorCanvasView>(frame, [weak = weak_from_this()]() -> UIView* {
        const auto self = std::static_pointer_cast<EditorViewController>(weak.lock());
        return self ? self->gestureView() : nullptr;
    });
}

void EditorViewController::endGesture(const UIGestureRecognizer& gesture, EditSeries series)
{
    if (gesture.isActive())
        return;
    endSliding(); // a slider under another finger: what it does from now on is none of this step
    // Without fingers it is a notch of a wheel or a moment of a touchpad's pinch.
    const bool whole = gesture.numberOfTouches() > 0;
    endStep(whole ? EditSeries::None : series);
}

void EditorViewController::tell()
{
    emit changed();
    m_notifier.tell();
    tellEdited();
    if (std::exchange(m_slidersRenewed, false))
        emit slidersChanged();
}

void EditorViewController::tellGesture()
{
    emit changed();
    tellEdited();
}

void EditorViewController::tellEdited()
{
    if (std::exchange(m_edited, differsFromOpening()) != m_edited)
        emit editedChanged();
}

} // namespace lamina
