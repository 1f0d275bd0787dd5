#pragma once

#include "editors/common/EditHistory.h"
#include "editors/stickers/IQStickerView.h"
#include "editors/stickers/Sticker.h"
#include "editors/stickers/StickerBoard.h"
#include "editors/stickers/StickerStrip.h"
#include "platform/base/CGGeometry.h"
#include "platform/view/UIView.h"

#include <QObject>

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace lamina {

/// What an editor is told when a person does something to a sticker of its canvas.
struct StickerSteps {
    std::function<void()> changed;         ///< a gesture is under way
    std::function<void(EditSeries)> ended; ///< a change is over, which is a step; see IQStickerObserver
};

/// What every editor does with the stickers of its canvas: the strip to choose from, making them, selecting, moving and
/// deleting, and what of them a print and a finish leave out. Changes made by these operations are told to nobody,
/// but for `move` and `deleteSelected`. Nothing happens before the first `show`. Main thread.
class StickerEditing {
public:
    /// `firstTag` is the first sticker's. What `steps` uses outlives this.
    StickerEditing(int firstTag, StickerSteps steps);
    ~StickerEditing();
    StickerEditing(const StickerEditing&) = delete;
    StickerEditing& operator=(const StickerEditing&) = delete;

    /// Tags and the list.
    const StickerBoard& board() const { return m_board; }

    /// From now on the stickers stand in `parent`: these alone, on top of what else stands there.
    void show(std::shared_ptr<UIView> parent, const Stickers& stickers);
    /// To be called before the tree that they stand in is taken away: none of them stays the active one.
    void leave();
    /// As they stand now, the lowest first; empty before the first `show`.
    Stickers stickers() const;

    /// A fresh strip; it fills while it is used.
    void openStrip(const StickerStripLayout& layout);
    void closeStrip() { m_strip.reset(); }
    /// The stickers to choose from, a list model; null while there is none.
    QObject* strip() const { return m_strip ? &m_strip->thumbnails() : nullptr; }

    /// A new one on top of all, of the catalogue's drawing at `index`.
    void add(std::size_t index, StickerPlace place);
    /// What keys act on; null: none. See StickerBoard.
    IQStickerView* selected() const;
    /// Moves by points of the canvas, which ends in a step; nothing for a view that is no sticker.
    static void move(UIView& sticker, CGPoint by);
    /// What the selected one's close handle does, which is a step.
    void deleteSelected();

    /// See StickerBoard.
    void hideHandles();
    void hideHandlesAndBorders();
    void bringToFront();

    /// Hides handles and borders for a picture in between of which nobody hears, and gives what brings them back.
    std::function<void()> hideForPrint() const;
    /// The same stickers as a finish leaves them, with neither handles nor borders.
    static void finish(Stickers& stickers);
    /// Puts them in the order in which they were made.
    static void sortByTag(Stickers& stickers);

private:
    class Observer;

    StickerBoard m_board;
    std::shared_ptr<IQStickerObserver> m_observer;
    std::shared_ptr<UIView> m_parent;
    std::unique_ptr<StickerStrip> m_strip;
};

} // namespace lamina
