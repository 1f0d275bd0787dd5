#pragma once

#include "editors/common/History.h"
#include "platform/base/Clock.h"

namespace lamina {

/// Small changes that come many at a time: keys that repeat, the notches of a wheel, the steps of a touchpad's gesture.
enum class EditSeries { None, Move, Zoom, Rotate, Slide };

/// Undo and redo of a composition, a value type with two functions beside it: `bool looksAlike(const Composition&,
/// const Composition&)` says whether both give the same picture, `byteCount` is that of `History`. What the user would
/// call one change is one step; what doesn't show in the picture (selecting, changing the mode) is none, but goes with
/// the state in which it was done. Main thread.
template <class Composition>
class EditHistory {
public:
    /// Small changes of one series that follow each other within this time are one step.
    static constexpr double kSeriesSeconds = 1;

    /// Begins anew at the state in which the editor opens.
    void start(const Composition& opening)
    {
        m_opening = opening;
        m_states = History<Composition>(opening);
        m_series = EditSeries::None;
    }

    /// A change that is over: a step, unless the picture looks as before it. A small one joins the step of the one
    /// before where both belong to one series; a series that ends where it began leaves no step.
    void record(const Composition& composition, EditSeries series = EditSeries::None)
    {
        const double now = Clock::shared()->now();
        if (series != EditSeries::None && series == m_series && now - m_seriesTime <= kSeriesSeconds)
            m_states.takeBack();
        m_series = addStep(composition) ? series : EditSeries::None;
        m_seriesTime = now;
    }

    /// A change that is no step, and that no series goes on after.
    void amend(const Composition& composition)
    {
        m_series = EditSeries::None;
        m_states.amend(composition);
    }

    bool canUndo() const { return m_states.canUndo(); }
    bool canRedo() const { return m_states.canRedo(); }
    /// The state after the last change, undo or redo.
    const Composition& current() const { return m_states.current(); }

    /// The state a step before or after, which is the current one then. Where there is no step, nothing changes.
    const Composition& undo()
    {
        m_series = EditSeries::None;
        return m_states.undo();
    }
    /// See undo.
    const Composition& redo()
    {
        m_series = EditSeries::None;
        return m_states.redo();
    }

    /// Whether the picture differs from that of the opening state.
    bool isEdited(const Composition& composition) const { return !looksAlike(composition, m_opening); }

private:
    /// False when the composition looks as the current state, whose place it takes then.
    bool addStep(const Composition& composition)
    {
        const bool shows = !looksAlike(composition, m_states.current());
        if (shows)
            m_states.record(composition);
        else
            m_states.amend(composition);
        return shows;
    }

    Composition m_opening;
    History<Composition> m_states;
    EditSeries m_series = EditSeries::None; ///< that the last step belongs to
    double m_seriesTime = 0;
};

} // namespace lamina
