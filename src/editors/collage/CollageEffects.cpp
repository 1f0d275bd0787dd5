// The effects of a collage: their panel, and what its sliders do.

#include "editors/collage/CollageEffects.h"

#include "editors/collage/CollageEffectWork.h"
#include "editors/collage/CollageFrame.h"
#include "editors/collage/CreateCollageViewController.h"
#include "editors/common/PanelAnimation.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/DispatchTimer.h"

#include <memory>
#include <span>
#include <utility>

namespace lamina {

namespace {

/// Seconds that a finger stands still before the picture under it is made exactly.
constexpr double kRest = 0.25;

} // namespace

void CreateCollageViewController::createViewForFx()
{
    m_effects.filters = std::make_shared<CollageEffectFilters>();
    renewSliders();
}

void CreateCollageViewController::contrast(double value)
{
    slide(collageslider::kContrast, value);
}

void CreateCollageViewController::brightn(double value)
{
    slide(collageslider::kBrightness, value);
}

void CreateCollageViewController::emboss(double value)
{
    slide(collageslider::kEmboss, value);
}

void CreateCollageViewController::sharpen(double value)
{
    slide(collageslider::kSharpen, value);
}

void CreateCollageViewController::unsharpen(double value)
{
    slide(collageslider::kUnsharpen, value);
}

void CreateCollageViewController::vignette(double value)
{
    slide(collageslider::kVignette, value);
}

void CreateCollageViewController::saturation(double value)
{
    slide(collageslider::kSaturation, value);
}

void CreateCollageViewController::highlight(double value)
{
    slide(collageslider::kHighlight, value);
}

void CreateCollageViewController::opacity(double value)
{
    slide(collageslider::kOpacity, value);
}

void CreateCollageViewController::hideFxViewBtnClicked()
{
    act([this] { closeEffects(); });
}

void CreateCollageViewController::closeEffects()
{
    const auto closed = [weak = weak_from_this()](bool finished) {
        if (const auto self = std::static_pointer_cast<CreateCollageViewController>(weak.lock())) {
            self->m_panels.effectsClosed(self->view().frame().size, finished);
            self->tell();
        }
    };
    animatePanels([this] { m_panels.closeEffects(view().frame().size); }, UIViewAnimationCurve::EaseIn, closed);
}

std::span<const EditorSlider> CreateCollageViewController::sliderTable() const
{
    return kCollageSliders;
}

double CreateCollageViewController::sliderValue(int tag) const
{
    return isCollageEffect(tag) ? composition().sliders[collageEffectIndex(tag)] : composition().*collageLine(tag);
}

void CreateCollageViewController::applySlider(int tag, double value)
{
    if (!isCollageEffect(tag))
        return setLine(tag, value);
    takeEffectBase(tag);
    CollageComposition& composition = editedComposition();
    composition.sliders[collageEffectIndex(tag)] = value;
    if (tag == collageslider::kOpacity)
        return changeOpacity(value);
    const CollageEffectInHand wanted{tag, value, composition.current, composition.applyFxOnImg};
    if (isSliding() && CoarsePicture::isWorthwhile(wanted.base))
        showCoarsely(wanted);
    else
        makeExactly(wanted);
}

/// One base for all sliders: whichever is touched first since the flags were cleared takes what is shown by then.
void CreateCollageViewController::takeEffectBase(int tag)
{
    if (composition().effectFlags[collageEffectIndex(tag)])
        return;
    settleSlider();
    landWork();
    CollageComposition& composition = editedComposition();
    composition.applyFxOnImg = composition.photoSlots[composition.current].image;
    composition.effectFlags[collageEffectIndex(tag)] = true;
}

void CreateCollageViewController::changeOpacity(double alpha)
{
    editedComposition().photoSlots[composition().current].alpha = alpha;
    currentImageView().setAlpha(alpha);
}

/// In the view alone: the composition holds exact pictures.
void CreateCollageViewController::showCoarsely(const CollageEffectInHand& wanted)
{
    const auto show = [this, slot = wanted.slot](const UIImage& picture) {
        slotImageView(slot)->setImage(picture ? picture : composition().photoSlots[slot].image);
        tellEffectOutcome(picture);
    };
    runWork(
        [wanted, filters = m_effects.filters, coarse = m_effects.coarse] {
            return pictureWithEffect(wanted.tag, wanted.value, coarse->of(wanted.base), *filters);
        },
        show);
    m_effects.inHand = wanted;
    m_effects.rest = DispatchTimer(DispatchQueue::main(), kRest, [this] { settleSlider(); });
}

void CreateCollageViewController::makeExactly(const CollageEffectInHand& wanted)
{
    const auto take = [this, slot = wanted.slot](const UIImage& picture) {
        setSlotPicture(slot, picture ? picture : composition().photoSlots[slot].image);
        tellEffectOutcome(picture);
    };
    runWork(
        [wanted, filters = m_effects.filters] {
            return pictureWithEffect(wanted.tag, wanted.value, wanted.base, *filters);
        },
        take);
}

void CreateCollageViewController::settleSlider()
{
    m_effects.rest.cancel();
    if (const auto wanted = std::exchange(m_effects.inHand, std::nullopt))
        makeExactly(*wanted);
}

/// A slider that fails tells so once, not at every move.
void CreateCollageViewController::tellEffectOutcome(const UIImage& picture)
{
    if (!std::exchange(m_effects.failed, !picture) && !picture)
        tellFailure();
}

} // namespace lamina
