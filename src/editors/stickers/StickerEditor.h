#pragma once

#include "editors/common/CompositionEditor.h"
#include "editors/common/EditHistory.h"
#include "editors/common/EditorToolBar.h"
#include "editors/stickers/StickerEditing.h"
#include "platform/base/CGGeometry.h"
#include "platform/view/UIView.h"

#include <functional>
#include <span>
#include <string_view>
#include <vector>

namespace lamina {

/// An editor with stickers on its canvas. Its composition has `Stickers stickers`, which follow the views. The tree
/// is the editor's: it shows the stickers by `stickerEditing().show`.
template <class Composition>
class StickerEditor : public CompositionEditor<Composition> {
public:
    /// Tag of the next sticker.
    int stickerHandleTag() const { return m_stickerEditing.board().stickerHandleTag(); }
    /// The tags of all stickers that there were since the editor opened.
    const std::vector<int>& stickerTagMutableArr() const { return m_stickerEditing.board().stickerTagMutableArr(); }

    void letGoOfStickers() override
    {
        this->act([this] { m_stickerEditing.hideHandlesAndBorders(); });
    }
    void deleteSticker() override
    {
        this->cancelGestures();
        m_stickerEditing.deleteSelected();
    }

protected:
    /// `firstTag` is the first sticker's; see EditorViewController for the others.
    StickerEditor(std::span<const EditorTool> tools, std::string_view active, int firstTag)
        : CompositionEditor<Composition>(tools, active)
        , m_stickerEditing(firstTag, {[this] { stickerChanges(); }, [this](EditSeries series) { stickerEnds(series); }})
    {
    }

    StickerEditing& stickerEditing() { return m_stickerEditing; }
    const StickerEditing& stickerEditing() const { return m_stickerEditing; }

    /// Stickers have been put in front of all that stands on the canvas, by their user or by this. Default: nothing.
    virtual void stickersRaised() {}

    void readViews() override { this->editedComposition().stickers = m_stickerEditing.stickers(); }
    UIView* activeSticker() const override { return m_stickerEditing.selected(); }
    void moveSticker(UIView& sticker, CGPoint by) override { StickerEditing::move(sticker, by); }
    std::function<void()> hideHandles() const override { return m_stickerEditing.hideForPrint(); }

private:
    void stickerChanges()
    {
        readViews();
        this->tellGesture();
    }
    /// A slider under another finger is let go of: what it does from now on is none of this step.
    void stickerEnds(EditSeries series)
    {
        this->endSliding();
        stickersRaised();
        this->endStep(series);
    }

    StickerEditing m_stickerEditing;
};

} // namespace lamina
