#pragma once

#include "platform/base/CMTime.h"

#include <mutex>
#include <optional>
#include <string>

namespace lamina {

/// The times of a recording: where it starts, how far picture and sound have come, and what its pauses take out.
///
/// A pause ends with the first piece behind it, of picture or sound: a frame is moved to the time of the last frame,
/// sound to the end of the last sound, and all that follows, of both kinds, by as much. Picture and sound so stay
/// together over any number of pauses. A pause before anything was taken changes nothing.
///
/// From any thread.
class RecordingTimes {
public:
    /// Forgets the start: the next piece is the first.
    void prepare();
    /// Where the recording starts, unless it has started.
    void start(const CMTime& time);
    /// Since `prepare`.
    bool hasStarted() const;

    /// While paused nothing can be taken; what lies between the pieces before and after is left out of the recording.
    void setPaused(bool paused);
    bool isPaused() const;

    /// The time in the recording of a frame of this time, which counts from then on as the last one; nothing where it
    /// can't be taken: in a pause, or its time is no number, or that of the frame before, or earlier.
    std::optional<CMTime> takeFrame(const CMTime& time);
    /// By how much a piece of sound of this time and duration (no number: not known) is to be moved earlier, zero
    /// without pauses; it counts from then on as the last one. Nothing where it can't be taken: in a pause, or its time
    /// is no number, or it can't be cut
    /// (`isWhole`) and does not come after the one before.
    std::optional<CMTime> takeSound(const CMTime& time, const CMTime& duration = kCMTimeZero, bool isWhole = false);

    /// The sum of the pauses.
    CMTime offsetTime() const;
    /// From the start to the last frame or, where there is none, the last piece of sound; zero before.
    CMTime duration() const;

private:
    void endPause(const CMTime& time, const CMTime& previousOfItsKind, const CMTime& previousOfTheOther);

    mutable std::mutex m_mutex;
    bool m_isPaused = false;
    bool m_discont = false; ///< a pause is to be ended by the next piece
    CMTime m_startTime;
    CMTime m_previousFrameTime = kCMTimeNegativeInfinity; ///< in the recording, as the next
    CMTime m_previousAudioTime = kCMTimeNegativeInfinity;
    CMTime m_previousAudioEnd = kCMTimeNegativeInfinity;
    CMTime m_offsetTime = kCMTimeZero;
};

/// "{7/30 = 0.233}" for messages.
std::string timeText(const CMTime& time);

} // namespace lamina
