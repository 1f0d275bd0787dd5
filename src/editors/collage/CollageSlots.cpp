// The slots of a collage: building them, their layouts, choosing one of them.

#include "editors/collage/CreateCollageViewController.h"
#include "editors/common/PictureTools.h"
#include "editors/frames/FramePictures.h"
#include "editors/frames/Frames.h"
#include "editors/frames/ThreeFramesViewController.h"
#include "editors/frames/TwoFramesViewController.h"
#include "platform/base/Localization.h"
#include "platform/view/UIGestureRecognizer.h"

#include <QVariantMap>

#include <algorithm>
#include <string>
#include <utility>

namespace lamina {

namespace {

/// Points of the icon beside a slot's number.
constexpr double kSlotIconEdge = 22;

/// The slot whose recognisers go when that one is chosen. Recognisers of the third may be left, which does no harm: its
/// layer takes no touches.
constexpr std::array<std::size_t, kMostCollageSlots> kOtherSlot = {1, 0, 0};

/// Numbers of layouts: those of two photos end before the first, those of three with the last.
constexpr int kFirstOfThree = 2999;
constexpr int kLastOfThree = 3998;

/// From the lowest.
constexpr std::array<std::size_t, kMostCollageSlots> kBuildingOrder = {1, 0, 2};

} // namespace

void CreateCollageViewController::blendPhoto()
{
    CollageComposition& composition = editedComposition();
    readViews();
    for (std::size_t index = 0; index < composition.count; ++index) {
        CollageSlot& slot = composition.photoSlots[index];
        const UIImage master = std::exchange(slot, {}).master;
        slot.master = slot.image = master;
        slot.center = photoCenter();
    }
    composition.layout = 0;
    composition.stickersBelow = composition.stickers.size();
    buildSlots();
    select(0);
}

CGRect CreateCollageViewController::slotFrame() const
{
    return frameSlot(composition().side, composition().screenHeight);
}

/// In the slot's layer as it is made. One that a layout makes smaller still has its photos about this point.
CGPoint CreateCollageViewController::photoCenter() const
{
    const CGSize size = slotFrame().size;
    return {size.width / 2, size.height / 2};
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
    SlotViews views{std::make_shared<UIView>(slotFrame()), nullptr};
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
        showFrame();
    });
}

void CreateCollageViewController::frameSlots(int frame)
{
    const CollageComposition& now = composition();
    const CGRect screen{0, 0, now.side, now.screenHeight};
    editedComposition().layout = isFrame(frame) && photosOf(frame) != now.count ? 0 : frame;
    if (frame < kFirstOfThree) {
        m_twoFrameObj = std::make_shared<TwoFramesViewController>();
        m_twoFrameObj->view().setFrame(screen);
        if (now.count == 2)
            m_twoFrameObj->setLayout(frame, *firstView(), *secondView(), *m_saveTheImg);
    } else if (frame <= kLastOfThree) {
        m_threeFramesObj = std::make_shared<ThreeFramesViewController>();
        m_threeFramesObj->view().setFrame(screen);
        if (now.count == 3)
            m_threeFramesObj->setLayout(frame, *firstView(), *secondView(), *thirdView(), *m_saveTheImg);
    }
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

void CreateCollageViewController::swapSlots(int one, int other)
{
    const auto first = slotNumbered(one);
    const auto second = slotNumbered(other);
    if (!first || !second || first == second)
        return;
    act([&] {
        swapPhotos(*first, *second);
        followPhotos();
    });
}

void CreateCollageViewController::swapWithNeighbour(int by)
{
    const auto neighbour = slotNumbered(currentSlot() + by);
    if (!neighbour || by == 0)
        return;
    act([&] {
        swapPhotos(composition().current, *neighbour);
        select(*neighbour);
    });
}

void CreateCollageViewController::swapPhotos(std::size_t one, std::size_t other)
{
    const CollageSlot was = composition().photoSlots[one];
    const CollageSlot comes = composition().photoSlots[other];
    replaceMaster(one, comes.image, comes.master);
    replaceMaster(other, was.image, was.master);
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

void CreateCollageViewController::followPhotos()
{
    if (m_filterEnableBool)
        addFiltersOnScrollView();
}

std::optional<std::size_t> CreateCollageViewController::slotOf(const UIView* view) const
{
    for (std::size_t slot = 0; slot < m_slots.size(); ++slot) {
        if (view != nullptr && view == m_slots[slot].photo.get())
            return slot;
    }
    return std::nullopt;
}

std::optional<std::size_t> CreateCollageViewController::slotOfLayer(const UIView& view) const
{
    const auto found = std::ranges::find(m_slots, &view, [](const SlotViews& slot) { return slot.layer.get(); });
    if (found == m_slots.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - m_slots.begin());
}

std::optional<std::size_t> CreateCollageViewController::slotNumbered(int number) const
{
    if (number < 1 || number > photoCount())
        return std::nullopt;
    return static_cast<std::size_t>(number) - 1;
}

/// The layout's icons follow it at once, so that no row has those of another one.
void CreateCollageViewController::makeSlotIcons()
{
    const CollageComposition& now = composition();
    for (std::size_t slot = 0; slot < now.count; ++slot) {
        for (const bool selected : {false, true})
            m_slotIcons[slot][selected ? 1 : 0] =
                frameSlotIcon(now.layout, slot, now.side, now.screenHeight, kSlotIconEdge, selected);
    }
}

QVariantList CreateCollageViewController::slotRows() const
{
    QVariantList rows;
    for (std::size_t index = 0; index < composition().count; ++index) {
        const CollageSlot& slot = composition().photoSlots[index];
        const int number = static_cast<int>(index) + 1;
        rows.append(QVariantMap{
            {"number", number},
            {"picture", QVariant::fromValue(slot.image)},
            {"icon", QVariant::fromValue(m_slotIcons[index][0])},
            {"iconSelected", QVariant::fromValue(m_slotIcons[index][1])},
            {"selected", index == composition().current},
            {"opacity", slot.alpha},
            {"background", colorText(slot.background.value_or(UIColor::clear()))},
            {"name", QString::fromStdString(localizedText("Photo %1", {std::to_string(number)}))},
        });
    }
    return rows;
}

} // namespace lamina
