#include "cli/editors/CollageScript.h"

#include "app/MainStoryboard.h"
#include "cli/editors/EditorSteps.h"
#include "cli/filters/FilterDrawing.h"
#include "editors/collage/CollageComposition.h"
#include "editors/collage/CollageEffects.h"
#include "editors/collage/CollageFilters.h"
#include "editors/collage/CollageTools.h"
#include "editors/collage/CreateCollageViewController.h"
#include "editors/colorpicker/InfColorPickerController.h"
#include "editors/common/PictureTools.h"
#include "editors/stickers/StickerStrip.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/DispatchQueue.h"
#include "platform/view/UINavigationController.h"
#include "platform/view/UIStoryboard.h"

#include <QString>

#include <numbers>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace lamina {

namespace {

QString text(std::string_view word)
{
    return QString::fromUtf8(word.data(), static_cast<qsizetype>(word.size()));
}

/// Whether the step needs the graphics processor.
struct DrawnOnGpu {
    bool operator()(const FilterStep& step) const { return findCollageFilter(step.tag)->make != nullptr; }
    bool operator()(const SliderStep& step) const
    {
        return step.slider == collageslider::kVignette || step.slider == collageslider::kSaturation ||
               step.slider == collageslider::kHighlight;
    }
    template <class Step>
    bool operator()(const Step&) const
    {
        return false;
    }
};

/// What a step is to the editor: what a person would press for it, and the movement of fingers without the fingers.
struct CollageHand {
    CreateCollageViewController& editor;
    std::optional<std::string> refusal = {}; ///< why a step could not be done, where the editor tells nothing

    void operator()(const LayoutStep& step) const
    {
        open("layout", collagetool::kLayout);
        editor.imgGesture1(step.frame);
    }
    void operator()(const MoveStep& step) const
    {
        choose(step.photo);
        editor.nudge(step.translation.x, step.translation.y);
    }
    void operator()(const ZoomStep& step) const
    {
        choose(step.photo);
        editor.zoomBy(step.factor);
    }
    void operator()(const RotateStep& step) const
    {
        choose(step.photo);
        editor.turnBy(step.degrees * std::numbers::pi / 180);
    }
    void operator()(const SubToolStep& step) const
    {
        choose(step.photo);
        open("tools", collagetool::kTools);
        editor.chooseSubTool(text(step.tool));
    }
    void operator()(const FilterStep& step) const
    {
        choose(step.photo);
        open("filter", collagetool::kFilter);
        DispatchQueue::main().drain(); // the panel takes its photo on a later turn
        editor.filterImgGesture(step.tag);
    }
    void operator()(const SliderStep& step) const
    {
        // The lines' panel belongs to a tool that takes photos back, which nobody asks for here.
        if (step.photo > 0) {
            choose(step.photo);
            open("effects", collagetool::kEffects);
        }
        editor.slide(step.slider, step.value);
    }
    void operator()(const BackgroundStep& step)
    {
        choose(step.photo);
        open("tools", collagetool::kTools);
        editor.adjustColor();
        ScriptStage::letTransitionsRun();
        if (InfColorPickerController* const picker = colorPicker()) {
            picker->setResultColor(step.color);
            picker->done();
        } else {
            refusal = "a colour can't be chosen now";
        }
        ScriptStage::letTransitionsRun();
    }
    void operator()(const StickerStep& step) const
    {
        open("stickers", collagetool::kSticker);
        const int tag = editor.stickerHandleTag();
        editor.stickerImgGesture(StickerStrip::kFirstTag + static_cast<int>(*stickerIndex(step.sticker->name)));
        placeSticker(editor.saveTheImg(), tag, step);
    }
    void operator()(const SwapStep& step) const { editor.swapSlots(step.one, step.other); }
    void operator()(const BorderStep& step) const
    {
        editor.slide(collageslider::kBorderWidth, step.width);
        if (step.color)
            editor.setBorderColor(*step.color);
    }
    void operator()(const ResetStep&) const { editor.chooseTool(text(collagetool::kReset)); }

private:
    /// Pressing a slot's button always forgets what the sliders work from.
    void choose(int photo) const
    {
        editor.letGoOfStickers(); // one that shows its handles would take what is meant for the photo
        if (editor.currentSlot() != photo)
            editor.selectSlot(photo);
    }
    void open(const char* panel, std::string_view tool) const
    {
        if (editor.shownPanel() != QLatin1String(panel))
            editor.chooseTool(text(tool));
    }
    InfColorPickerController* colorPicker() const
    {
        const auto stack = std::dynamic_pointer_cast<UINavigationController>(editor.presentedViewController());
        return stack ? dynamic_cast<InfColorPickerController*>(stack->topViewController().get()) : nullptr;
    }
};

} // namespace

CollageScript::CollageScript(CGSize screen, double scale, std::vector<UIImage> photos)
    : m_stage(screen, scale)
    , m_editor(UIStoryboard::named(kMainStoryboard)->instantiate<CreateCollageViewController>(scene::kCollage))
{
    m_editor->setSelectedImages(std::move(photos));
    m_editor->leaveThumbnailsOut();
    m_editor->view(); // it never appears: what a screen warms in the background is no use here
    ScriptStage::letTransitionsRun();
}

/// What filters have drawn with is put away on their queue, which must not meet the end of the process.
CollageScript::~CollageScript()
{
    m_editor.reset();
    runSynchronouslyOnVideoProcessingQueue([] {});
}

/// The editor tells of what fails by an alert, when the work of the step has landed.
Outcome CollageScript::perform(const CollageStep& step)
{
    if (std::visit(DrawnOnGpu{}, step))
        static_cast<void>(drawingIsPossible()); // where it isn't, the alert says so, and the log need not
    CollageHand hand{*m_editor};
    std::visit(hand, step);
    DispatchQueue::main().runUntil([this] { return !m_editor->isBusy(); });
    DispatchQueue::main().drain();
    if (const auto told = ScriptStage::alertOver(*m_editor))
        return Error{{}, *told};
    return hand.refusal ? Outcome(Error{{}, *hand.refusal}) : success();
}

UIImage CollageScript::flattened()
{
    return m_editor->flattened();
}

} // namespace lamina
