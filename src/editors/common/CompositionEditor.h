#pragma once

#include "editors/common/EditorViewController.h"

namespace lamina {

/// An editor over a composition: the value type that holds all that the user has done, from which the tree of views can
/// be built again at any time. See EditHistory for what a composition brings.
template <class Composition>
class CompositionEditor : public EditorViewController {
public:
    /// What has been done so far.
    const Composition& composition() const { return m_composition; }
    /// Takes the editor to another state, which is a step.
    void setComposition(const Composition& composition)
    {
        act([&] { show(composition); });
    }

    bool canUndo() const override { return m_history.canUndo(); }
    bool canRedo() const override { return m_history.canRedo(); }

protected:
    using EditorViewController::EditorViewController;

    /// To be changed within an action, a gesture or before the opening, together with the tree.
    Composition& editedComposition() { return m_composition; }
    /// The composition as it is now is the one that the editor opens with: history begins, all is told.
    void open()
    {
        m_history.start(m_composition);
        tell();
    }
    /// Changes the last recorded step alone, by `change(composition)`. The composition is not touched: a gesture may be
    /// under way, which is not for this to record.
    template <class Change>
    void amendRecorded(Change change)
    {
        Composition recorded = m_history.current();
        change(recorded);
        m_history.amend(recorded);
        tell();
    }

    /// Builds the tree, the bar and the panels anew from the composition, with interaction and recognisers as the state
    /// had them. Views held from before are out of the tree then.
    virtual void showComposition() = 0;

private:
    void show(const Composition& composition)
    {
        m_composition = composition;
        showComposition();
    }
    void recordStep(EditSeries series) override { m_history.record(m_composition, series); }
    void stepBack() override { show(m_history.undo()); }
    void stepForth() override { show(m_history.redo()); }
    bool differsFromOpening() const override { return m_history.isEdited(m_composition); }

    Composition m_composition;
    EditHistory<Composition> m_history;
};

} // namespace lamina
