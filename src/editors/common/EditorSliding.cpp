// An editor's sliders: what is told of them, and how their moves become steps.

#include "editors/common/EditorViewController.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lamina {

namespace {

/// Of a slider's range: what a finger moves it by in a tap.
constexpr double kTapWay = 0.05;

} // namespace

QVariantList EditorViewController::sliders() const
{
    return sliderRows(sliderTable(), [this](int tag) { return sliderValue(tag); });
}

QString EditorViewController::sliderText(int tag, double value) const
{
    const EditorSlider* const slider = findSlider(sliderTable(), tag);
    return slider ? lamina::sliderText(*slider, value) : QString();
}

void EditorViewController::beginSliding(int tag)
{
    if (findSlider(sliderTable(), tag) == nullptr)
        return;
    landWork(); // what is outstanding is a step without this finger
    beginSeriesOf(tag);
    m_sliding = Sliding{tag};
}

void EditorViewController::slide(int tag, double value)
{
    const EditorSlider* const slider = findSlider(sliderTable(), tag);
    if (slider == nullptr || !std::isfinite(value))
        return;
    const double wanted = std::clamp(value, slider->minimum, slider->maximum);
    const bool hasFinger = m_sliding.has_value(); // on another slider, it takes this one along
    if (hasFinger)
        followFinger(*slider, wanted);
    else
        beginSeriesOf(tag);
    applySlider(tag, wanted);
    if (hasFinger)
        tellGesture();
    else
        endSlide(EditSeries::Slide);
}

void EditorViewController::followFinger(const EditorSlider& slider, double value)
{
    const double way = std::abs(value - m_sliding->first.value_or(value));
    if (slider.tag != m_sliding->tag || way > kTapWay * (slider.maximum - slider.minimum))
        m_sliding->isDrag = true;
    m_sliding->first = m_sliding->first.value_or(value);
}

/// A run of small steps is one of the same slider. While the picture of one is made, the next one replaces it.
void EditorViewController::beginSeriesOf(int tag)
{
    if (tag == m_slidTag && m_slideToLand == EditSeries::Slide)
        return;
    cancelGestures();
    if (std::exchange(m_slidTag, tag) != tag)
        recordStep(EditSeries::None);
}

void EditorViewController::endSliding(int tag)
{
    if (m_sliding && m_sliding->tag == tag)
        endSliding();
}

void EditorViewController::endSliding()
{
    const auto ended = std::exchange(m_sliding, std::nullopt);
    if (!ended)
        return;
    settleSlider();
    endSlide(ended->isDrag ? EditSeries::None : EditSeries::Slide);
}

void EditorViewController::endSlide(EditSeries series)
{
    if (isBusy())
        m_slideToLand = series;
    else
        finishStep(series);
}

} // namespace lamina
