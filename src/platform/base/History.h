#pragma once

#include <cstddef>
#include <deque>
#include <utility>

namespace lamina {

/// The states that something edited has gone through, for undo and redo. A state is a copy, so it should be small or
/// share its bulk. There is always a current one; a step leads from each state to the next. A plain value: one thread
/// at a time.
template <class State>
class History {
public:
    static constexpr std::size_t kDefaultLimit = 100;

    /// Begins at `start`. At most `limit` steps are kept; beyond that the oldest is forgotten.
    explicit History(State start = {}, std::size_t limit = kDefaultLimit)
        : m_limit(limit)
    {
        m_states.push_back(std::move(start));
    }

    const State& current() const { return m_states[m_position]; }
    bool canUndo() const { return m_position > 0; }
    bool canRedo() const { return m_position + 1 < m_states.size(); }

    /// A step to `state`. The steps that were undone are forgotten.
    void record(State state)
    {
        forgetRedo();
        m_states.push_back(std::move(state));
        ++m_position;
        if (m_position > m_limit) {
            m_states.pop_front();
            --m_position;
        }
    }

    /// Puts `state` in the place of the current one: a change that is no step. Undone steps can still be redone.
    void amend(State state) { m_states[m_position] = std::move(state); }

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

    std::size_t m_limit;
    std::deque<State> m_states;
    std::size_t m_position = 0;
};

} // namespace lamina
