#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/view/AnimatedProperty.h"

#include <cstddef>
#include <memory>

namespace lamina {

/// Where the panels of the blend editor stand, in points of its screen, and where their parts lie in them.
namespace blendpanel {

/// Of the strip of sub-tools: where it is seen, and where it is out of sight.
inline constexpr double kShownToolStrip = 0.0;
/// See kShownToolStrip.
inline constexpr double kHiddenToolStrip = -250.0;

/// The ground of the effects panel and of its scroll view.
inline constexpr UIColor kEffectsBackground{0.12941177189350128, 0.12941177189350128, 0.12941177189350128, 1.0};

/// The effects panel as it is made, below a screen of that size.
CGRect createdEffects(CGSize screen);
/// As it is open.
CGRect shownEffects(CGSize screen);
/// Out of sight.
CGRect hiddenEffects(CGSize screen);

/// The scroll view in a panel as wide as the screen.
CGRect effectsScrollView(double width);
/// Of the scroll view, for that many rows.
CGSize effectsContentSize(double width, std::size_t rows);
/// In the panel.
CGRect effectsHideButton(double width);
/// Row `index` in the scroll view.
CGRect effectsRow(double width, std::size_t index);
/// In a row.
CGRect effectsRowLabel();
/// In a row.
CGRect effectsRowSlider(double width);

/// The strip of stickers as it is shown.
CGRect shownStickers(CGSize screen);
/// Out of sight.
CGRect hiddenStickers(CGSize screen);

} // namespace blendpanel

/// Where the panels stand now, for the view that draws them. What is below the screen's lower edge is out of sight.
struct BlendPanels {
    Animated<double> toolSubViewTopConst{blendpanel::kHiddenToolStrip};
    /// Each opening makes a new one; null while there is none.
    std::shared_ptr<Animated<CGRect>> fxView;
    Animated<CGRect> stickerScrollView;

    /// Takes all of them out of sight.
    void hide(CGSize screen);
    /// Which one is in sight on a screen of that size: "tools", "effects", "stickers"; "" for none.
    const char* shown(CGSize screen) const;
};

} // namespace lamina
