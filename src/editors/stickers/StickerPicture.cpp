#include "editors/stickers/StickerPicture.h"

#include "editors/stickers/StickerCatalogue.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Localization.h"
#include "platform/base/UIScreen.h"
#include "platform/image/named/NamedPictures.h"
#include "platform/image/pixels/CGImage.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

namespace lamina {

namespace {

/// Of a drawing's longer side: 16 MB, and some twice a canvas.
constexpr double kMostPixels = 2048;
/// The same where there are many large ones.
constexpr double kMostPixelsOfMany = 512;
constexpr std::size_t kManyBytes = std::size_t{192} << 20;

/// Of all that are shown in the process.
std::size_t g_shownBytes = 0;

std::size_t bytesOf(const UIImage& picture)
{
    const CGImage& image = picture.cgImage();
    return image.bytesPerRow() * static_cast<std::size_t>(image.height());
}

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

StickerPicture::~StickerPicture()
{
    g_shownBytes -= bytesOf(image());
}

void StickerPicture::show(const UIImage& picture)
{
    g_shownBytes -= bytesOf(image());
    g_shownBytes += bytesOf(picture);
    setImage(picture);
}

void StickerPicture::takeDrawing(const StickerPicture& other)
{
    if (other.m_name != m_name)
        return;
    show(other.image());
    m_drawnSize = other.m_drawnSize;
}

void StickerPicture::sizeDidSettle()
{
    m_settling.cancel();
    if (bounds().size == m_drawnSize)
        return;
    m_drawnSize = bounds().size;
    show(drawn());
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
    const double most = g_shownBytes > kManyBytes ? kMostPixelsOfMany : kMostPixels;
    const double scale = std::min(UIScreen::main().scale, most / std::max(shown.width, shown.height));
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
