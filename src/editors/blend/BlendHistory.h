#pragma once

#include "editors/blend/BlendComposition.h"
#include "platform/base/History.h"

namespace lamina {

/// Small changes that come many at a time: keys that repeat, the notches of a wheel, the steps of a touchpad's pinch.
enum class BlendSeries { None, Move, Zoom };

/// Undo and redo of a blend. What a person would call one change is one step; what doesn't show in the picture
/// (selecting, changing the mode) is none, but goes with the state in which it was done. Main thread.
class BlendHistory {
public:
    /// Small changes of one series that follow each other within this time are one step.
    static constexpr double kSeriesSeconds = 1;

    /// Begins anew at the state in which the editor opens.
    void start(const BlendComposition& opening);

    /// A change that is over: a step, unless the picture looks as before it. A small one joins the step of the one
    /// before where both belong to one series; a series that ends where it began leaves no step.
    void record(const BlendComposition& composition, BlendSeries series = BlendSeries::None);
    /// A change that is no step.
    void amend(const BlendComposition& composition);

    bool canUndo() const { return m_states.canUndo(); }
    bool canRedo() const { return m_states.canRedo(); }
    /// The state after the last change, undo or redo.
    const BlendComposition& current() const { return m_states.current(); }
    const BlendComposition& undo();
    const BlendComposition& redo();

    /// Whether the picture differs from that of the opening state.
    bool isEdited(const BlendComposition& composition) const { return !looksAlike(composition, m_opening); }

private:
    bool addStep(const BlendComposition& composition);

    BlendComposition m_opening;
    History<BlendComposition> m_states;
    BlendSeries m_series = BlendSeries::None; ///< that the last step belongs to
    double m_seriesTime = 0;
};

} // namespace lamina
