#pragma once

#include "TestPictures.h"
#include "platform/view/CALayer.h"

#include <cmath>
#include <gtest/gtest.h>

namespace lamina::test {

inline std::shared_ptr<CALayer> makeLayer(const CGRect& frame, const std::optional<UIColor>& color = std::nullopt)
{
    auto layer = std::make_shared<CALayer>();
    layer->setBounds({0, 0, frame.size.width, frame.size.height});
    layer->setPosition({frame.midX(), frame.midY()});
    layer->setBackgroundColor(color);
    return layer;
}

/// The layer as a picture of its bounds, RGBA premultiplied.
inline CGImage rendered(const CALayer& layer, double scale = 1, const std::optional<UIColor>& backdrop = std::nullopt)
{
    std::optional<CGContext> context = CGContext::image(layer.bounds().size, false, scale);
    if (!context)
        return {};
    if (backdrop) {
        context->setFillColor(*backdrop);
        context->fillRect({0, 0, layer.bounds().size.width, layer.bounds().size.height});
    }
    context->translateCTM(-layer.bounds().minX(), -layer.bounds().minY());
    layer.renderInContext(*context);
    return context->makeImage();
}

inline void expectPixel(const CGImage& image, int x, int y, const Rgba& wanted, int step = 1)
{
    const Rgba got = pixelAt(image, x, y);
    EXPECT_LE(difference(got, wanted), step) << "at " << x << ", " << y << ": " << int{got[0]} << ' ' << int{got[1]}
                                             << ' ' << int{got[2]} << ' ' << int{got[3]};
}

/// The sum of all alphas, in pixels.
inline double coveredArea(const CGImage& image)
{
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += pixelAt(image, x, y)[3] / 255.0;
    }
    return sum;
}

inline std::uint8_t byteOf(double value)
{
    return static_cast<std::uint8_t>(std::lround(value));
}

inline bool sameBytes(const CGImage& x, const CGImage& y)
{
    return x.size() == y.size() && x.bytesPerRow() == y.bytesPerRow() &&
           std::equal(x.bytes().begin(), x.bytes().end(), y.bytes().begin());
}

} // namespace lamina::test
