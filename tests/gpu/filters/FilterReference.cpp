#include "FilterReference.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/sources/GPUImagePicture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>

namespace lamina::test {

namespace {

std::uint8_t toByte(double value)
{
    return static_cast<std::uint8_t>(std::lround(255 * std::clamp(value, 0.0, 1.0)));
}

std::uint8_t ramp(int at, int count)
{
    return toByte(count > 1 ? static_cast<double>(at) / (count - 1) : 0.5);
}

} // namespace

Texture::Texture(const CGImage& image)
    : m_image(image)
{
}

Color Texture::texel(int x, int y) const
{
    const Rgba bytes = pixelAt(m_image, std::clamp(x, 0, width() - 1), std::clamp(y, 0, height() - 1));
    Color color{};
    std::transform(bytes.begin(), bytes.end(), color.begin(), [](std::uint8_t byte) { return byte / 255.0; });
    return color;
}

Color Texture::sample(double u, double v) const
{
    const double x = u * width() - 0.5;
    const double y = v * height() - 0.5;
    const int left = static_cast<int>(std::floor(x));
    const int top = static_cast<int>(std::floor(y));
    const double right = x - left;
    const double below = y - top;
    Color color{};
    for (std::size_t k = 0; k < color.size(); ++k) {
        const double upper = std::lerp(texel(left, top)[k], texel(left + 1, top)[k], right);
        const double lower = std::lerp(texel(left, top + 1)[k], texel(left + 1, top + 1)[k], right);
        color[k] = std::lerp(upper, lower, below);
    }
    return color;
}

CGImage noisePicture(int width, int height, bool translucent, unsigned seed)
{
    std::mt19937 random(seed);
    const auto byte = [&random] { return static_cast<std::uint8_t>(random() >> 24); };
    return makePicture(
        width, height,
        [&](int, int) {
            Rgba pixel{byte(), byte(), byte(), byte()};
            pixel[3] = translucent ? pixel[3] : 255;
            return pixel;
        },
        translucent);
}

CGImage flatPicture(int width, int height, Rgba color, bool translucent)
{
    return makePicture(
        width, height, [color](int, int) { return color; }, translucent);
}

CGImage gradientPicture(int width, int height, bool translucent)
{
    return makePicture(
        width, height,
        [&](int x, int y) {
            const std::uint8_t alpha = translucent ? ramp(width - 1 - x, width) : std::uint8_t{255};
            return Rgba{ramp(x, width), ramp(y, height), ramp(x + y, width + height - 1), alpha};
        },
        translucent);
}

std::vector<CGImage> usualPictures()
{
    std::vector<CGImage> pictures;
    for (const bool translucent : {false, true}) {
        const std::uint8_t alpha = translucent ? 128 : 255;
        pictures.push_back(flatPicture(5, 3, {200, 100, 50, alpha}, translucent));
        pictures.push_back(gradientPicture(37, 23, translucent));
        pictures.push_back(noisePicture(61, 35, translucent));
        pictures.push_back(noisePicture(1, 9, translucent, 2));
        pictures.push_back(flatPicture(1, 1, {10, 20, 240, alpha}, translucent));
    }
    return pictures;
}

CGImage evaluated(const CGImage& input, const Formula& formula)
{
    const Texture texture(input);
    return makePicture(
        input.width(), input.height(),
        [&](int x, int y) {
            const Color color = formula(texture, (x + 0.5) / input.width(), (y + 0.5) / input.height());
            return Rgba{toByte(color[0]), toByte(color[1]), toByte(color[2]), toByte(color[3])};
        },
        true);
}

Difference largestDifference(const CGImage& one, const CGImage& other)
{
    Difference found{-1, 0, 0};
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const int here = difference(pixelAt(one, x, y), pixelAt(other, x, y));
            if (here > found.largest)
                found = {here, x, y};
        }
    }
    return found;
}

void expectPicture(const CGImage& got, const CGImage& wanted, int tolerance)
{
    ASSERT_TRUE(got) << "no picture came out";
    ASSERT_EQ(got.size(), wanted.size());
    const Difference found = largestDifference(got, wanted);
    EXPECT_LE(found.largest, tolerance) << got.width() << " x " << got.height() << " pixels, at " << found.x << ", "
                                        << found.y << ": " << testing::PrintToString(pixelAt(got, found.x, found.y))
                                        << ", wanted " << testing::PrintToString(pixelAt(wanted, found.x, found.y));
}

void expectFilter(GPUImageOutput& filter, const CGImage& input, const Formula& formula, int tolerance)
{
    expectPicture(filter.newCGImageByFilteringCGImage(input), evaluated(input, formula), tolerance);
}

CGImage filteredPair(GPUImageTwoInputFilter& filter, const CGImage& first, const CGImage& second)
{
    const auto source = std::make_shared<GPUImagePicture>(second);
    // The filter as a target, held together with its whole.
    source->addTarget(std::shared_ptr<GPUImageInput>(filter.shared_from_this(), &filter), 1);
    source->processImage();
    CGImage result = filter.newCGImageByFilteringCGImage(first);
    source->removeAllTargets();
    return result;
}

void expectTwoInputFilter(GPUImageTwoInputFilter& filter, const CGImage& first, const CGImage& second,
                          const TwoInputFormula& formula, int tolerance)
{
    const Texture overlay(second);
    const auto ofFirst = [&](const Texture& in, double u, double v) { return formula(in, overlay, u, v); };
    expectPicture(filteredPair(filter, first, second), evaluated(first, ofFirst), tolerance);
}

CGImage turned(const CGImage& input, GPUImageRotationMode rotation)
{
    const int right = input.width() - 1;
    const int bottom = input.height() - 1;
    const auto source = [&](int x, int y) {
        switch (rotation) {
        case kGPUImageRotateLeft:
            return pixelAt(input, right - y, x);
        case kGPUImageRotateRight:
            return pixelAt(input, y, bottom - x);
        case kGPUImageFlipVertical:
            return pixelAt(input, x, bottom - y);
        case kGPUImageFlipHorizontal:
            return pixelAt(input, right - x, y);
        case kGPUImageRotateRightFlipVertical:
            return pixelAt(input, y, x);
        case kGPUImageRotateRightFlipHorizontal:
            return pixelAt(input, right - y, bottom - x);
        case kGPUImageRotate180:
            return pixelAt(input, right - x, bottom - y);
        case kGPUImageNoRotation:
            break;
        }
        return pixelAt(input, x, y);
    };
    const bool swap = rotation == kGPUImageRotateLeft || rotation == kGPUImageRotateRight ||
                      rotation == kGPUImageRotateRightFlipVertical || rotation == kGPUImageRotateRightFlipHorizontal;
    return swap ? makePicture(input.height(), input.width(), source, input.hasAlpha())
                : makePicture(input.width(), input.height(), source, input.hasAlpha());
}

void expectFilterInAllRotations(const std::function<std::shared_ptr<GPUImageFilter>()>& make, const CGImage& input,
                                const Formula& formula, int tolerance)
{
    for (int number = 0; number < 8; ++number) {
        SCOPED_TRACE("rotation " + std::to_string(number));
        const auto rotation = static_cast<GPUImageRotationMode>(number);
        const std::shared_ptr<GPUImageFilter> filter = make();
        runSynchronouslyOnVideoProcessingQueue([&] { filter->setInputRotation(rotation, 0); });
        expectPicture(filter->newCGImageByFilteringCGImage(input), evaluated(turned(input, rotation), formula),
                      tolerance);
    }
}

void requireContext()
{
    const Outcome outcome = GPUImageContext::availability();
    ASSERT_TRUE(outcome) << outcome.error().subject << ": " << outcome.error().cause;
}

} // namespace lamina::test
