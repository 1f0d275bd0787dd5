#include "cli/BlendScript.h"

#include "app/MainStoryboard.h"
#include "app/PinchZoomViewController.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "editors/blend/PickedImages.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/view/UIStoryboard.h"
#include "platform/view/UIViewController.h"

#include <utility>

namespace lamina {

namespace {

void letTransitionsRun()
{
    DispatchQueue::main().runUntilIdle();
}

/// What a step is to the editor: the movement of fingers, without the fingers.
struct Gesture {
    BlendPhotoViewController& editor;

    void operator()(const MoveStep& step) const { editor.nudge(step.translation.x, step.translation.y); }
    void operator()(const ZoomStep& step) const { editor.zoomBy(step.factor); }
};

} // namespace

BlendScript::BlendScript(double width, double scale)
{
    UIScreen::setMain({{width, 2 * width}, scale});
    registerMainStoryboard();
    clearPickedImages();
    m_window.setRootViewController(std::make_shared<UIViewController>());
    letTransitionsRun();
}

BlendScript::~BlendScript() = default;

void BlendScript::cropPhoto(UIImage photo, const std::optional<CropStep>& step)
{
    const auto screen = UIStoryboard::named(kMainStoryboard)->instantiate<PinchZoomViewController>(scene::kCrop);
    screen->pickedImage = std::move(photo);
    m_window.rootViewController()->present(screen, false);
    letTransitionsRun();
    if (step) {
        screen->scrollView().setZoomScale(step->zoom);
        screen->scrollView().setContentOffset(step->offset);
    }
    screen->doneButton();
    letTransitionsRun();
    m_editor = std::dynamic_pointer_cast<BlendPhotoViewController>(screen->presentedViewController());
}

void BlendScript::perform(const BlendStep& step)
{
    if (m_editor)
        std::visit(Gesture{*m_editor}, step);
}

UIImage BlendScript::flattened()
{
    return m_editor ? m_editor->flattened() : UIImage();
}

} // namespace lamina
