#include "gpu/endpoints/RecordingTimes.h"

#include "platform/base/NumberText.h"

namespace lamina {

void RecordingTimes::prepare()
{
    const std::scoped_lock lock(m_mutex);
    m_startTime = {};
}

void RecordingTimes::start(const CMTime& time)
{
    const std::scoped_lock lock(m_mutex);
    if (!m_startTime.isValid())
        m_startTime = time;
}

bool RecordingTimes::hasStarted() const
{
    const std::scoped_lock lock(m_mutex);
    return m_startTime.isValid();
}

void RecordingTimes::setPaused(bool paused)
{
    const std::scoped_lock lock(m_mutex);
    m_discont = m_discont || (paused && !m_isPaused);
    m_isPaused = paused;
}

bool RecordingTimes::isPaused() const
{
    const std::scoped_lock lock(m_mutex);
    return m_isPaused;
}

void RecordingTimes::endPause(const CMTime& time, const CMTime& previousOfItsKind, const CMTime& previousOfTheOther)
{
    if (!m_discont)
        return;
    m_discont = false;
    const CMTime& previous = previousOfItsKind.isNumeric() ? previousOfItsKind : previousOfTheOther;
    if (previous.isNumeric())
        m_offsetTime = time - previous; // the pauses before included, which `previous` has lost already
}

std::optional<CMTime> RecordingTimes::takeFrame(const CMTime& time)
{
    if (!time.isNumeric())
        return std::nullopt;
    const std::scoped_lock lock(m_mutex);
    if (m_isPaused)
        return std::nullopt;
    const auto moved = [&] { return m_offsetTime.value > 0 ? time - m_offsetTime : time; };
    if (moved() <= m_previousFrameTime) // pushed once more: that doesn't end a pause
        return std::nullopt;
    endPause(time, m_previousFrameTime, m_previousAudioTime);
    if (moved() <= m_previousFrameTime)
        return std::nullopt;
    m_previousFrameTime = moved();
    return m_previousFrameTime;
}

std::optional<CMTime> RecordingTimes::takeSound(const CMTime& time, const CMTime& duration, bool isWhole)
{
    if (!time.isNumeric())
        return std::nullopt;
    const std::scoped_lock lock(m_mutex);
    if (m_isPaused)
        return std::nullopt;
    endPause(time, m_previousAudioEnd, m_previousFrameTime);
    const CMTime offset = m_offsetTime.value > 0 ? m_offsetTime : kCMTimeZero;
    const CMTime moved = time - offset;
    if (isWhole && moved <= m_previousAudioTime)
        return std::nullopt;
    m_previousAudioTime = moved;
    m_previousAudioEnd = duration.isNumeric() ? moved + duration : moved;
    return offset;
}

CMTime RecordingTimes::offsetTime() const
{
    const std::scoped_lock lock(m_mutex);
    return m_offsetTime;
}

CMTime RecordingTimes::duration() const
{
    const std::scoped_lock lock(m_mutex);
    if (!m_startTime.isValid())
        return kCMTimeZero;
    for (const CMTime& last : {m_previousFrameTime, m_previousAudioTime}) {
        if (last.isNumeric())
            return last - m_startTime;
    }
    return kCMTimeZero;
}

std::string timeText(const CMTime& time)
{
    return "{" + std::to_string(time.value) + "/" + std::to_string(time.timescale) + " = " +
           fixedText(time.seconds(), 3) + "}";
}

} // namespace lamina
