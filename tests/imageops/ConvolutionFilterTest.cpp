#include "FilterSupport.h"
#include "imageops/ImageFilters.h"

#include <limits>

namespace {

using namespace lamina;
using test::Bytes;

using Weights = std::vector<std::vector<int>>;

struct Family {
    const char* name;
    UIImage (*filter)(const UIImage&, long);
    Weights weights;
    int divisor;
};

const Family kFamily[] = {
    {"emboss", embossWithBias, {{-2, 0, 0}, {0, 1, 0}, {0, 0, 2}}, 1},
    {"sharpen", sharpenWithBias, {{-1, -1, -1}, {-1, 9, -1}, {-1, -1, -1}}, 1},
    {"unsharpen", unsharpenWithBias, {{-1, -1, -1}, {-1, 17, -1}, {-1, -1, -1}}, 9},
    {"blur",
     gaussianBlurWithBias,
     {{1, 4, 6, 4, 1}, {4, 16, 24, 16, 4}, {6, 24, 36, 24, 6}, {4, 16, 24, 16, 4}, {1, 4, 6, 4, 1}},
     256},
};
const Weights kEdges{{-1, -1, -1}, {-1, 8, -1}, {-1, -1, -1}};

/// Calls `put(out, channel, sum)` for every channel whose kernel lies within the picture, and `atBorder(out)` for
/// other pixels.
template <class Put, class AtBorder>
std::vector<Bytes> convolvedPlainly(const UIImage& image, const Weights& weights, const Put& put,
                                    const AtBorder& atBorder)
{
    const std::vector<Bytes> in = test::drawnPlainly(image);
    std::vector<Bytes> out = in;
    const int width = image.cgImage().width();
    const int height = image.cgImage().height();
    const int radius = static_cast<int>(weights.size()) / 2;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            Bytes& pixel = out[static_cast<std::size_t>(y * width + x)];
            if (x < radius || y < radius || x + radius >= width || y + radius >= height) {
                atBorder(pixel);
                continue;
            }
            for (std::size_t c = 0; c < 4; ++c) {
                int sum = 0;
                for (int j = -radius; j <= radius; ++j) {
                    for (int i = -radius; i <= radius; ++i)
                        sum += weights[static_cast<std::size_t>(j + radius)][static_cast<std::size_t>(i + radius)] *
                               in[static_cast<std::size_t>((y + j) * width + x + i)][c];
                }
                put(pixel, c, sum);
            }
        }
    }
    return out;
}

std::uint8_t clip(int value)
{
    return static_cast<std::uint8_t>(std::clamp(value, 0, 255));
}

TEST(Convolutions, AreTheSumsOfTheirKernelsOnEveryProcessor)
{
    const std::vector<UIImage> pictures = test::noisePictures();
    test::onEveryProcessor([&](const std::string& processor) {
        for (const UIImage& image : pictures) {
            for (const Family& family : kFamily) {
                for (const int bias : {0, 60, -200}) {
                    const auto put = [&](Bytes& out, std::size_t c, int sum) {
                        const bool skipped = c == 0 && !image.cgImage().hasAlpha();
                        out[c] = skipped ? 255 : clip(sum / family.divisor + bias);
                    };
                    test::expectBytes(family.filter(image, bias),
                                      convolvedPlainly(image, family.weights, put, [](Bytes&) {}),
                                      processor + ": " + family.name + " with " + std::to_string(bias));
                }
            }
        }
    });
}

TEST(Convolutions, EdgesLieWithinABlackBorderAndLeaveAlpha)
{
    const std::vector<UIImage> pictures = test::noisePictures();
    const auto put = [](Bytes& out, std::size_t c, int sum) { out[c] = c == 0 ? out[0] : clip(sum); };
    const auto blacken = [](Bytes& out) { out = {out[0], 0, 0, 0}; };
    test::onEveryProcessor([&](const std::string& processor) {
        for (const UIImage& image : pictures)
            test::expectBytes(edgeDetectionWithBias(image, 99), convolvedPlainly(image, kEdges, put, blacken),
                              processor);
    });
}

TEST(Convolutions, EmbossIsLitFromTheBottomRight)
{
    const UIImage dot = test::picture(5, 5, bitmapInfo(CGImageAlphaInfo::NoneSkipLast), [](int x, int y) {
        const auto v = static_cast<std::uint8_t>(x == 2 && y == 2 ? 60 : 20);
        return Bytes{v, v, v, 255};
    });
    const UIImage result = embossWithBias(dot, 10);
    EXPECT_EQ(test::bytesAt(result, 1, 1)[1], 110); // 20 - 2 · 20 + 2 · 60 + 10
    EXPECT_EQ(test::bytesAt(result, 2, 2)[1], 70);
    EXPECT_EQ(test::bytesAt(result, 3, 3)[1], 0); // 20 - 2 · 60 + 2 · 20 + 10
    EXPECT_EQ(test::bytesAt(result, 1, 3)[1], 30);
    EXPECT_EQ(test::bytesAt(result, 0, 2)[1], 20);
}

TEST(Convolutions, KeepFlatColoursAndTakeAnyBias)
{
    const UIImage flat = test::picture(40, 9, bitmapInfo(CGImageAlphaInfo::PremultipliedLast), [](int, int) {
        return Bytes{10, 90, 130, 200};
    });
    for (const Family& family : kFamily) {
        test::expectBytes(family.filter(flat, 0), test::drawnPlainly(flat), family.name);
        const UIImage light = family.filter(flat, std::numeric_limits<long>::max());
        const UIImage dark = family.filter(flat, std::numeric_limits<long>::min());
        EXPECT_EQ(test::bytesAt(light, 20, 4), (Bytes{255, 255, 255, 255})) << family.name;
        EXPECT_EQ(test::bytesAt(dark, 20, 4), (Bytes{0, 0, 0, 0})) << family.name;
        EXPECT_EQ(test::bytesAt(light, 0, 4), (Bytes{200, 10, 90, 130})) << family.name;
    }
}

} // namespace
