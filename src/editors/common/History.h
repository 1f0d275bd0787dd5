#pragma once

#include "editors/common/PictureMemory.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <utility>

namespace lamina {

/// How much a history keeps. Beyond either bound the oldest states are forgotten.
struct HistoryLimits {
    std::size_t steps = 100;
    std::size_t bytes = std::size_t{256} << 20; ///< of the states' pictures, each counted once; a step is kept even so
};

/// The states that something edited has gone through, for undo and redo. A state is a copy, so it should be small or
/// share its bulk; `std::size_t byteCount(const State&, PictureMemory& counted)`, found beside the state's type, tells
/// what it adds to the bulk of those counted before it. There is always a current state, however large; a step leads
/// from each state to the next. A plain value: one thread at a time.
template <class State>
class History {
public:
    /// Begins at `start`.
    explicit History(State start = {}, HistoryLimits limits = {})
        : m_limits(limits)
    {
        m_states.push_back(std::move(start));
    }

    /// The state after the last change, undo or redo.
    const State& current() const { return m_states[m_position]; }
    bool canUndo() const { return m_position > 0; }
    bool canRedo() const { return m_position + 1 < m_states.size(); }

    /// A step to `state`. The steps that were undone are forgotten.
    void record(State state)
    {
        forgetRedo();
        m_states.push_back(std::move(state));
        ++m_position;
        forgetOldest();
    }

    /// Puts `state` in the place of the current one: a change that is no step. Undone steps can still be redone.
    void amend(State state)
    {
        m_states[m_position] = std::move(state);
        forgetOldest();
    }

    /// Goes back a step and forgets it, with those that were undone before; for a step that is to be recorded anew.
    /// Nothing where there is none.
    void takeBack()
    {
        undo();
        forgetRedo();
    }

    /// The state a step before or after, which is the current one then. Where there is no step, nothing changes.
    const State& undo()
    {
        m_position -= canUndo() ? 1 : 0;
        return current();
    }
    /// See undo.
    const State& redo()
    {
        m_position += canRedo() ? 1 : 0;
        return current();
    }

private:
    void forgetRedo()
    {
        m_states.erase(m_states.begin() + static_cast<std::ptrdiff_t>(m_position) + 1, m_states.end());
    }

    /// How many of the newest states the bound on bytes leaves room for.
    std::size_t statesWithinBytes() const
    {
        PictureMemory counted;
        std::size_t bytes = 0;
        std::size_t states = 0;
        for (auto state = m_states.rbegin(); state != m_states.rend(); ++state, ++states) {
            bytes += byteCount(*state, counted);
            if (bytes > m_limits.bytes)
                break;
        }
        return states;
    }

    void forgetOldest()
    {
        const std::size_t beyondSteps = m_position - std::min(m_position, m_limits.steps);
        constexpr std::size_t kOneStep = 2; // what was done last can be undone, whatever it weighs
        const std::size_t kept = std::min(m_states.size(), std::max(statesWithinBytes(), kOneStep));
        const std::size_t beyondBytes = m_states.size() - kept;
        const std::size_t forgotten = std::min(m_position, std::max(beyondSteps, beyondBytes));
        m_states.erase(m_states.begin(), m_states.begin() + static_cast<std::ptrdiff_t>(forgotten));
        m_position -= forgotten;
    }

    HistoryLimits m_limits;
    std::deque<State> m_states;
    std::size_t m_position = 0;
};

} // namespace lamina
