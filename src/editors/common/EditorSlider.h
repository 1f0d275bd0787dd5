#pragma once

#include <QString>
#include <QVariantList>

#include <functional>
#include <span>
#include <string_view>

namespace lamina {

/// How the value beside a slider is written.
enum class EditorSliderText {
    Signed,      ///< a whole number with its sign: +34, 0, −12
    Whole,       ///< a whole number: 12
    Percent,     ///< of 1: 62 %
    TwoDecimals, ///< 0.50
};

/// A slider of an editor, as its table tells it; for tables that live as long as the program.
struct EditorSlider {
    const char* label; ///< a key, translated where it is shown
    int tag;
    double minimum;
    double maximum;
    double start; ///< where it stands when its panel opens
    EditorSliderText text = EditorSliderText::Signed;
    std::string_view panel = "effects"; ///< the one that it stands in
};

/// The slider with that tag; null: there is none.
const EditorSlider* findSlider(std::span<const EditorSlider> sliders, int tag);

/// The sliders for the view that draws them: a map for each, in their order, of `tag`, `label` (translated), `minimum`,
/// `maximum`, `start`, `panel`, and `value`, which `value(tag)` gives.
QVariantList sliderRows(std::span<const EditorSlider> sliders, const std::function<double(int tag)>& value);

/// The value as it is written beside the slider.
QString sliderText(const EditorSlider& slider, double value);

} // namespace lamina
