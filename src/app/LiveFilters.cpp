#include "app/LiveFilters.h"

#include "editors/collage/CollageEffects.h"
#include "gpu/core/FilterRegistry.h"
#include "gpu/core/TypedValue.h"
#include "gpu/filters/FilterCatalogue.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <variant>

namespace lamina {

namespace {

constexpr std::array<int, kLiveEffectCount> kEffectTags{collageslider::kContrast, collageslider::kBrightness,
                                                        collageslider::kSaturation, collageslider::kVignette};

/// Tags of the looks' own sliders count from here.
constexpr int kFirstOwnTag = 200;

const EditorSlider& sliderOf(LiveEffect effect)
{
    return kCollageSliders[collageEffectIndex(kEffectTags[static_cast<std::size_t>(effect)])];
}

/// The properties of looks that a person can tell something by; the others are told in pixels or by machines.
struct OwnSlider {
    std::string_view property;
    const char* label;
    EditorSliderText text;
};
constexpr std::array kOwnSliders{
    OwnSlider{"intensity", QT_TRANSLATE_NOOP("Lamina", "Strength"), EditorSliderText::TwoDecimals},
    OwnSlider{"threshold", QT_TRANSLATE_NOOP("Lamina", "Lines"), EditorSliderText::TwoDecimals},
    OwnSlider{"quantizationLevels", QT_TRANSLATE_NOOP("Lamina", "Shades"), EditorSliderText::Whole},
    OwnSlider{"hue", QT_TRANSLATE_NOOP("Lamina", "Hue"), EditorSliderText::Whole},
    OwnSlider{"distance", QT_TRANSLATE_NOOP("Lamina", "Clearness"), EditorSliderText::TwoDecimals},
    OwnSlider{"slope", QT_TRANSLATE_NOOP("Lamina", "Gradient"), EditorSliderText::TwoDecimals},
};

/// Of a slider whose property takes any number.
constexpr double kEndOfAnOpenRange = 20;

} // namespace

LiveFilters::LiveFilters()
{
    for (std::size_t i = 0; i < kLiveEffectCount; ++i)
        effects[i] = sliderOf(static_cast<LiveEffect>(i)).start;
}

bool LiveFilters::isChanged(LiveEffect which) const
{
    return effect(which) != sliderOf(which).start;
}

double LiveSlider::value(const LiveFilters& filters) const
{
    if (!property)
        return filters.effect(effect);
    const auto found = filters.own.find(property->name);
    return found == filters.own.end() ? slider.start : found->second;
}

void LiveSlider::setValue(LiveFilters& filters, double value) const
{
    if (!property)
        filters.effects[static_cast<std::size_t>(effect)] = value;
    else if (value == slider.start)
        filters.own.erase(property->name);
    else
        filters.own[property->name] = value;
}

std::vector<LiveSlider> liveSliders(int look)
{
    std::vector<LiveSlider> sliders;
    const CollageFilter* const filter = findCollageFilter(look);
    const FilterDescription* const described = filter ? filterCatalogue().find(filter->className) : nullptr;
    for (std::size_t i = 0; described && i < kOwnSliders.size(); ++i) {
        const OwnSlider& own = kOwnSliders[i];
        const FilterProperty* const property = described->property(own.property);
        if (!property || !property->set || !std::holds_alternative<float>(property->fallback))
            continue;
        const double start = static_cast<double>(std::get<float>(property->fallback));
        const auto [minimum, maximum] = property->range;
        sliders.push_back({{own.label, kFirstOwnTag + static_cast<int>(i), std::isfinite(minimum) ? minimum : 0,
                            std::isfinite(maximum) ? maximum : kEndOfAnOpenRange, start, own.text},
                           property});
    }
    for (std::size_t i = 0; i < kLiveEffectCount; ++i)
        sliders.push_back({sliderOf(static_cast<LiveEffect>(i)), nullptr, static_cast<LiveEffect>(i)});
    return sliders;
}

int changedSliders(const LiveFilters& filters)
{
    const auto sliders = liveSliders(filters.look);
    return static_cast<int>(std::ranges::count_if(
        sliders, [&](const LiveSlider& slider) { return slider.value(filters) != slider.slider.start; }));
}

} // namespace lamina
