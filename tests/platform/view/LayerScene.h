#pragma once

#include "TestPictures.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/CALayer.h"
#include "platform/view/UIView.h"

#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <optional>
#include <string>

namespace lamina::test {

inline constexpr UIColor kRed{1, 0, 0, 1};
inline constexpr UIColor kGreen{0, 1, 0, 1};
inline constexpr UIColor kBlue{0, 0, 1, 1};

inline std::shared_ptr<CALayer> makeLayer(const CGRect& frame, const std::optional<UIColor>& color = std::nullopt)
{
    auto layer = std::make_shared<CALayer>();
    layer->setBounds({0, 0, frame.size.width, frame.size.height});
    layer->setPosition({frame.midX(), frame.midY()});
    layer->setBackgroundColor(color);
    return layer;
}

inline std::shared_ptr<UIView> addView(UIView& parent, const CGRect& frame,
                                       const std::optional<UIColor>& color = std::nullopt)
{
    auto view = std::make_shared<UIView>(frame);
    view->setBackgroundColor(color);
    parent.addSubview(view);
    return view;
}

/// The layer as a picture of its bounds, RGBA premultiplied.
inline CGImage rendered(const CALayer& layer, double scale = 1)
{
    std::optional<CGContext> context = CGContext::image(layer.bounds().size, false, scale);
    if (!context)
        return {};
    context->translateCTM(-layer.bounds().minX(), -layer.bounds().minY());
    layer.renderInContext(*context);
    return context->makeImage();
}

/// The colours that have a letter: '.' is clear, '?' any that has none.
struct Ink {
    char letter;
    Rgba color;
};
inline constexpr Ink kInks[] = {
    {'.', {0, 0, 0, 0}},         {'r', {255, 0, 0, 255}},     {'g', {0, 255, 0, 255}},   {'b', {0, 0, 255, 255}},
    {'w', {255, 255, 255, 255}}, {'k', {0, 0, 0, 255}},       {'y', {255, 255, 0, 255}}, {'m', {255, 0, 255, 255}},
    {'c', {0, 255, 255, 255}},   {'R', {128, 0, 0, 128}},     {'B', {0, 0, 128, 128}},   {'p', {255, 128, 128, 255}},
    {'v', {128, 128, 255, 255}}, {'h', {128, 128, 128, 255}},
};

/// One letter a pixel, one line a row; half tones ('R', 'B' half seen through, 'p', 'v', 'h' over white) may be off by
/// one level.
inline std::string drawn(const CGImage& image)
{
    std::string art;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const auto ink = std::ranges::find_if(
                kInks, [&](const Ink& known) { return difference(known.color, pixelAt(image, x, y)) <= 1; });
            art += ink == std::end(kInks) ? '?' : ink->letter;
        }
        art += '\n';
    }
    return art;
}

/// A picture drawn with letters, its rows divided by blanks.
inline UIImage pictureOf(const std::string& rows, double scale = 1,
                         UIImageOrientation orientation = UIImageOrientation::Up)
{
    const auto width = static_cast<int>(rows.find(' '));
    const int height = static_cast<int>(rows.size() + 1) / (width + 1);
    const auto pixel = [&](int x, int y) {
        const char letter = rows[static_cast<std::size_t>(y * (width + 1) + x)];
        return std::ranges::find(kInks, letter, &Ink::letter)->color;
    };
    return UIImage(makePicture(width, height, pixel, true), scale, orientation);
}

/// The sum of all alphas, in pixels.
inline double coveredArea(const CGImage& image)
{
    double sum = 0;
    for (const Rgba& pixel : pixelsOf(image))
        sum += pixel[3] / 255.0;
    return sum;
}

} // namespace lamina::test
