#include "editors/stickers/StickerStrip.h"

#include "platform/base/Localization.h"
#include "platform/base/UIScreen.h"
#include "platform/image/named/NamedPictures.h"

#include <utility>

namespace lamina {

namespace {

/// Empty, without a word in the log, where there is no such drawing.
UIImage drawnSticker(std::string_view name, double side, double scale)
{
    const bool known = sizeOfImageNamed(name).width > 0;
    return known ? imageNamed(name, {side, side}, scale) : UIImage();
}

} // namespace

StickerStrip::StickerStrip(const StickerStripLayout& layout)
    : m_layout(layout)
    , m_thumbnails({{"tag", &StickerThumbnail::tag},
                    {"name", &StickerThumbnail::name},
                    {"picture", &StickerThumbnail::picture},
                    {"group", &StickerThumbnail::group},
                    {"drawing", &StickerThumbnail::drawing}})
    , m_self(std::make_shared<StickerStrip*>(this))
{
    load();
}

StickerStrip::~StickerStrip()
{
    m_self.reset(); // the queue, which waits for its blocks, then has nothing to draw
}

void StickerStrip::load()
{
    const std::weak_ptr<StickerStrip*> weak = m_self;
    const double side = m_layout.side - 2 * m_layout.inset;
    const double scale = UIScreen::main().scale;
    const auto expected = DispatchQueue::main().expectWork();
    for (const StickerEntry& entry : stickerCatalogue()) {
        m_queue.async([weak, &entry, side, scale, expected] {
            if (weak.expired())
                return;
            DispatchQueue::main().async([weak, &entry, picture = drawnSticker(entry.name, side, scale)] {
                const auto self = weak.lock();
                if (!self)
                    return;
                ListModel<StickerThumbnail>& thumbnails = (*self)->m_thumbnails;
                thumbnails.append({.tag = kFirstTag + thumbnails.count(),
                                   .name = localizedString(entry.word),
                                   .picture = picture,
                                   .group = localizedString(stickerGroupTitle(entry.group)),
                                   .drawing = std::string(entry.name)});
            });
        });
    }
}

CGRect StickerStrip::frame(std::size_t index) const
{
    return {m_layout.first + static_cast<double>(index) * m_layout.step, m_layout.top, m_layout.side, m_layout.side};
}

CGSize StickerStrip::contentSize() const
{
    return {static_cast<double>(kStickerCount) * m_layout.step, m_layout.side};
}

std::optional<std::size_t> StickerStrip::stickerIndex(int tag)
{
    const int index = tag % kFirstTag;
    if (index < 0 || index >= static_cast<int>(kStickerCount))
        return std::nullopt;
    return static_cast<std::size_t>(index);
}

} // namespace lamina
