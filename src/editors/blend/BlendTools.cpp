// The blend editor's bar and its modes; turns, flips and the backdrop.

#include "editors/blend/BlendTools.h"

#include "editors/blend/BlendPanels.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "editors/colorpicker/ColorPicking.h"
#include "editors/colorpicker/InfColorPickerController.h"
#include "editors/common/PanelAnimation.h"
#include "editors/common/PictureTools.h"
#include "platform/base/UIColor.h"

#include <algorithm>
#include <cstddef>

namespace lamina {

namespace {

struct ModeTool {
    BlendMode mode;
    std::string_view tool;
};

constexpr std::array<ModeTool, 4> kModeTools = {{
    {BlendMode::Move, blendtool::kPan},
    {BlendMode::Tools, blendtool::kTools},
    {BlendMode::Effects, blendtool::kEffects},
    {BlendMode::AddStickers, blendtool::kStickers},
}};

std::string_view toolOf(BlendMode mode)
{
    return std::find_if(kModeTools.begin(), kModeTools.end(), [mode](const ModeTool& row) { return row.mode == mode; })
        ->tool;
}

} // namespace

void BlendPhotoViewController::setUpTools()
{
    setToolAction(blendtool::kReset, [this] { resetBtn(); });
    setToolAction(blendtool::kPan, [this] { panBtn(); });
    setToolAction(blendtool::kTools, [this] { toolBtn(); });
    setToolAction(blendtool::kEffects, [this] { FxBtn(); });
    setToolAction(blendtool::kStickers, [this] { stickerBtn(); });
    m_subTools = m_subToolBar.list();
}

void BlendPhotoViewController::hidePanels()
{
    animatePanels([this, screen = view().frame().size] { m_panels.hide(screen); });
}

QString BlendPhotoViewController::shownPanel() const
{
    const UIView* const screen = m_baseView ? m_baseView->superview() : nullptr;
    return screen ? QString::fromLatin1(m_panels.shown(screen->frame().size)) : QString();
}

/// A tool that takes over turns the buttons of the others off, so that the next touch of theirs turns them on.
void BlendPhotoViewController::takeBar(BlendMode mode)
{
    editedToolBar().setActiveTool(toolOf(mode));
    m_toolSelected = m_toolSelected && mode == BlendMode::Tools;
    m_stickerSelected = m_stickerSelected && mode == BlendMode::AddStickers;
}

void BlendPhotoViewController::enterToolMode(BlendMode mode)
{
    currentImageView().removeAllGestureRecognizers();
    editedComposition().mode = mode;
    takeBar(mode);
}

/// A state that comes back has its tool in the bar again. Panels of the tool that is there already stay as they are.
void BlendPhotoViewController::showMode(BlendMode mode)
{
    if (toolBar().activeTool() == toolOf(mode))
        return;
    if (mode == BlendMode::Move) {
        hidePanels();
        editedToolBar().clearBackgrounds();
        takeBar(mode);
        return;
    }
    takeBar(mode);
    m_toolSelected = mode == BlendMode::Tools;
    m_stickerSelected = mode == BlendMode::AddStickers;
    mode == BlendMode::Tools ? openToolStrip() : mode == BlendMode::Effects ? openEffects() : openStickerStrip();
}

void BlendPhotoViewController::toolBtn()
{
    act([this] {
        currentImageView().removeAllGestureRecognizers();
        editedComposition().current = kSecond;
        m_toolSelected = !m_toolSelected;
        if (m_toolSelected) {
            enterToolMode(BlendMode::Tools);
            editedComposition().toolBool = true;
            openToolStrip();
        } else {
            animatePanels([this] { m_panels.toolSubViewTopConst = blendpanel::kHiddenToolStrip; });
            editedToolBar().clearBackgrounds();
        }
    });
}

void BlendPhotoViewController::openToolStrip()
{
    closeEffects();
    animatePanels([this, screen = view().frame().size] {
        m_panels.toolSubViewTopConst = blendpanel::kShownToolStrip;
        m_panels.stickerScrollView = blendpanel::hiddenStickers(screen);
    });
}

void BlendPhotoViewController::chooseSubTool(const QString& identifier)
{
    constexpr struct {
        std::string_view tool;
        void (BlendPhotoViewController::*action)();
    } kActions[] = {
        {picturetool::kLeft, &BlendPhotoViewController::leftBtn},
        {picturetool::kRight, &BlendPhotoViewController::rightBtn},
        {picturetool::kHorizontal, &BlendPhotoViewController::horizontalBtn},
        {picturetool::kVertical, &BlendPhotoViewController::verticalBtn},
        {picturetool::kColor, &BlendPhotoViewController::adjustColor1},
    };
    for (const auto& [tool, action] : kActions) {
        if (identifier.toStdString() == tool)
            (this->*action)();
    }
}

void BlendPhotoViewController::leftBtn()
{
    doSubTool(picturetool::kLeft);
}

void BlendPhotoViewController::rightBtn()
{
    doSubTool(picturetool::kRight);
}

void BlendPhotoViewController::horizontalBtn()
{
    doSubTool(picturetool::kHorizontal);
}

void BlendPhotoViewController::verticalBtn()
{
    doSubTool(picturetool::kVertical);
}

void BlendPhotoViewController::doSubTool(std::string_view tool)
{
    act([&] {
        m_subToolBar.setActiveTool(tool);
        const std::size_t photo = resolvedPhoto();
        setPhotoImage(photo, pictureOperation(tool)(composition().photos[photo].image));
    });
}

/// The photo that sub-tools act on, which becomes the current one.
std::size_t BlendPhotoViewController::resolvedPhoto()
{
    return editedComposition().current = photoInHand();
}

void BlendPhotoViewController::setPhotoImage(std::size_t photo, const UIImage& image)
{
    editedComposition().photos[photo].image = image;
    m_imgViews[photo]->setImage(image);
}

void BlendPhotoViewController::adjustColor1()
{
    const auto self = std::static_pointer_cast<BlendPhotoViewController>(shared_from_this());
    if (pickColor(*this, view().backgroundColor().value_or(UIColor::clear()), self))
        act([this] { m_subToolBar.setActiveTool(picturetool::kColor); });
}

void BlendPhotoViewController::colorPickerControllerDidFinish(InfColorPickerController& picker)
{
    act([&] {
        editedComposition().backdrop = picker.resultColor();
        m_mainImgView->setBackgroundColor(composition().backdrop);
    });
    dismiss(true);
}

QString BlendPhotoViewController::backdrop() const
{
    return colorText(composition().backdrop.value_or(UIColor::clear()));
}

} // namespace lamina
