#include "cli/editors/BlendScript.h"

#include "app/MainStoryboard.h"
#include "app/PinchZoomViewController.h"
#include "cli/editors/EditorSteps.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "editors/blend/BlendTools.h"
#include "editors/blend/PickedImages.h"
#include "editors/stickers/StickerStrip.h"
#include "platform/view/UIStoryboard.h"
#include "platform/view/UIViewController.h"

#include <QString>

#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace lamina {

namespace {

/// What a step is to the editor: what a person would press for it, and the movement of fingers without the fingers.
struct Hand {
    BlendPhotoViewController& editor;

    void operator()(const MoveStep& step) const
    {
        takeMoveMode();
        editor.nudge(step.translation.x, step.translation.y);
    }
    void operator()(const ZoomStep& step) const
    {
        takeMoveMode();
        editor.zoomBy(step.factor);
    }
    void operator()(const SubToolStep& step) const
    {
        choose(step.photo);
        open(blendtool::kTools, &BlendPhotoViewController::toolBtn);
        editor.chooseSubTool(QString::fromStdString(std::string(step.tool)));
    }
    void operator()(const SliderStep& step) const
    {
        choose(step.photo);
        open(blendtool::kEffects, &BlendPhotoViewController::FxBtn);
        editor.slide(step.slider, step.value);
    }
    void operator()(const StickerStep& step) const
    {
        open(blendtool::kStickers, &BlendPhotoViewController::stickerBtn);
        const int tag = editor.stickerHandleTag();
        editor.stickerImgGesture(StickerStrip::kFirstTag + static_cast<int>(*stickerIndex(step.sticker->name)));
        placeSticker(editor.mainImgView(), tag, step);
    }

private:
    void takeMoveMode() const
    {
        if (!editor.panBool())
            editor.panBtn();
    }
    void open(std::string_view panel, void (BlendPhotoViewController::*tool)()) const
    {
        if (editor.shownPanel().toStdString() != panel)
            (editor.*tool)();
    }
    /// Pressing a button always forgets what the sliders work from.
    void choose(int photo) const
    {
        if (editor.panBool())
            editor.toolBtn();
        if (photo == 1 ? editor.photo1Selected() : editor.photo2Selected())
            return;
        photo == 1 ? editor.photo1() : editor.photo2();
    }
};

} // namespace

BlendScript::BlendScript(double width, double scale)
    : m_stage({width, 2 * width}, scale)
{
    clearPickedImages();
}

BlendScript::~BlendScript() = default;

void BlendScript::cropPhoto(UIImage photo, const std::optional<CropStep>& step)
{
    const auto screen = UIStoryboard::named(kMainStoryboard)->instantiate<PinchZoomViewController>(scene::kCrop);
    screen->pickedImage = std::move(photo);
    m_stage.window().rootViewController()->present(screen, false);
    ScriptStage::letTransitionsRun();
    if (step) {
        screen->scrollView().setZoomScale(step->zoom);
        screen->scrollView().setContentOffset(step->offset);
    }
    screen->doneButton();
    ScriptStage::letTransitionsRun();
    m_editor = std::dynamic_pointer_cast<BlendPhotoViewController>(screen->presentedViewController());
}

void BlendScript::perform(const BlendStep& step)
{
    if (m_editor)
        std::visit(Hand{*m_editor}, step);
}

UIImage BlendScript::flattened()
{
    return m_editor ? m_editor->flattened() : UIImage();
}

} // namespace lamina
