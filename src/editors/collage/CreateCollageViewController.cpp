#include "editors/collage/CreateCollageViewController.h"

#include "editors/collage/CollageTools.h"
#include "platform/base/UIColor.h"
#include "platform/base/UIScreen.h"

#include <algorithm>
#include <utility>

namespace lamina {

namespace {

/// Of the screen itself, behind the canvas: #121316.
constexpr UIColor kGround{0x12 / 255.0, 0x13 / 255.0, 0x16 / 255.0, 1.0};

/// Points between the buttons of the tool strip; see toolSpacing.
constexpr std::array<double, 5> kToolSpaces = {20, 30, 33, 38, 47};

/// What the rows of slots show.
bool slotsLookAlike(const CollageComposition& one, const CollageComposition& other)
{
    return one.layout == other.layout && one.current == other.current &&
           std::equal(one.photoSlots.begin(), one.photoSlots.end(), other.photoSlots.begin(),
                      [](const CollageSlot& a, const CollageSlot& b) {
                          return a.background == b.background && a.alpha == b.alpha && a.image.isIdenticalTo(b.image);
                      });
}

} // namespace

CreateCollageViewController::CreateCollageViewController()
    : StickerEditor(kCollageTools, collagetool::kTools, kFirstStickerTag)
    , m_finish(std::make_shared<ExportFinish>(*this,
                                              ExportedWork{[this] { return flattened(); }, [this] { workExported(); }}))
{
    setUpTools();
    watchCanvas();
    watchTools();
}

CreateCollageViewController::~CreateCollageViewController() = default;

void CreateCollageViewController::watchCanvas()
{
    watch([this] { return layout(); },
          [this] {
              makeSlotIcons();
              emit layoutChanged();
          });
    watch([this] { return composition(); }, [this] { emit slotsChanged(); }, slotsLookAlike);
}

void CreateCollageViewController::setSelectedImages(std::vector<UIImage> selectedImages)
{
    m_selectedImages = std::move(selectedImages);
    editedComposition().count = std::clamp<std::size_t>(m_selectedImages.size(), 2, kMostCollageSlots);
}

std::shared_ptr<UIView> CreateCollageViewController::canvasView()
{
    view();
    return m_baseView;
}

void CreateCollageViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    takeSelectedImages();
    const double side = composition().side;
    m_toolSpacing = toolSpacing(side, kToolSpaces);
    m_baseView = makeCanvas({0, 0, side, side});
    view().setBackgroundColor(kGround);
    view().addSubview(m_baseView);
    makeSaveTheImg();
    showStickers();
    blendPhoto();
    addBtnsInScrollView();
    frameSlots(composition().count == 2 ? kFirstLayoutOfTwo : kFirstLayoutOfThree);
    createViewForFx();
    showFrame();
    open();
}

/// A work that is resumed has its own measures, which all that is made from here on goes by.
void CreateCollageViewController::takeSelectedImages()
{
    const CGSize screen = UIScreen::main().bounds;
    CollageComposition& composition = editedComposition();
    composition.count = resumed() ? resumed()->count : composition.count;
    composition.side = resumed() ? resumed()->side : screen.width;
    composition.screenHeight = resumed() ? resumed()->screenHeight : screen.height;
    for (std::size_t slot = 0; slot < std::min(composition.count, m_selectedImages.size()); ++slot)
        composition.photoSlots[slot].master = m_selectedImages[slot];
}

void CreateCollageViewController::makeSaveTheImg()
{
    stickerEditing().leave();
    while (!m_baseView->subviews().empty())
        m_baseView->subviews().back()->removeFromSuperview();
    const double side = composition().side;
    m_saveTheImg = std::make_shared<UIView>(CGRect{0, 0, side, side});
    m_saveTheImg->setOpaque(false);
    m_saveTheImg->layer().setSharesEdges(true);
    m_saveTheImg->setClipsToBounds(true);
    m_baseView->addSubview(m_saveTheImg);
    m_saveTheImg->setCenter({side / 2, side / 2});
}

void CreateCollageViewController::showComposition()
{
    makeSaveTheImg();
    buildSlots();
    frameSlots(composition().layout);
    takeTouches();
    addGesturesToImageView(currentImageView());
    showStickers();
    showFrame();
    showTool();
    if (m_filterEnableBool)
        showFilters();
}

} // namespace lamina
