#include "export/functions/ImageHelpers.h"

#include "platform/base/UIScreen.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIImageDrawing.h"
#include "platform/image/pixels/CGColorSpace.h"
#include "platform/image/pixels/CGImage.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>

namespace lamina {

namespace {

/// More is no picture that anybody could open.
constexpr double kMostPixels = 400e6;

/// In points.
CGSize sizeToFit(const UIImage& image, double targetWidth, double targetHeight)
{
    const CGSize size = image.size();
    const double factor = size.height >= size.width ? targetWidth / size.width : targetHeight / size.height;
    return {size.width * factor, size.height * factor};
}

/// Whether a bitmap of views holds the picture's bytes just as they are.
bool hasLayoutOfViews(const CGImage& image)
{
    const CGImageAlphaInfo alpha = image.alphaInfo();
    return image.bitsPerComponent() == 8 && image.bitsPerPixel() == 32 && !image.mask() &&
           image.colorSpace() == CGColorSpace::deviceRGB() && swappedUnit(image.bitmapInfo()) == 1 &&
           (alpha == CGImageAlphaInfo::PremultipliedLast || alpha == CGImageAlphaInfo::NoneSkipLast);
}

/// Whether drawing the picture over the whole of a context of `pixels` changes no colour of it.
bool staysAsItIs(const UIImage& image, CGSize pixels, const UIColor& ground)
{
    constexpr double kPixelNoise = 1e-3;
    return image.imageOrientation() == UIImageOrientation::Up && hasLayoutOfViews(image.cgImage()) &&
           (ground.alpha == 0 || !image.cgImage().hasAlpha()) &&
           std::abs(pixels.width - image.cgImage().width()) < kPixelNoise &&
           std::abs(pixels.height - image.cgImage().height()) < kPixelNoise;
}

} // namespace

UIImage redrawn(const UIImage& image, CGSize size, const CGRect& rect, const UIColor& ground)
{
    const double scale = UIScreen::main().scale;
    const CGSize pixels{size.width * scale, size.height * scale};
    if (!image || !(pixels.width * pixels.height <= kMostPixels))
        return {};
    if (rect == CGRect{{0, 0}, size} && staysAsItIs(image, pixels, ground))
        return UIImage(image.cgImage(), scale);
    std::optional<CGContext> context = CGContext::image(size, false, scale);
    if (!context)
        return {};
    if (ground.alpha > 0) {
        context->setFillColor(ground);
        context->fillRect({{0, 0}, size});
    }
    drawInRect(image, *context, rect);
    return context->makeUIImage();
}

IntSize pixelsToFit(const UIImage& image, double targetWidth, double targetHeight)
{
    const CGSize scaled = sizeToFit(image, targetWidth, targetHeight);
    const double scale = UIScreen::main().scale;
    const auto pixels = [scale](double points) { return std::ceil(points * scale - kPixelNoise); };
    const double width = pixels(scaled.width);
    const double height = pixels(scaled.height);
    if (!(width >= 1 && height >= 1 && width * height <= kMostPixels))
        return {};
    return {static_cast<int>(width), static_cast<int>(height)};
}

UIImage scaleImageToFit(const UIImage& image, double targetWidth, double targetHeight)
{
    const CGSize scaled = sizeToFit(image, targetWidth, targetHeight);
    return redrawn(image, scaled, {{0, 0}, scaled}, UIColor::clear());
}

UIColor colorFromHex(std::string_view text, double alpha)
{
    if (text.starts_with('#'))
        text.remove_prefix(1);
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\r"), text.size()));
    if (text.starts_with("0x") || text.starts_with("0X"))
        text.remove_prefix(2);
    std::uint64_t value = 0;
    const std::errc error = std::from_chars(text.data(), text.data() + text.size(), value, 16).ec;
    if (error == std::errc::invalid_argument)
        return UIColor::black().withAlpha(alpha);
    if (error == std::errc::result_out_of_range)
        value = std::numeric_limits<std::uint64_t>::max();
    const auto component = [value](int shift) { return static_cast<double>(value >> shift & 0xFF) / 255.0; };
    return {component(16), component(8), component(0), alpha};
}

UIImage normalizedOrientationImage(const UIImage& image)
{
    return image.upright();
}

} // namespace lamina
