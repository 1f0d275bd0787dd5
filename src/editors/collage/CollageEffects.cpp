// The effects of a collage: their panel, and what its sliders do.

#include "editors/collage/CollageEffects.h"

#include "editors/collage/CollageEffectWork.h"
#include "editors/collage/CollageFrame.h"
#include "editors/collage/CreateCollageViewController.h"
#include "editors/common/PanelAnimation.h"

#include <memory>
#include <span>
#include <utility>

namespace lamina {

void CreateCollageViewController::createViewForFx()
{
    m_effects.filters = std::make_shared<CollageEffectFilters>();
    m_effects.coarseFilters = std::make_shared<CollageEffectFilters>();
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
    const CollageEffect wanted{tag, value};
    if (!isSliding() || !CoarsePicture::isWorthwhile(composition.applyFxOnImg))
        return makeExactly(wanted);
    showCoarsely({composition.applyFxOnImg, {wanted}});
    m_effects.inHand = wanted;
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
void CreateCollageViewController::showCoarsely(CollageEffectChain wanted)
{
    runPreview([wanted = std::move(wanted), filters = m_effects.coarseFilters,
                coarse = m_effects.coarse] { return coarsePicture(wanted, *coarse, *filters); },
               [this, slot = composition().current, number = ++m_effects.asked](const UIImage& picture) {
                   showEffect(slot, picture ? picture : composition().photoSlots[slot].image, number);
                   tellEffectOutcome(picture);
               });
}

void CreateCollageViewController::makeExactly(CollageEffect wanted)
{
    m_effects.making = wanted;
    runWork([wanted, base = composition().applyFxOnImg,
             filters = m_effects.filters] { return pictureWithEffect(wanted, base, *filters); },
            [this, slot = composition().current, number = ++m_effects.asked](const UIImage& picture) {
                UIImage& image = editedComposition().photoSlots[slot].image;
                if (picture)
                    image = picture;
                showEffect(slot, image, number);
                tellEffectOutcome(picture);
            });
}

/// Pictures of two threads come in any order: none takes the place of one that was asked for later.
void CreateCollageViewController::showEffect(std::size_t slot, const UIImage& picture, int number)
{
    if (number < m_effects.shown)
        return;
    m_effects.shown = number;
    slotImageView(slot)->setImage(picture);
}

/// A slider without a base will take what is shown by then, which is coarse here.
void CreateCollageViewController::previewSlides(std::span<const SlideAhead> slides)
{
    auto flags = composition().effectFlags;
    CollageEffectChain base{composition().applyFxOnImg, {}};
    CollageEffectChain shown{composition().applyFxOnImg, {m_effects.making}};
    for (const SlideAhead& slide : slides) {
        if (!isCollageEffect(slide.tag))
            continue;
        if (!std::exchange(flags[collageEffectIndex(slide.tag)], true))
            base = shown;
        if (slide.tag == collageslider::kOpacity) {
            currentImageView().setAlpha(slide.value);
            continue;
        }
        shown = base;
        shown.effects.push_back({slide.tag, slide.value});
    }
    showCoarsely(std::move(shown));
}

void CreateCollageViewController::settleSlider()
{
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
