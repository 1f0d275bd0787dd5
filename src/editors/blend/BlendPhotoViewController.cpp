#include "editors/blend/BlendPhotoViewController.h"

#include "editors/blend/BlendTools.h"
#include "editors/blend/PickedImages.h"
#include "editors/common/EditorNotifications.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/Localization.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/UIColor.h"
#include "platform/base/UIScreen.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/UIAlertController.h"

#include <cstddef>
#include <tuple>

namespace lamina {

namespace {

/// Of the screen itself, behind the canvas: #121316.
constexpr UIColor kGround{0x12 / 255.0, 0x13 / 255.0, 0x16 / 255.0, 1.0};

template <class View>
std::shared_ptr<View> makeSquareView(double side)
{
    auto view = std::make_shared<View>(CGRect{0, 0, side, side});
    view->setClipsToBounds(true);
    return view;
}

} // namespace

BlendPhotoViewController::BlendPhotoViewController()
    : StickerEditor(kBlendTools, blendtool::kPan, kFirstStickerTag)
    , m_finish(std::make_shared<ExportFinish>(*this,
                                              ExportedWork{[this] { return flattened(); }, [this] { workExported(); }}))
    , m_cutting(std::make_shared<PhotoCutting>(*this))
{
    setUpTools();
    watchProperties();
}

BlendPhotoViewController::~BlendPhotoViewController() = default;

void BlendPhotoViewController::watchProperties()
{
    watch(
        [this] {
            return std::tuple{photo1Selected(), photo2Selected(), movingPhoto(), photo2OnTop()};
        },
        [this] { emit selectionChanged(); });
    const auto areIdentical = [](const std::array<UIImage, 2>& some, const std::array<UIImage, 2>& others) {
        return some[0].isIdenticalTo(others[0]) && some[1].isIdenticalTo(others[1]);
    };
    watch(
        [this] {
            return std::array{composition().photos[kFirst].image, composition().photos[kSecond].image};
        },
        [this] { emit picturesChanged(); }, areIdentical);
    watch([this] { return std::tuple{shownPanel(), stickerStrip()}; }, [this] { emit panelsChanged(); });
    watch([this] { return m_subToolBar; },
          [this] {
              m_subTools = m_subToolBar.list();
              emit subToolsChanged();
          });
    watch([this] { return composition().backdrop; }, [this] { emit backdropChanged(); });
    // Whoever finds the editor open finds its photos in the slots, whichever way they came.
    watch(
        [this] {
            return std::array{composition().photos[kFirst].actualImage, composition().photos[kSecond].actualImage};
        },
        [this] { putPickedPhotos(composition()); }, areIdentical);
    connect(this, &EditorViewController::changed, this, &BlendPhotoViewController::closePhotoMenu);
}

void BlendPhotoViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    if (const BlendComposition* const kept = resumed())
        putPickedPhotos(*kept);
    m_side = resumed() ? resumed()->side : UIScreen::main().bounds.width;
    m_toolSpacing = lamina::toolSpacing(m_side, kBlendToolSpaces);
    m_baseView = makeCanvas({0, 0, m_side, m_side});
    view().setBackgroundColor(kGround);
    view().addSubview(m_baseView);
    takePickedPhotos();
    createLayout();
    open();
}

void BlendPhotoViewController::takePickedPhotos()
{
    BlendComposition& composition = editedComposition();
    composition = {};
    composition.side = m_side;
    composition.photos[kFirst].actualImage = firstPickedImage;
    composition.photos[kFirst].crop = firstPickedCrop;
    composition.photos[kFirst].source = firstPickedSource;
    composition.photos[kSecond].actualImage = secondPickedImage;
    composition.photos[kSecond].crop = secondPickedCrop;
    composition.photos[kSecond].source = secondPickedSource;
    composition.photo2Selected = true;
}

void BlendPhotoViewController::putPickedPhotos(const BlendComposition& composition)
{
    firstPickedImage = composition.photos[kFirst].actualImage;
    firstPickedCrop = composition.photos[kFirst].crop;
    firstPickedSource = composition.photos[kFirst].source;
    secondPickedImage = composition.photos[kSecond].actualImage;
    secondPickedCrop = composition.photos[kSecond].crop;
    secondPickedSource = composition.photos[kSecond].source;
}

std::shared_ptr<UIView> BlendPhotoViewController::canvasView()
{
    view();
    return m_baseView;
}

void BlendPhotoViewController::createLayout()
{
    BlendComposition& composition = editedComposition();
    for (BlendPhoto& photo : composition.photos) {
        photo.image = photo.actualImage;
        photo.transform = {};
        photo.alpha = kBlendPhotoAlpha;
    }
    composition.bringToFront(kFirst);
    composition.current = kSecond;
    composition.backdrop.reset();
    composition.stickers.clear();
    buildTree();
    enterMoveMode();
}

void BlendPhotoViewController::buildTree()
{
    stickerEditing().leave();
    while (!m_baseView->subviews().empty())
        m_baseView->subviews().back()->removeFromSuperview();

    m_saveTheImg = makeSquareView<UIView>(m_side);
    m_mainImgView = makeSquareView<UIImageView>(m_side);
    m_mainImgView->setContentMode(UIViewContentMode::ScaleAspectFill);
    m_mainImgView->setBackgroundColor(composition().backdrop);
    m_mainImgView->setUserInteractionEnabled(true);
    m_baseView->addSubview(m_saveTheImg);
    m_saveTheImg->addSubview(m_mainImgView);

    for (const std::size_t index : composition().order) {
        m_imgViews[index] = makePhotoView(composition().photos[index]);
        m_mainImgView->addSubview(m_imgViews[index]);
    }
    stickerEditing().show(m_mainImgView, composition().stickers);
    if (panBool())
        addGesture(currentImageView());
}

std::shared_ptr<UIImageView> BlendPhotoViewController::makePhotoView(const BlendPhoto& photo) const
{
    auto view = std::make_shared<UIImageView>(CGRect{0, 0, m_side, m_side});
    view->setContentMode(UIViewContentMode::ScaleAspectFill);
    view->setUserInteractionEnabled(true);
    view->setImage(photo.image);
    view->setAlpha(photo.alpha);
    view->setTransform(photo.transform);
    return view;
}

void BlendPhotoViewController::showComposition()
{
    buildTree();
    showMode(composition().mode);
}

void BlendPhotoViewController::photo1()
{
    act([this] {
        BlendComposition& composition = editedComposition();
        const bool was = composition.photo1Selected;
        composition.photo1Selected = !was;
        composition.photo2Selected = was;
        if (panBool()) {
            panBtnFunc();
            composition.photo1Selected = false;
            showNotMovableAlert();
        }
        forgetSnapshots();
    });
}

void BlendPhotoViewController::photo2()
{
    act([this] {
        BlendComposition& composition = editedComposition();
        composition.photo1Selected = composition.photo2Selected;
        composition.photo2Selected = !composition.photo2Selected;
        if (panBool()) {
            panBtnFunc();
            composition.photo1Selected = false;
            composition.photo2Selected = true;
        }
        forgetSnapshots();
    });
}

void BlendPhotoViewController::forgetSnapshots()
{
    BlendComposition& composition = editedComposition();
    composition.opacityBool = composition.brightBool = composition.contrastBool = false;
}

void BlendPhotoViewController::showNotMovableAlert()
{
    present(UIAlertController::make(localizedString("⚠️"), localizedString("Photo 1 is not movable."),
                                    {{localizedString("OK"), UIAlertActionStyle::Default, {}}}),
            true);
}

void BlendPhotoViewController::resetBtn()
{
    act([this] {
        createLayout();
        editedToolBar().setActiveTool(blendtool::kReset);
        hidePanels();
    });
}

void BlendPhotoViewController::panBtn()
{
    act([this] { enterMoveMode(); }); // a step too where another photo lies on top now
}

void BlendPhotoViewController::enterMoveMode()
{
    for (UIImageView* view : {&imgView1(), &imgView2(), &mainImgView()})
        view->setUserInteractionEnabled(true);
    editedComposition().mode = BlendMode::Move;
    hidePanels();
    editedComposition().photo1Selected = false;
    editedComposition().photo2Selected = true;
    takeBar(BlendMode::Move);
    panBtnFunc();
}

void BlendPhotoViewController::panBtnFunc()
{
    BlendComposition& composition = editedComposition();
    if (!composition.toolBool)
        m_panels.toolSubViewTopConst = blendpanel::kHiddenToolStrip;
    currentImageView().removeAllGestureRecognizers();
    if (composition.bothSelected()) {
        m_baseView->bringSubviewToFront(*m_mainImgView);
    } else if (composition.photo2Selected) {
        composition.current = kSecond;
        composition.bringToFront(kSecond);
        m_mainImgView->bringSubviewToFront(imgView2());
    }
    addGesture(currentImageView());
    stickerEditing().hideHandles();
    stickerEditing().bringToFront();
}

void BlendPhotoViewController::addGesture(UIImageView& view)
{
    view.setUserInteractionEnabled(true);
    attachGesture(view, &BlendPhotoViewController::handlePan1);
    attachGesture(view, &BlendPhotoViewController::pinch);
}

UIView* BlendPhotoViewController::gestureView() const
{
    return panBool() ? &currentImageView() : nullptr;
}

void BlendPhotoViewController::panPhoto(UIView& view, CGPoint by)
{
    transformPhoto(view, view.transform().translated(by.x, by.y)); // a zoomed photo goes further
}

void BlendPhotoViewController::transformPhoto(UIView& view, const CGAffineTransform& transform)
{
    const std::optional<std::size_t> photo = photoOf(&view);
    // A photo of no size could not be zoomed or even touched again.
    if (!photo || !transform.inverted())
        return;
    editedComposition().photos[*photo].transform = transform;
    view.setTransform(transform);
    tellGesture();
}

std::optional<std::size_t> BlendPhotoViewController::photoOf(const UIView* view) const
{
    for (const std::size_t index : {kFirst, kSecond}) {
        if (view != nullptr && view == m_imgViews[index].get())
            return index;
    }
    return std::nullopt;
}

void BlendPhotoViewController::prepareExport()
{
    editedComposition().backdrop = UIColor::white();
    m_mainImgView->setBackgroundColor(composition().backdrop);
    amendRecorded([this](BlendComposition& recorded) {
        recorded.backdrop = UIColor::white();
        finishStickers(recorded);
    });
}

void BlendPhotoViewController::backBtn()
{
    askToDiscard([this] {
        NotificationCenter::defaultCenter().post(kDismissEditorsNotification, this);
        clearPickedImages();
    });
}

void BlendPhotoViewController::shareBtn()
{
    cancelGestures();
    amendRecorded([this](BlendComposition& recorded) { finishStickers(recorded); });
    m_finish->openChooser();
}

} // namespace lamina
