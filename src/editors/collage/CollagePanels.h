#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/view/AnimatedProperty.h"

#include <cstddef>
#include <memory>

namespace lamina {

/// Where the panels of the collage editor stand, in points of its screen, and where their parts lie in them.
namespace collagepanel {

/// Of the panel of filters: how far its lower edge stands from where it opens.
inline constexpr double kClosedFilters = 0.0;
/// See kClosedFilters: the panel is raised.
inline constexpr double kOpenFilters = -90.0;

/// Icon and label of tool `index` in the bar, and what the bar scrolls over.
CGRect toolIcon(std::size_t index);
/// See toolIcon.
CGRect toolLabel(std::size_t index);
/// See toolIcon.
CGSize toolBarContentSize(std::size_t tools);

/// The strips of sub-tools, layouts and stickers below the screen's lower edge.
CGRect hiddenStrip(CGSize screen);
/// The strip of sub-tools in sight.
CGRect shownTools(CGSize screen);
/// The strip of layouts, or of stickers, in sight.
CGRect shownStrip(CGSize screen);
/// Thumbnail `index` in the strip of layouts, and what the strip scrolls over.
CGRect layoutThumbnail(std::size_t index);
/// See layoutThumbnail.
CGSize layoutsContentSize(std::size_t layouts);

/// The panel of effects as it is made.
CGRect createdEffects(CGSize screen);
/// In sight.
CGRect shownEffects(CGSize screen);
/// Out of sight.
CGRect hiddenEffects(CGSize screen);

/// The panel of the reset tool out of sight, as large as a slot.
CGRect hiddenFrame(CGSize screen, CGSize slot);
/// In sight: higher up on tall screens, which keep a margin at their lower edge.
CGRect shownFrame(CGSize screen);

} // namespace collagepanel

/// One panel: what is below the screen's lower edge is out of sight.
struct CollagePanel {
    Animated<CGRect> frame;
    UIColor background = UIColor::clear();
    bool isInView = false; ///< whether the screen has it at all, unhidden
};

/// Where the panels stand now, for the view that draws them.
struct CollagePanels {
    CollagePanel toolSubView;
    CollagePanel frameView;
    CollagePanel fxView;
    bool filterViewHidden = true;
    Animated<double> filterViewBottomConstraint{collagepanel::kClosedFilters};
    /// Each opening makes a new one; null while there is none.
    std::shared_ptr<CollagePanel> subScrollView;
    /// See subScrollView.
    std::shared_ptr<CollagePanel> stickerScrollView;
    bool toolBarScrollViewHidden = false;

    /// As the screen lays them out: sub-tools in sight, the effects made, and out of sight at once.
    void layOut(CGSize screen);
    /// Takes away all but the effects, at once. `slot`: the size of a slot's layer.
    void close(CGSize screen, CGSize slot);

    /// A new strip for layouts or stickers, out of sight.
    static std::shared_ptr<CollagePanel> makeStrip(CGSize screen);

    /// The strip of layouts comes up, as a part of the animation that this is called in.
    void openLayouts(CGSize screen);
    /// See openLayouts.
    void openTools(CGSize screen);
    /// See openLayouts.
    void openFilters();
    /// See openLayouts. The bar makes room for them.
    void openEffects(CGSize screen);
    /// See openLayouts.
    void openStickers(CGSize screen);
    /// See openLayouts.
    void openFrame(CGSize screen);

    /// The effects go out of sight, which is a part of the animation that this is called in.
    void closeEffects(CGSize screen);
    /// That animation is over, or another one has taken its place. The bar comes back, unless the effects have.
    void effectsClosed(CGSize screen, bool finished);

    /// Which one is in sight on a screen of that size: "layout", "tools", "filter", "effects", "stickers", "frame"; ""
    /// for none.
    const char* shown(CGSize screen) const;
};

} // namespace lamina
