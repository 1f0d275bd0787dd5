#pragma once

#include "editors/stickers/StickerCatalogue.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/DispatchQueue.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/ListModel.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace lamina {

/// Where the thumbnails of a strip stand, points.
struct StickerStripLayout {
    double first = 5; ///< left edge of the first
    double step = 85; ///< from one to the next
    double top = 2;
    double side = 80;
    double inset = 6; ///< from a thumbnail's edge to its picture
};
inline constexpr StickerStripLayout kBlendStickerStrip;
inline constexpr StickerStripLayout kCollageStickerStrip{.step = 75, .side = 70};

/// One thumbnail. Texts are in the user's language.
struct StickerThumbnail {
    int tag = 0;         ///< 6000 and its place in the catalogue
    std::string name;    ///< the sticker's word
    UIImage picture;     ///< of the main screen's scale; empty where there is no drawing
    std::string group;   ///< title of its group
    std::string drawing; ///< name of the drawing
};

/// A strip of all stickers that fills while it is used: thumbnails are drawn one after another on a queue of the
/// strip's own, and each is added as it is ready. What is still to be drawn when the strip goes is left undone. Made
/// anew for each opening. Main thread.
class StickerStrip {
public:
    static constexpr int kFirstTag = 6000;

    /// Begins to load.
    explicit StickerStrip(const StickerStripLayout& layout = kBlendStickerStrip);
    ~StickerStrip();
    StickerStrip(const StickerStrip&) = delete;
    StickerStrip& operator=(const StickerStrip&) = delete;

    /// The thumbnails so far, in the catalogue's order: `tag`, `name`, `picture` (a `lamina::UIImage`), `group` and
    /// `drawing`. Lives as long as the strip.
    ListModel<StickerThumbnail>& thumbnails() { return m_thumbnails; }
    const ListModel<StickerThumbnail>& thumbnails() const { return m_thumbnails; }
    /// Where the thumbnail of that place in the catalogue stands in the strip.
    CGRect frame(std::size_t index) const;
    /// What the strip scrolls over when it is full.
    CGSize contentSize() const;

    /// The sticker behind a thumbnail's tag: its remainder by 6000 as a place in the catalogue. Nothing for a tag that
    /// gives none.
    static std::optional<std::size_t> stickerIndex(int tag);

private:
    void load();

    StickerStripLayout m_layout;
    ListModel<StickerThumbnail> m_thumbnails;
    std::shared_ptr<StickerStrip*> m_self; ///< for blocks that may come after the strip
    DispatchQueue m_queue{"com.vx.myqueue"};
};

} // namespace lamina
