#pragma once

#include "editors/stickers/IQStickerView.h"
#include "editors/stickers/Sticker.h"
#include "editors/stickers/StickerPicture.h"
#include "platform/view/UIView.h"

#include <map>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace lamina {

/// Where a canvas puts a new sticker.
enum class StickerPlace { Middle, TopLeft };

/// The stickers of one editor's canvas: tags, and what an editor does to all of them. The views belong to the tree; a
/// sticker is found by its tag, and one that was deleted keeps its place in the list, finds no view and is skipped.
///
/// Tags count on over resets, undo and redo, so that no two stickers of an editor ever have one in common. A `root` is
/// any view above the stickers, a `parent` the one that they stand in. Main thread.
class StickerBoard {
public:
    /// `firstTag` is the first sticker's.
    explicit StickerBoard(int firstTag)
        : m_stickerHandleTag(firstTag)
    {
    }

    /// Tag of the next sticker.
    int stickerHandleTag() const { return m_stickerHandleTag; }
    /// The tags of all stickers that were ever placed, in the order of placing, which is theirs too.
    const std::vector<int>& stickerTagMutableArr() const { return m_stickerTagMutableArr; }

    /// Of the stickers that are made from now on; see IQStickerView.
    void setObserver(std::weak_ptr<IQStickerObserver> observer) { m_observer = std::move(observer); }

    /// A new sticker of 200 by 200 on top of all in `parent`, with a border and no handles; an unknown name gives an
    /// empty one. Nobody is told.
    IQStickerView& add(UIView& parent, std::string_view name, StickerPlace place);

    /// Null where there is none.
    static IQStickerView* find(UIView& root, int tag);
    /// Those of the list that are found.
    std::vector<IQStickerView*> listed(UIView& root) const;
    /// What keys act on: the active sticker, or else the last listed one that shows its handles; null: none.
    IQStickerView* selected(UIView& root) const;

    /// Hides the handles of all listed stickers; borders stay.
    void hideHandles(UIView& root) const;
    /// The same, and borders become clear: nothing is seen of stickers but their pictures, and none is selected.
    void hideHandlesAndBorders(UIView& root) const;
    /// Puts all listed stickers on top of their parents, in the order of the list.
    void bringToFront(UIView& root) const;

    /// The stickers that stand in `parent`, the lowest first. Those with another content than a drawing are left out.
    static Stickers stickers(const UIView& parent);
    /// Puts these in the place of the stickers that stand in `parent`, on top of what else stands there. The list gets
    /// the tags that it doesn't know. Nobody is told.
    void show(UIView& parent, const Stickers& stickers);

    /// To be called before a tree with stickers is taken away: none of them stays the active one.
    static void leave(const UIView& tree) { IQStickerView::releaseActiveStickerView(tree); }

private:
    IQStickerView& addView(UIView& parent, const Sticker& sticker);
    void list(int tag);

    int m_stickerHandleTag;
    std::vector<int> m_stickerTagMutableArr; ///< ascending
    std::weak_ptr<IQStickerObserver> m_observer;
    /// By their stickers' tags, those that a tree has gone with too: most of what is built anew need not be drawn
    /// again.
    std::map<int, std::shared_ptr<const StickerPicture>> m_pictures;
};

} // namespace lamina
