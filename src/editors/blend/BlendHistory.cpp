#include "editors/blend/BlendHistory.h"

#include "platform/base/Clock.h"

namespace lamina {

void BlendHistory::start(const BlendComposition& opening)
{
    m_opening = opening;
    m_states = History<BlendComposition>(opening);
    m_series = BlendSeries::None;
}

void BlendHistory::record(const BlendComposition& composition, BlendSeries series)
{
    const double now = Clock::shared()->now();
    const bool goesOn = series != BlendSeries::None && series == m_series && now - m_seriesTime <= kSeriesSeconds;
    if (goesOn)
        m_states.takeBack();
    m_series = addStep(composition) ? series : BlendSeries::None;
    m_seriesTime = now;
}

void BlendHistory::amend(const BlendComposition& composition)
{
    m_series = BlendSeries::None;
    m_states.amend(composition);
}

const BlendComposition& BlendHistory::undo()
{
    m_series = BlendSeries::None;
    return m_states.undo();
}

const BlendComposition& BlendHistory::redo()
{
    m_series = BlendSeries::None;
    return m_states.redo();
}

bool BlendHistory::addStep(const BlendComposition& composition)
{
    const bool shows = !looksAlike(composition, m_states.current());
    if (shows)
        m_states.record(composition);
    else
        m_states.amend(composition);
    return shows;
}

} // namespace lamina
