#include "editors/blend/BlendPhotoViewController.h"

#include "editors/blend/BlendToolList.h"
#include "platform/base/Localization.h"
#include "platform/base/UIScreen.h"
#include "platform/view/UIAlertController.h"

namespace lamina {

namespace {

constexpr std::size_t kFirst = 0;
constexpr std::size_t kSecond = 1;
constexpr int kFirstStickerTag = 500;
constexpr double kHiddenToolStrip = -250.0;

template <class View>
std::shared_ptr<View> makeSquareView(double side)
{
    auto view = std::make_shared<View>(CGRect{0, 0, side, side});
    view->setClipsToBounds(true);
    return view;
}

} // namespace

BlendPhotoViewController::BlendPhotoViewController()
    : m_tools(blendToolList(m_toolBar))
{
}

BlendPhotoViewController::~BlendPhotoViewController() = default;

void BlendPhotoViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    m_side = UIScreen::main().bounds.width;
    m_toolSpacing = blendToolSpacing(m_side);
    // White paper under the stack: a clear canvas looks as it will be exported.
    m_baseView = makeSquareView<UIView>(m_side);
    m_baseView->setBackgroundColor(UIColor::white());
    view().addSubview(m_baseView);

    m_composition = {};
    m_composition.photos[kFirst].actualImage = firstPickedImage;
    m_composition.photos[kFirst].crop = firstPickedCrop;
    m_composition.photos[kSecond].actualImage = secondPickedImage;
    m_composition.photos[kSecond].crop = secondPickedCrop;
    m_composition.photo2Selected = true;
    m_stickerHandleTag = kFirstStickerTag;
    m_stickerTags.clear();
    createLayout();
    m_history.start(m_composition);
    tell();
}

std::shared_ptr<UIView> BlendPhotoViewController::canvasView()
{
    view();
    return m_baseView;
}

void BlendPhotoViewController::createLayout()
{
    for (BlendPhoto& photo : m_composition.photos) {
        photo.image = photo.actualImage;
        photo.transform = {};
        photo.alpha = kBlendPhotoAlpha;
    }
    m_composition.bringToFront(kFirst);
    m_composition.current = kSecond;
    m_composition.backdrop.reset();
    buildTree();
    enterMoveMode();
}

void BlendPhotoViewController::buildTree()
{
    while (!m_baseView->subviews().empty())
        m_baseView->subviews().back()->removeFromSuperview();

    m_saveTheImg = makeSquareView<UIView>(m_side);
    m_mainImgView = makeSquareView<UIImageView>(m_side);
    m_mainImgView->setContentMode(UIViewContentMode::ScaleAspectFill);
    m_mainImgView->setBackgroundColor(m_composition.backdrop);
    m_baseView->addSubview(m_saveTheImg);
    m_saveTheImg->addSubview(m_mainImgView);

    for (const std::size_t index : m_composition.order) {
        const BlendPhoto& photo = m_composition.photos[index];
        auto view = std::make_shared<UIImageView>(CGRect{0, 0, m_side, m_side});
        view->setContentMode(UIViewContentMode::ScaleAspectFill);
        view->setImage(photo.image);
        view->setAlpha(photo.alpha);
        view->setTransform(photo.transform);
        m_mainImgView->addSubview(view);
        m_imgViews[index] = std::move(view);
    }
    if (m_composition.panBool) {
        m_mainImgView->setUserInteractionEnabled(true);
        addGesture(currentImageView());
    }
}

void BlendPhotoViewController::photo1()
{
    cancelGestures();
    const bool was = m_composition.photo1Selected;
    m_composition.photo1Selected = !was;
    m_composition.photo2Selected = was;
    if (m_composition.panBool) {
        panBtnFunc();
        m_composition.photo1Selected = false;
        showNotMovableAlert();
    }
    m_composition.opacityBool = m_composition.brightBool = m_composition.contrastBool = false;
    m_history.record(m_composition);
    tell();
}

void BlendPhotoViewController::photo2()
{
    cancelGestures();
    m_composition.photo1Selected = m_composition.photo2Selected;
    m_composition.photo2Selected = !m_composition.photo2Selected;
    if (m_composition.panBool) {
        panBtnFunc();
        m_composition.photo1Selected = false;
        m_composition.photo2Selected = true;
    }
    m_composition.opacityBool = m_composition.brightBool = m_composition.contrastBool = false;
    m_history.record(m_composition);
    tell();
}

void BlendPhotoViewController::showNotMovableAlert()
{
    present(UIAlertController::make(localizedString("⚠️"), localizedString("Photo 1 is not movable."),
                                    {{localizedString("OK"), UIAlertActionStyle::Default, {}}}),
            true);
}

void BlendPhotoViewController::resetBtn()
{
    cancelGestures();
    m_composition.panBool = false;
    createLayout();
    m_toolBar.setActiveTool(BlendTool::Reset);
    hidePanels();
    m_history.record(m_composition);
    tell();
}

void BlendPhotoViewController::panBtn()
{
    cancelGestures();
    enterMoveMode();
    m_history.record(m_composition); // another photo may lie on top now
    tell();
}

void BlendPhotoViewController::enterMoveMode()
{
    for (UIImageView* view : {&imgView1(), &imgView2(), &mainImgView()})
        view->setUserInteractionEnabled(true);
    m_composition.panBool = true;
    hidePanels();
    m_composition.photo1Selected = false;
    m_composition.photo2Selected = true;
    m_toolBar.setActiveTool(BlendTool::Pan);
    panBtnFunc();
}

void BlendPhotoViewController::panBtnFunc()
{
    if (!m_composition.toolBool)
        m_panels.toolSubViewTopConst = kHiddenToolStrip;
    currentImageView().removeAllGestureRecognizers();
    if (m_composition.photo2Selected && !m_composition.photo1Selected) {
        m_composition.current = kSecond;
        m_composition.bringToFront(kSecond);
        m_mainImgView->bringSubviewToFront(imgView2());
    }
    addGesture(currentImageView());
    bringStickersToFront();
}

void BlendPhotoViewController::hidePanels()
{
    const CGRect screen = view().frame();
    m_panels.toolSubViewTopConst = kHiddenToolStrip;
    m_panels.fxView = {0, screen.size.height, screen.size.width, 180};
    m_panels.stickerScrollView = {0, screen.size.height, screen.size.width, 50};
}

void BlendPhotoViewController::bringStickersToFront()
{
    for (const int tag : m_stickerTags) {
        if (UIView* sticker = view().viewWithTag(tag))
            m_mainImgView->bringSubviewToFront(*sticker);
    }
}

} // namespace lamina
