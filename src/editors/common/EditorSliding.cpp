// An editor's sliders: what is told of them, and how their moves become steps.

#include "editors/common/EditorViewController.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lamina {

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
    cancelGestures();
    if (findSlider(sliderTable(), tag) != nullptr)
        m_sliding = tag;
}

void EditorViewController::slide(int tag, double value)
{
    const EditorSlider* const slider = findSlider(sliderTable(), tag);
    if (slider == nullptr || !std::isfinite(value))
        return;
    const bool isDrag = m_sliding.has_value(); // of another slider, it takes this one along
    if (!isDrag)
        beginSeriesOf(tag);
    applySlider(tag, std::clamp(value, slider->minimum, slider->maximum));
    if (isDrag)
        tellGesture();
    else
        endStep(EditSeries::Slide);
}

/// A run of small steps is one of the same slider.
void EditorViewController::beginSeriesOf(int tag)
{
    cancelGestures();
    if (std::exchange(m_slidTag, tag) != tag)
        recordStep(EditSeries::None);
}

void EditorViewController::endSliding(int tag)
{
    if (m_sliding == tag)
        endSliding();
}

void EditorViewController::endSliding()
{
    if (std::exchange(m_sliding, std::nullopt))
        endStep();
}

} // namespace lamina
