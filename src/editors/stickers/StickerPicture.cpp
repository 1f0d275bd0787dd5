#include "editors/stickers/StickerPicture.h"

#include "editors/stickers/StickerCatalogue.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Localization.h"
#include "platform/base/UIScreen.h"
#include "platform/image/named/NamedPictures.h"

#include <cstddef>
#include <algorithm>
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

void StickerPicture::sizeDidSettle()
{
    const CGSize own = sizeOfImageNamed(m_name);
    if (own.width <= 0 || own.height <= 0 || bounds().isEmpty())
        return setImage({});
    const double factor = std::min(bounds().size.width / own.width, bounds().size.height / own.height);
    const CGSize shown{own.width * factor, own.height * factor};
    const double scale = std::min(UIScreen::main().scale, kMostPixels / std::max(shown.width, shown.height));
    setImage(imageNamed(m_name, shown, scale));
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
