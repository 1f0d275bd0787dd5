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
    endSliding();
    stopCanvasGestures();
    if (!isStepOutstanding())
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
        stopCanvasGestures();
    if (isStepOutstanding() && (hasFinger || !joinsOutstanding(tag)))
        return putOff(tag, wanted);
    if (!hasFinger && !isStepOutstanding())
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

/// A run of small steps is one of the same slider.
void EditorViewController::beginSeriesOf(int tag)
{
    m_work.land(); // a step without this slide
    if (std::exchange(m_slidTag, tag) != tag)
        recordStep(EditSeries::None);
}

/// While the picture of a small step is made, the next one of that slider replaces it.
bool EditorViewController::joinsOutstanding(int tag) const
{
    return tag == m_slidTag && m_slideToLand == EditSeries::Slide && m_slidesAhead.empty();
}

/// Nobody waits for the picture that is the step before: the newest value is shown, and done when that one is there.
void EditorViewController::putOff(int tag, double value)
{
    const std::optional<EditSeries> ended = m_sliding ? std::nullopt : std::optional(EditSeries::Slide);
    if (m_slidesAhead.empty() || m_slidesAhead.back().tag != tag || m_slidesAhead.back().ended != ended)
        m_slidesAhead.push_back({tag, value, ended});
    m_slidesAhead.back().value = value;
    previewSlides(m_slidesAhead);
    tellGesture();
}

/// A tap takes the place of the one before it on that slider, whose step it would join.
void EditorViewController::endPutOff(EditSeries series)
{
    if (m_slidesAhead.empty() || m_slidesAhead.back().ended)
        return;
    m_slidesAhead.back().ended = series;
    const auto last = m_slidesAhead.end() - 1;
    if (series == EditSeries::Slide && last != m_slidesAhead.begin() && (last - 1)->tag == last->tag &&
        (last - 1)->ended == EditSeries::Slide)
        m_slidesAhead.erase(last - 1);
}

/// Does what has been put off, as far as it needs no picture that is outstanding.
void EditorViewController::slideOn()
{
    while (!m_slideToLand && !m_slidesAhead.empty()) {
        const SlideAhead slide = m_slidesAhead.front();
        m_slidesAhead.erase(m_slidesAhead.begin());
        beginSeriesOf(slide.tag);
        const auto finger = slide.ended ? std::exchange(m_sliding, std::nullopt) : m_sliding;
        applySlider(slide.tag, slide.value);
        m_sliding = finger;
        if (slide.ended)
            endSlide(*slide.ended);
    }
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
    const EditSeries series = ended->isDrag ? EditSeries::None : EditSeries::Slide;
    if (isStepOutstanding())
        return endPutOff(series);
    settleSlider();
    endSlide(series);
}

void EditorViewController::endSlide(EditSeries series)
{
    if (m_work.isBusy())
        m_slideToLand = series;
    else
        finishStep(series);
}

} // namespace lamina
