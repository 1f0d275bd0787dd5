#pragma once

#include "editors/collage/CollageFilters.h"
#include "editors/common/EditorSlider.h"

#include <array>
#include <cstddef>
#include <map>
#include <span>
#include <string_view>
#include <vector>

namespace lamina {

struct FilterProperty;

/// The looks of the live screen, the first of a collage's: a dozen, without those of many passes at the end, which a
/// live picture could not follow everywhere.
inline constexpr std::size_t kLiveLookCount = 12;

/// The effects behind a look, in the order in which they act.
enum class LiveEffect : std::size_t { Contrast, Brightness, Saturation, Vignette };
inline constexpr std::size_t kLiveEffectCount = 4;

/// What a live picture goes through: a look with its own values, and effects. A plain value.
struct LiveFilters {
    int look = kFirstCollageFilter;                 ///< tag of one of `collageFilters()`
    std::map<std::string_view, double> own = {};    ///< the look's properties that were changed, by their names
    std::array<double, kLiveEffectCount> effects{}; ///< as their sliders tell them

    LiveFilters();
    /// Where the effect's slider stands.
    double effect(LiveEffect effect) const { return effects[static_cast<std::size_t>(effect)]; }
    /// Whether it is anywhere but at its start, so that it does something.
    bool isChanged(LiveEffect effect) const;
    friend bool operator==(const LiveFilters&, const LiveFilters&) = default;
};

/// A slider of the live screen: an effect's, or one of the look's own.
struct LiveSlider {
    EditorSlider slider;
    const FilterProperty* property = nullptr; ///< of the look; null: of an effect
    LiveEffect effect = LiveEffect::Contrast;

    /// Where it stands.
    double value(const LiveFilters& filters) const;
    /// It is moved there.
    void setValue(LiveFilters& filters, double value) const;
};

/// The sliders that act on such filters, those of the look first.
std::vector<LiveSlider> liveSliders(int look);

/// How many of their sliders stand anywhere but at their start.
int changedSliders(const LiveFilters& filters);

} // namespace lamina
