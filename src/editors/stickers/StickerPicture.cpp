#include "editors/stickers/StickerPicture.h"

#include "editors/stickers/StickerCatalogue.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Localization.h"
#include "platform/base/UIScreen.h"
#include "platform/image/named/NamedPictures.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

namespace lamina {

namespace {

/// Of a drawing's longer side: 16 MB, and some twice a canvas.
constexpr double kMostPixels = 2048;

} // namespace

StickerPicture::StickerPicture(std::string name)
    : m_name(std::move(name))
{
    setContentMode(UIViewContentMode::ScaleAspectFit);
    setAccessibilityElement(true);
    setAccessibilityTraits(UIAccessibilityTraits::Button | UIAccessibilityTraits::Image);
    if (const std::optional<std::size_t> index = stickerIndex(m_name))
        setAccessibilityLabel(localizedString(stickerCatalogue()[*index].word));
}

void StickerPicture::takeDrawing(const StickerPicture& other)
{
    if (other.m_name != m_name)
        return;
    setImage(other.image());
    m_drawnSize = other.m_drawnSize;
}

void StickerPicture::sizeDidSettle()
{
    m_settling.cancel();
    if (bounds().size == m_drawnSize)
        return;
    m_drawnSize = bounds().size;
    setImage(drawn());
}

void StickerPicture::sizeDidChange()
{
    m_settling = DispatchTimer(DispatchQueue::main(), kSettlingSeconds, [this] { sizeDidSettle(); });
}

UIImage StickerPicture::drawn() const
{
    const CGSize own = sizeOfImageNamed(m_name);
    if (own.width <= 0 || own.height <= 0 || bounds().isEmpty())
        return {};
    const double factor = std::min(bounds().size.width / own.width, bounds().size.height / own.height);
    const CGSize shown{own.width * factor, own.height * factor};
    const double scale = std::min(UIScreen::main().scale, kMostPixels / std::max(shown.width, shown.height));
    return imageNamed(m_name, shown, scale);
}

IQStickerView* StickerPicture::sticker() const
{
    return dynamic_cast<IQStickerView*>(superview());
}

UIAccessibilityTraits::Set StickerPicture::accessibilityTraits() const
{
    const bool selected = sticker() && sticker()->isShowingEditingHandles();
    return UIImageView::accessibilityTraits() |
           (selected ? UIAccessibilityTraits::Selected : UIAccessibilityTraits::None);
}

bool StickerPicture::accessibilityActivate()
{
    if (!sticker())
        return false;
    sticker()->contentTapped();
    return true;
}

} // namespace lamina
