#include "editors/colorpicker/InfColorSquareView.h"

#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"

#include <algorithm>
#include <cstdint>
#include <new>

namespace lamina {

InfColorSquareView::InfColorSquareView(const CGRect& frame)
    : UIImageView(frame)
{
    layer().setContentsAreTransient(true);
}

void InfColorSquareView::setHue(float hue)
{
    if (hue == m_hue && image())
        return;
    m_hue = hue;
    updateContent();
}

/// One that no picture is made of any more; null when memory is short.
std::shared_ptr<ColorSquarePixels> InfColorSquareView::freePixels()
{
    const auto unused = std::ranges::find_if(m_pixels, [](const auto& pixels) { return pixels.use_count() <= 1; });
    auto& pixels = unused == m_pixels.end() ? m_pixels.front() : *unused;
    if (unused == m_pixels.end() || !pixels)
        pixels.reset(new (std::nothrow) ColorSquarePixels);
    return pixels;
}

void InfColorSquareView::updateContent()
{
    const std::shared_ptr<ColorSquarePixels> pixels = freePixels();
    if (!pixels)
        return setImage({});
    fillColorSquare(m_hue, *pixels);
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(pixels->data());
    setImage(UIImage(CGImage::make(colorImageLayout(kColorSquareHeight),
                                   std::shared_ptr<const std::uint8_t>(pixels, bytes), sizeof(ColorSquarePixels))));
}

} // namespace lamina
