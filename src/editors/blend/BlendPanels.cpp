#include "editors/blend/BlendPanels.h"

namespace lamina {

namespace blendpanel {

namespace {

constexpr double kEffectsHeight = 180.0;
constexpr double kScrollViewHeight = 130.0;
constexpr double kRowRoom = 50.0; ///< of the content, for each row
constexpr double kRowStep = 45.0;

} // namespace

CGRect createdEffects(CGSize screen)
{
    return {0, screen.height + 125.0, screen.width, kEffectsHeight};
}

CGRect shownEffects(CGSize screen)
{
    return {0, screen.height - 181.0, screen.width, kEffectsHeight};
}

CGRect hiddenEffects(CGSize screen)
{
    return {0, screen.height, screen.width, kEffectsHeight};
}

CGRect effectsScrollView(double width)
{
    return {0, 0, width, kScrollViewHeight};
}

CGSize effectsContentSize(double width, std::size_t rows)
{
    return {width, static_cast<double>(rows) * kRowRoom};
}

CGRect effectsHideButton(double width)
{
    return {width * 0.5, kEffectsHeight - 50.0, 36.0, 36.0};
}

CGRect effectsRow(double width, std::size_t index)
{
    return {0, 5.0 + static_cast<double>(index) * kRowStep, width, 40.0};
}

CGRect effectsRowLabel()
{
    return {10.0, 2.0, 90.0, 36.0};
}

CGRect effectsRowSlider(double width)
{
    return {120.0, 0.0, width - 140.0, 40.0};
}

CGRect shownStickers(CGSize screen)
{
    return {0, screen.height - 210.0, screen.width, 85.0};
}

CGRect hiddenStickers(CGSize screen)
{
    return {0, screen.height, screen.width, 50.0};
}

} // namespace blendpanel

void BlendPanels::hide(CGSize screen)
{
    toolSubViewTopConst = blendpanel::kHiddenToolStrip;
    if (fxView)
        *fxView = blendpanel::hiddenEffects(screen);
    stickerScrollView = blendpanel::hiddenStickers(screen);
}

const char* BlendPanels::shown(CGSize screen) const
{
    const auto isSeen = [&screen](const CGRect& panel) {
        return panel.size.height > 0 && panel.origin.y < screen.height;
    };
    if (toolSubViewTopConst.value() == blendpanel::kShownToolStrip)
        return "tools";
    if (fxView && isSeen(fxView->value()))
        return "effects";
    return isSeen(stickerScrollView.value()) ? "stickers" : "";
}

} // namespace lamina
