// The blend editor's effects: their panel, contrast and brightness from snapshots, opacity.

#include "editors/blend/BlendPanels.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "editors/blend/BlendTools.h"
#include "editors/common/PanelAnimation.h"
#include "imageops/ImageFilters.h"
#include "platform/view/AnimatedProperty.h"
#include "platform/view/UIViewAnimation.h"

#include <array>
#include <cstddef>
#include <functional>
#include <memory>

namespace lamina {

namespace {

std::size_t indexOf(int tag)
{
    return static_cast<std::size_t>(tag - kBlendSliders.front().tag);
}

} // namespace

void BlendPhotoViewController::FxBtn()
{
    act([this] {
        editedComposition().toolBool = false;
        enterToolMode(BlendMode::Effects);
        editedComposition().sliders = kBlendSliderStarts;
        openEffects();
    });
}

void BlendPhotoViewController::openEffects()
{
    const CGSize screen = view().frame().size;
    const auto atOnce = [](const std::function<void()>& change) {
        animate(0, 0, {.curve = UIViewAnimationCurve::EaseOut}, change);
    };
    atOnce([&] {
        m_panels.toolSubViewTopConst = blendpanel::kHiddenToolStrip;
        m_panels.stickerScrollView = blendpanel::hiddenStickers(screen);
    });
    m_panels.fxView = std::make_shared<Animated<CGRect>>(blendpanel::createdEffects(screen));
    atOnce([&] { *m_panels.fxView = blendpanel::shownEffects(screen); });
    renewSliders();
}

void BlendPhotoViewController::hideFxViewBtnClicked()
{
    act([this] { closeEffects(); });
}

/// The panel goes when it has left the screen. One that was opened meanwhile is another, and stays.
void BlendPhotoViewController::closeEffects()
{
    const auto panel = m_panels.fxView;
    if (!panel)
        return;
    const auto forget = [weak = weak_from_this(), panel](bool) {
        const auto self = std::static_pointer_cast<BlendPhotoViewController>(weak.lock());
        if (self && self->m_panels.fxView == panel)
            self->m_panels.fxView.reset();
    };
    animatePanels([&] { *panel = blendpanel::hiddenEffects(view().frame().size); }, UIViewAnimationCurve::EaseIn,
                  forget);
}

double BlendPhotoViewController::sliderValue(int tag) const
{
    return composition().sliders[indexOf(tag)];
}

void BlendPhotoViewController::applySlider(int tag, double value)
{
    constexpr Tone kContrast = {&BlendComposition::contrastBool, contrastAdjustmentWithValue};
    constexpr Tone kBrightness = {&BlendComposition::brightBool, brightenWithValue};
    editedComposition().sliders[indexOf(tag)] = value;
    if (tag == blendslider::kOpacity)
        changeOpacity(value);
    else
        changeTone(tag == blendslider::kContrast ? kContrast : kBrightness, value);
}

void BlendPhotoViewController::contrastFun(double value)
{
    slide(blendslider::kContrast, value);
}

void BlendPhotoViewController::brightnFun(double value)
{
    slide(blendslider::kBrightness, value);
}

void BlendPhotoViewController::opacityFun(double value)
{
    slide(blendslider::kOpacity, value);
}

void BlendPhotoViewController::changeTone(const Tone& tone, double value)
{
    BlendComposition& composition = editedComposition();
    if (!(composition.*tone.isSnapshotTaken))
        takeSnapshots();
    composition.*tone.isSnapshotTaken = true;
    const auto toned = [&tone, value](const UIImage& snapshot) {
        return value == 0 ? snapshot : tone.operation(snapshot, static_cast<float>(value));
    };
    if (composition.bothSelected()) {
        setPhotoImage(kFirst, toned(composition.applyFxOnImage1));
        setPhotoImage(kSecond, toned(composition.applyFxOnImage2));
    } else {
        setPhotoImage(composition.current, toned(composition.applyFxOnImage1));
    }
}

/// Of both photos while both are selected; else the first snapshot serves whichever photo the buttons name.
void BlendPhotoViewController::takeSnapshots()
{
    BlendComposition& composition = editedComposition();
    if (composition.bothSelected()) {
        composition.applyFxOnImage1 = composition.photos[kFirst].image;
        composition.applyFxOnImage2 = composition.photos[kSecond].image;
    } else {
        composition.applyFxOnImage1 = composition.photos[resolvedPhoto()].image;
    }
}

void BlendPhotoViewController::changeOpacity(double value)
{
    const auto setAlpha = [this, value](std::size_t photo) {
        editedComposition().photos[photo].alpha = value;
        m_imgViews[photo]->setAlpha(value);
    };
    if (composition().bothSelected()) {
        setAlpha(kFirst);
        setAlpha(kSecond);
    } else {
        setAlpha(resolvedPhoto());
    }
}

} // namespace lamina
