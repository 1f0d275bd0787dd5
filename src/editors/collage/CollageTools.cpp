// The collage editor's bar and its tools; turns, flips and the colour behind a photo.

#include "editors/collage/CollageTools.h"

#include "editors/collage/CreateCollageViewController.h"
#include "editors/colorpicker/ColorPicking.h"
#include "editors/colorpicker/InfColorPickerController.h"
#include "editors/common/PanelAnimation.h"
#include "editors/common/PictureTools.h"
#include "platform/base/Causes.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Localization.h"
#include "platform/view/FailureAlert.h"

#include <algorithm>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace lamina {

namespace {

const EditorTool* toolTagged(int tag)
{
    const auto found = std::find_if(kCollageTools.begin(), kCollageTools.end(),
                                    [tag](const EditorTool& tool) { return tool.tag == tag; });
    return found == kCollageTools.end() ? nullptr : &*found;
}

} // namespace

/// For what lives longer than the call.
std::shared_ptr<CreateCollageViewController> CreateCollageViewController::sharedSelf()
{
    return std::static_pointer_cast<CreateCollageViewController>(shared_from_this());
}

void CreateCollageViewController::setUpTools()
{
    m_subTools = m_subToolBar.list();
}

void CreateCollageViewController::watchTools()
{
    watch(
        [this] {
            return std::tuple{shownPanel(), layouts(), filters(), filter(), stickerStrip()};
        },
        [this] { emit panelsChanged(); });
    watch([this] { return m_subToolBar; },
          [this] {
              m_subTools = m_subToolBar.list();
              emit subToolsChanged();
          });
    watch([this] { return composition().borderColor; }, [this] { emit frameChanged(); });
    // Another layout has other lines, and what comes into the canvas comes above them.
    watch(
        [this] {
            const UIView* const topmost = m_saveTheImg ? m_saveTheImg->subviews().back().get() : nullptr;
            return std::pair{layout(), topmost};
        },
        [this] { showFrame(); });
}

void CreateCollageViewController::addBtnsInScrollView()
{
    for (const EditorTool& tool : kCollageTools)
        setToolAction(tool.identifier, [this, tag = tool.tag] { imgGesture(tag); });
    m_panels.layOut(view().frame().size);
}

std::vector<std::string_view> CreateCollageViewController::toolImgArr() const
{
    std::vector<std::string_view> icons;
    for (const EditorTool& tool : kCollageTools)
        icons.push_back(tool.identifier == collagetool::kTools ? tool.activeIcon : tool.icon);
    return icons;
}

void CreateCollageViewController::imgGesture(int tag)
{
    const EditorTool* const tool = toolTagged(tag);
    act([&] {
        closePanels();
        m_frameBool = false;
        if (tool == nullptr)
            return;
        lightTool(tool->identifier);
        if (tool->identifier == collagetool::kReset)
            addFrame();
        if (tool->identifier == collagetool::kSticker)
            raiseStickers();
        openPanel(tool->identifier);
    });
    if (tool && tool->identifier == collagetool::kGallery)
        launchSpecialController();
}

/// All but the effects, at once. The strips go before anything else is looked for.
void CreateCollageViewController::closePanels()
{
    editedToolBar().clearBackgrounds();
    m_panels.close(view().frame().size, firstView()->frame().size);
    m_layouts.reset();
    stickerEditing().closeStrip();
    m_filterEnableBool = false;
}

void CreateCollageViewController::hidePanel()
{
    const QString shown = shownPanel();
    if (shown.isEmpty())
        return;
    if (shown == QLatin1String("effects"))
        return hideFxViewBtnClicked();
    act([this] { closePanels(); });
}

void CreateCollageViewController::lightTool(std::string_view tool)
{
    editedToolBar().setActiveTool(tool);
    editedComposition().tool = tool;
}

/// Without what the tool does to the picture.
void CreateCollageViewController::openPanel(std::string_view tool)
{
    const auto raise = [screen = view().frame().size, this](void (CollagePanels::*panel)(CGSize)) {
        animatePanels([&] { (m_panels.*panel)(screen); });
    };
    if (tool != collagetool::kEffects && shownPanel() == QLatin1String("effects"))
        closeEffects();
    if (tool == collagetool::kLayout)
        openLayouts();
    else if (tool == collagetool::kTools)
        raise(&CollagePanels::openTools);
    else if (tool == collagetool::kFilter)
        openFilters();
    else if (tool == collagetool::kEffects)
        raise(&CollagePanels::openEffects);
    else if (tool == collagetool::kSticker)
        openStickers();
    else if (tool == collagetool::kReset)
        openFrame();
}

void CreateCollageViewController::openLayouts()
{
    const CGSize screen = view().frame().size;
    m_panels.subScrollView = CollagePanels::makeStrip(screen);
    m_layouts = std::make_unique<CollageLayouts>(composition());
    animatePanels([&] { m_panels.openLayouts(screen); });
}

/// On a later turn, so that the bar shows the tool before the thumbnails take their time. A tool that is chosen before
/// them wins.
void CreateCollageViewController::openFilters()
{
    m_filterEnableBool = true;
    DispatchQueue::main().async([weak = std::weak_ptr(sharedSelf())] {
        const auto self = weak.lock();
        if (self)
            self->act([&] { self->addFiltersOnScrollView(); });
    });
}

void CreateCollageViewController::openStickers()
{
    const CGSize screen = view().frame().size;
    m_panels.stickerScrollView = CollagePanels::makeStrip(screen);
    stickerBtnClicked();
    animatePanels([&] { m_panels.openStickers(screen); });
}

void CreateCollageViewController::openFrame()
{
    m_frameBool = true;
    animatePanels([this, screen = view().frame().size] { m_panels.openFrame(screen); });
}

void CreateCollageViewController::showTool()
{
    if (toolBar().activeTool() == composition().tool)
        return;
    closePanels();
    m_frameBool = false;
    lightTool(composition().tool);
    if (composition().tool == collagetool::kFilter && composition().beforeApplyFilterImage)
        reopenFilters();
    else
        openPanel(composition().tool);
}

QString CreateCollageViewController::shownPanel() const
{
    const UIView* const screen = m_baseView ? m_baseView->superview() : nullptr;
    return screen ? QString::fromLatin1(m_panels.shown(screen->frame().size)) : QString();
}

QObject* CreateCollageViewController::layouts() const
{
    return m_layouts ? &m_layouts->thumbnails() : nullptr;
}

int CreateCollageViewController::layoutRow() const
{
    return std::max(-1, layout() - (composition().count == 2 ? kFirstLayoutOfTwo : kFirstLayoutOfThree));
}

void CreateCollageViewController::imgGesture1(int tag)
{
    applyLayout(tag);
}

void CreateCollageViewController::chooseSubTool(const QString& identifier)
{
    const std::string tool = identifier.toStdString();
    if (tool == picturetool::kColor)
        adjustColor();
    else if (pictureOperation(tool) != nullptr)
        doSubTool(tool);
}

void CreateCollageViewController::leftBtn()
{
    doSubTool(picturetool::kLeft);
}

void CreateCollageViewController::rightBtn()
{
    doSubTool(picturetool::kRight);
}

void CreateCollageViewController::horizontalBtn()
{
    doSubTool(picturetool::kHorizontal);
}

void CreateCollageViewController::verticalBtn()
{
    doSubTool(picturetool::kVertical);
}

void CreateCollageViewController::doSubTool(std::string_view tool)
{
    act([&] {
        m_subToolBar.setActiveTool(tool);
        const std::size_t slot = composition().current;
        const UIImage& photo = composition().photoSlots[slot].image;
        const UIImage changed = pictureOperation(tool)(photo);
        if (!changed && photo)
            return presentFailure(*this, localizedString(QT_TRANSLATE_NOOP("Lamina", "Can’t change the photo")),
                                  {{}, cause::kNoMemory});
        setSlotPicture(slot, changed);
    });
}

void CreateCollageViewController::adjustColor()
{
    if (pickColor(*this, view().backgroundColor().value_or(UIColor::clear()), sharedSelf()))
        act([this] { m_subToolBar.setActiveTool(picturetool::kColor); });
}

void CreateCollageViewController::colorPickerControllerDidFinish(InfColorPickerController& picker)
{
    if (m_frameBool)
        setBorderColor(picker.resultColor().value_or(composition().borderColor));
    else
        act([&] {
            editedComposition().photoSlots[composition().current].background = picker.resultColor();
            currentView().setBackgroundColor(picker.resultColor());
        });
    dismiss(true);
}

QString CreateCollageViewController::slotColor() const
{
    return colorText(composition().photoSlots[composition().current].background.value_or(UIColor::clear()));
}

} // namespace lamina
