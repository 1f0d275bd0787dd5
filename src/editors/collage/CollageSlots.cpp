// The slots of a collage: building them, choosing one, what gestures do to a photo.

#include "editors/collage/CreateCollageViewController.h"
#include "platform/base/Localization.h"
#include "platform/view/UIGestureRecognizer.h"

#include <algorithm>
#include <string>
#include <utility>

namespace lamina {

namespace {

/// Of a screen that is too short for a canvas as wide as itself: its slots keep a margin in it.
constexpr double kShortScreen = 480;
constexpr double kShortScreenMargins = 100;

/// The slot whose recognisers go when that one is chosen. Recognisers of the third may be left, which does no harm: its
/// layer takes no touches.
constexpr std::array<std::size_t, kMostCollageSlots> kOtherSlot = {1, 0, 0};

/// From the lowest.
constexpr std::array<std::size_t, kMostCollageSlots> kBuildingOrder = {1, 0, 2};

} // namespace

void CreateCollageViewController::blendPhoto()
{
    CollageComposition& composition = editedComposition();
    readViews();
    const CGSize size = slotFrame().size;
    for (CollageSlot& slot : composition.photoSlots) {
        const UIImage master = std::exchange(slot, {}).master;
        slot.master = slot.image = master;
        slot.center = {size.width / 2, size.height / 2};
    }
    composition.layout = 0;
    composition.stickersBelow = composition.stickers.size();
    buildSlots();
    select(0);
}

CGRect CreateCollageViewController::slotFrame() const
{
    const double side = composition().side - (composition().screenHeight == kShortScreen ? kShortScreenMargins : 0);
    return {0, 0, side, side};
}

/// On top of what stands in the canvas.
void CreateCollageViewController::buildSlots()
{
    for (SlotViews& slot : m_slots) {
        if (slot.layer)
            slot.layer->removeFromSuperview();
        slot = {};
    }
    for (const std::size_t index : kBuildingOrder) {
        if (index >= composition().count)
            continue;
        m_slots[index] = makeSlot(composition().photoSlots[index]);
        m_saveTheImg->addSubview(m_slots[index].layer);
    }
}

CreateCollageViewController::SlotViews CreateCollageViewController::makeSlot(const CollageSlot& slot) const
{
    const double middle = composition().side / 2;
    SlotViews views{std::make_shared<UIView>(slotFrame()), nullptr};
    views.layer->setCenter({middle, middle});
    views.layer->setUserInteractionEnabled(true);
    views.layer->setClipsToBounds(true);
    views.layer->setBackgroundColor(slot.background);
    views.photo = std::make_shared<UIImageView>(views.layer->bounds());
    views.photo->setContentMode(UIViewContentMode::ScaleAspectFill);
    views.layer->addSubview(views.photo);
    showPhoto(views, slot);
    return views;
}

void CreateCollageViewController::showPhoto(const SlotViews& views, const CollageSlot& slot)
{
    views.photo->setImage(slot.image);
    views.photo->setAlpha(slot.alpha);
    views.photo->setCenter(slot.center);
    views.photo->setTransform(slot.transform);
}

void CreateCollageViewController::applyLayout(int frame)
{
    act([&] {
        blendPhoto();
        frameSlots(frame);
    });
}

void CreateCollageViewController::frameSlots(int frame)
{
    editedComposition().layout = frame;
}

void CreateCollageViewController::fstBtn()
{
    selectSlot(1);
}

void CreateCollageViewController::secondBtn()
{
    selectSlot(2);
}

void CreateCollageViewController::thirdBtn()
{
    selectSlot(3);
}

void CreateCollageViewController::selectSlot(int number)
{
    if (const auto slot = slotNumbered(number))
        act([&] { select(*slot); });
}

void CreateCollageViewController::select(std::size_t slot)
{
    editedComposition().current = slot;
    forgetEffectBases();
    if (UIImageView* const other = slotImageView(kOtherSlot[slot]))
        other->removeAllGestureRecognizers();
    takeTouches();
    addGesturesToImageView(currentImageView());
    if (m_filterEnableBool)
        addFiltersOnScrollView();
    stickerEditing().hideHandles();
}

void CreateCollageViewController::takeTouches()
{
    for (std::size_t slot = 0; slot < composition().count; ++slot)
        slotView(slot)->setUserInteractionEnabled(slot == composition().current);
}

void CreateCollageViewController::addGesturesToImageView(UIImageView& view)
{
    attachGesture(view, &CreateCollageViewController::handlePan1);
    attachGesture(view, &CreateCollageViewController::rotationGes);
    attachGesture(view, &CreateCollageViewController::pinch);
    view.setUserInteractionEnabled(true);
}

bool CreateCollageViewController::btnSelected(int button) const
{
    const int firstShown = twoBtnViewHidden() ? 1 : 4;
    return button == firstShown + static_cast<int>(composition().current);
}

void CreateCollageViewController::fitPhoto()
{
    act([this] {
        CollageSlot& slot = editedComposition().photoSlots[composition().current];
        const CGRect bounds = currentView().bounds();
        slot.center = {bounds.midX(), bounds.midY()};
        slot.transform = {};
        showPhoto(m_slots[composition().current], slot);
    });
}

void CreateCollageViewController::swapSlots(int one, int other)
{
    const auto first = slotNumbered(one);
    const auto second = slotNumbered(other);
    if (!first || !second || first == second)
        return;
    act([&] {
        const CollageSlot was = composition().photoSlots[*first];
        const CollageSlot& comes = composition().photoSlots[*second];
        replaceMaster(*first, comes.image, comes.master);
        replaceMaster(*second, was.image, was.master);
    });
}

void CreateCollageViewController::setSlotPicture(std::size_t slot, const UIImage& image)
{
    editedComposition().photoSlots[slot].image = image;
    slotImageView(slot)->setImage(image);
}

void CreateCollageViewController::replaceMaster(std::size_t slot, const UIImage& picture, const UIImage& master)
{
    setSlotPicture(slot, picture);
    editedComposition().photoSlots[slot].master = master;
    forgetEffectBases();
}

void CreateCollageViewController::forgetEffectBases()
{
    editedComposition().effectFlags.fill(false);
}

std::optional<std::size_t> CreateCollageViewController::slotOf(const UIView* view) const
{
    for (std::size_t slot = 0; slot < m_slots.size(); ++slot) {
        if (view != nullptr && view == m_slots[slot].photo.get())
            return slot;
    }
    return std::nullopt;
}

std::optional<std::size_t> CreateCollageViewController::slotNumbered(int number) const
{
    if (number < 1 || number > photoCount())
        return std::nullopt;
    return static_cast<std::size_t>(number) - 1;
}

UIView* CreateCollageViewController::gestureView() const
{
    return slotImageView(composition().current);
}

void CreateCollageViewController::panPhoto(UIView& view, CGPoint by)
{
    const std::optional<std::size_t> slot = slotOf(&view);
    if (!slot)
        return;
    const CGPoint center = {view.center().x + by.x, view.center().y + by.y};
    editedComposition().photoSlots[*slot].center = center;
    view.setCenter(center);
    tellGesture();
}

void CreateCollageViewController::transformPhoto(UIView& view, const CGAffineTransform& transform)
{
    const std::optional<std::size_t> slot = slotOf(&view);
    // A photo of no size could not be zoomed or even touched again.
    if (!slot || !transform.inverted())
        return;
    editedComposition().photoSlots[*slot].transform = transform;
    view.setTransform(transform);
    tellGesture();
}

void CreateCollageViewController::tapCanvas(double x, double y)
{
    StickerEditor::tapCanvas(x, y);
}

void CreateCollageViewController::doubleTapCanvas(double, double) {}

QVariantList CreateCollageViewController::slotRows() const
{
    return {};
}

} // namespace lamina
