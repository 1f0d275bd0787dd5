#include "imageops/DrawingSurface.h"
#include "imageops/ImageGeometry.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/UIScreen.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelArithmetic.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/UIImage.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// A row through its mask, twice: value · S² / 255², rounded once.
void maskRow(std::uint8_t* argb, const std::uint8_t* maskArgb, int width, bool coverageOnly)
{
    constexpr unsigned kWhole = 255 * 255;
    for (int x = 0; x < width; ++x, argb += 4, maskArgb += 4) {
        const unsigned shown = coverageOnly ? maskArgb[0] : quickLumaOf(maskArgb[1], maskArgb[2], maskArgb[3]);
        const unsigned twice = shown * shown;
        for (int c = 0; c < 4; ++c)
            argb[c] = static_cast<std::uint8_t>((argb[c] * twice + kWhole / 2) / kWhole);
    }
}

/// A grey column from the first alpha, at the top, to the last, each row at its middle.
CGImage alphaRamp(int height, double first, double last)
{
    const CGImageLayout layout = CGImageLayout::gray(1, height);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    if (!buffer)
        return {};
    for (int y = 0; y < height; ++y) {
        const double value = std::lerp(first, last, (y + 0.5) / height);
        buffer.data()[y] = static_cast<std::uint8_t>(std::lround(255 * value));
    }
    return CGImage::make(layout, std::move(buffer));
}

} // namespace

UIImage maskWithImage(const UIImage& image, const UIImage& mask)
{
    if (!image || !mask || image.cgImage().size() != mask.cgImage().size())
        return {};
    const IntSize size = image.cgImage().size();
    const std::optional<DrawnRows> rows = DrawnRows::make(image.cgImage(), size, true);
    const std::optional<DrawnRows> maskRows = DrawnRows::make(mask.cgImage(), size, true);
    std::optional<DrawingSurface> surface = DrawingSurface::make(size, true);
    if (!rows || !maskRows || !surface)
        return {};
    const bool coverageOnly = mask.cgImage().colorSpace().model() == CGColorSpace::Model::AlphaOnly;
    parallelRows(0, size.height, 4 * static_cast<std::size_t>(size.width), [&](int first, int last) {
        std::vector<std::uint8_t> maskRowBytes(surface->bytesPerRow());
        for (int y = first; y < last; ++y) {
            rows->read(y, surface->row(y));
            maskRows->read(y, maskRowBytes.data());
            maskRow(surface->row(y), maskRowBytes.data(), size.width, coverageOnly);
        }
    });
    return std::move(*surface).makePicture(image.scale(), image.imageOrientation());
}

UIImage reflectedImageWithHeight(const UIImage& image, unsigned height, float fromAlpha, float toAlpha)
{
    if (!image || height == 0 || !std::isfinite(fromAlpha) || !std::isfinite(toAlpha))
        return {};
    const CGSize size = image.size();
    const double scale = UIScreen::main().scale;
    const std::optional<IntSize> column = wholePixels(1, height);
    if (!column || !wholePixels(size.width * scale, height * scale))
        return {};
    std::optional<CGContext> context = CGContext::image({size.width, static_cast<double>(height)}, false, scale);
    const CGImage ramp = alphaRamp(column->height, std::clamp(fromAlpha, 0.0F, 1.0F), std::clamp(toAlpha, 0.0F, 1.0F));
    if (!context || !ramp)
        return {};
    context->clipToMask(CGRect(0, 0, size.width, height), ramp);
    // In a context whose y runs down, stored pixels come out upside down, which is the reflection.
    context->drawImage(image.cgImage(), CGRect(0, 0, size.width, size.height));
    return context->makeUIImage();
}

} // namespace lamina
