// The blend editor's bar and its modes; turns, flips and the backdrop.

#include "editors/blend/BlendTools.h"

#include "editors/blend/BlendPanels.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "editors/colorpicker/InfColorPickerController.h"
#include "editors/common/PanelAnimation.h"
#include "imageops/ImageGeometry.h"
#include "platform/base/UIColor.h"

#include <algorithm>
#include <cmath>
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

UIImage turnedLeft(const UIImage& image)
{
    return rotateInDegrees(image, 90.0F);
}

UIImage turnedRight(const UIImage& image)
{
    return rotateInDegrees(image, -90.0F);
}

/// Two hexadecimal digits of a component.
QString byteText(double component)
{
    return QStringLiteral("%1").arg(std::lround(std::clamp(component, 0.0, 1.0) * 255), 2, 16, QChar('0'));
}

} // namespace

void BlendPhotoViewController::setUpTools()
{
    setToolAction(blendtool::kReset, [this] { resetBtn(); });
    setToolAction(blendtool::kPan, [this] { panBtn(); });
    setToolAction(blendtool::kTools, [this] { toolBtn(); });
    setToolAction(blendtool::kEffects, [this] { FxBtn(); });
    setToolAction(blendtool::kStickers, [this] { stickerBtn(); });
    for (const EditorTool& tool : kBlendSubTools)
        m_subToolBar.setEnabled(tool.identifier, true);
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
        {blendsubtool::kLeft, &BlendPhotoViewController::leftBtn},
        {blendsubtool::kRight, &BlendPhotoViewController::rightBtn},
        {blendsubtool::kHorizontal, &BlendPhotoViewController::horizontalBtn},
        {blendsubtool::kVertical, &BlendPhotoViewController::verticalBtn},
        {blendsubtool::kColor, &BlendPhotoViewController::adjustColor1},
    };
    for (const auto& [tool, action] : kActions) {
        if (identifier.toStdString() == tool)
            (this->*action)();
    }
}

void BlendPhotoViewController::leftBtn()
{
    doSubTool(blendsubtool::kLeft, turnedLeft);
}

void BlendPhotoViewController::rightBtn()
{
    doSubTool(blendsubtool::kRight, turnedRight);
}

void BlendPhotoViewController::horizontalBtn()
{
    doSubTool(blendsubtool::kHorizontal, horizontalFlip);
}

void BlendPhotoViewController::verticalBtn()
{
    doSubTool(blendsubtool::kVertical, verticalFlip);
}

void BlendPhotoViewController::doSubTool(std::string_view tool, UIImage (*operation)(const UIImage& image))
{
    act([&] {
        m_subToolBar.setActiveTool(tool);
        const std::size_t photo = resolvedPhoto();
        setPhotoImage(photo, operation(composition().photos[photo].image));
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
    if (presentedViewController())
        return;
    act([this] { m_subToolBar.setActiveTool(blendsubtool::kColor); });
    const auto picker = InfColorPickerController::colorPickerViewController();
    picker->setSourceColor(view().backgroundColor().value_or(UIColor::clear()));
    picker->setDelegate(std::static_pointer_cast<BlendPhotoViewController>(shared_from_this()));
    picker->setModalPresentationStyle(UIModalPresentationStyle::FullScreen);
    picker->presentModallyOverViewController(*this);
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
    const UIColor color = composition().backdrop.value_or(UIColor::clear());
    return '#' + byteText(color.alpha) + byteText(color.red) + byteText(color.green) + byteText(color.blue);
}

} // namespace lamina
