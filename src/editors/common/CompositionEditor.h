#pragma once

#include "editors/common/EditorViewController.h"
#include "editors/common/KeptPictures.h"
#include "editors/common/RecordValue.h"

#include <memory>
#include <optional>
#include <utility>

namespace lamina {

/// An editor over a composition: the value type that holds all that the user has done, from which the tree of views can
/// be built again at any time. See EditHistory for what a composition brings; and beside it, so that work is kept,
/// `KeptKind keptKind(const Composition&)`, `void writeRecord(const Composition&, KeptPictures&, RecordValue&)`
/// and `bool readRecord(const RecordValue&, KeptPictures&, Composition&)`, which is false for what is no such record.
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

    bool resumeWork(std::shared_ptr<KeptWork> work) override
    {
        Composition read;
        const bool found = work->read(
            [&read](const RecordValue& record, KeptPictures& pictures) { return readRecord(record, pictures, read); });
        if (found) {
            m_resumed = std::move(read);
            keeper().resume(std::move(work));
        }
        return found;
    }

    bool canUndo() const override { return m_history.canUndo(); }
    bool canRedo() const override { return m_history.canRedo(); }

protected:
    using EditorViewController::EditorViewController;

    /// To be changed within an action, a gesture or before the opening, together with the tree.
    Composition& editedComposition() { return m_composition; }
    /// The composition that was kept and is to be gone on with, until the opening; null: the work is a new one.
    const Composition* resumed() const { return m_resumed ? &*m_resumed : nullptr; }
    /// The composition as it is now, or the one that was resumed, is the one that the editor opens with: history
    /// begins, all is told, and the work is kept from now on.
    void open()
    {
        if (m_resumed)
            show(*m_resumed);
        m_resumed.reset();
        m_history.start(m_composition);
        m_kept = m_composition;
        tell();
        keepWork(keptKind(m_composition), [this] {
            return [state = m_history.current()](KeptPictures& pictures, RecordValue& record) {
                writeRecord(state, pictures, record);
            };
        });
    }
    /// Changes the last recorded step alone, by `change(composition)`. The composition is not touched: a gesture may be
    /// under way, which is not for this to record.
    template <class Change>
    void amendRecorded(Change change)
    {
        Composition recorded = m_history.current();
        change(recorded);
        m_history.amend(recorded);
        keepState();
        tell();
    }

    /// Builds the tree, the bar and the panels anew from the composition, with interaction and recognisers as the state
    /// had them. Views held from before are out of the tree then.
    virtual void showComposition() = 0;
    /// Takes into the composition what views alone know until then. Called before a step is recorded. Default: nothing.
    virtual void readViews() {}

private:
    void show(const Composition& composition)
    {
        m_composition = composition;
        showComposition();
        renewSliders();
    }
    void recordStep(EditSeries series) override
    {
        readViews();
        m_history.record(m_composition, series);
        keepState();
    }
    void stepBack() override
    {
        show(m_history.undo());
        keepState();
    }
    void stepForth() override
    {
        show(m_history.redo());
        keepState();
    }
    /// While the work is safe elsewhere, what doesn't show is no reason to keep it again.
    void keepState()
    {
        if (keeper().isReleased() && looksAlike(m_history.current(), m_kept))
            return;
        m_kept = m_history.current();
        keeper().touch();
    }
    bool differsFromOpening() const override { return m_history.isEdited(m_composition); }

    Composition m_composition;
    EditHistory<Composition> m_history;
    Composition m_kept; ///< the state that the keeper heard of last
    std::optional<Composition> m_resumed;
};

} // namespace lamina
