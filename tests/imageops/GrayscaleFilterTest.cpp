#include "FilterSupport.h"
#include "imageops/ImageFilters.h"
#include "platform/image/pixels/PixelConversion.h"

namespace {

using namespace lamina;
using test::Bytes;

TEST(Grayscale, WeighsColoursAsTheEyeDoes)
{
    constexpr std::array<Bytes, 6> kColors{{{0, 0, 0, 255},
                                            {255, 255, 255, 255},
                                            {77, 77, 77, 255},
                                            {255, 0, 0, 255},
                                            {0, 255, 0, 255},
                                            {0, 0, 255, 255}}};
    const UIImage source = test::picture(6, 1, bitmapInfo(CGImageAlphaInfo::NoneSkipLast),
                                         [&](int x, int) { return kColors[static_cast<std::size_t>(x)]; });
    const CGImage gray = grayscale(source).cgImage();
    ASSERT_EQ(gray.size(), (IntSize{6, 1}));
    EXPECT_EQ(gray.bitsPerPixel(), 8);
    EXPECT_EQ(gray.bytesPerRow(), 18u);
    const int wanted[] = {0, 255, 77, 54, 182, 18}; // 0.2126, 0.7152 and 0.0722 of 255
    for (int x = 0; x < 6; ++x)
        EXPECT_NEAR(gray.row(0)[x], wanted[x], 1) << x;
}

TEST(Grayscale, KeepsWhatIsClearClearAndDarkensEdges)
{
    const UIImage source = test::picture(3, 1, bitmapInfo(CGImageAlphaInfo::Last), [](int x, int) {
        return Bytes{200, 200, 200, static_cast<std::uint8_t>(x == 0 ? 0 : x == 1 ? 128 : 255)};
    });
    const UIImage gray = grayscale(source);
    ASSERT_NE(gray.cgImage().mask(), nullptr);
    EXPECT_EQ(gray.cgImage().mask()->bytesPerRow(), 3u);
    const CGImage shown = convertedToSRGB(gray.cgImage());
    const int alphas[] = {0, 128, 255};
    const int values[] = {0, 100, 200}; // over black: 200 · 128 / 255
    for (int x = 0; x < 3; ++x) {
        EXPECT_EQ(shown.row(0)[4 * x + 3], alphas[x]) << x;
        EXPECT_NEAR(gray.cgImage().row(0)[x], values[x], 1) << x;
    }
}

TEST(Grayscale, IsTheSameOnEveryProcessorAndClearsTheSpareRoom)
{
    const std::vector<UIImage> sources = test::noisePictures();
    test::onEveryProcessor([&](const std::string& processor) {
        for (const UIImage& source : sources) {
            const std::vector<Bytes> drawn = test::drawnPlainly(source);
            const CGImage gray = grayscale(source).cgImage();
            const auto width = static_cast<std::size_t>(gray.width());
            int wrong = 0;
            for (std::size_t i = 0; i < drawn.size(); ++i) {
                const auto [alpha, red, green, blue] = drawn[i];
                const int a = alpha;
                const auto straight = [a](int c) { return a == 0 ? 0 : std::min(255L, std::lround(c * 255.0 / a)); };
                const long luma = (2126 * straight(red) + 7152 * straight(green) + 722 * straight(blue) + 5000) / 10000;
                const auto y = static_cast<int>(i / width);
                wrong += gray.row(y)[i % width] != std::lround(static_cast<double>(luma * a) / 255) ? 1 : 0;
                wrong += gray.mask()->row(y)[i % width] != a ? 1 : 0;
            }
            for (std::size_t i = width; i < gray.bytesPerRow(); ++i)
                wrong += gray.row(0)[i] != 0 ? 1 : 0;
            EXPECT_EQ(wrong, 0) << processor << ", " << width << " wide";
        }
    });
}

TEST(Grayscale, CountsPixelsAndKeepsScaleAndOrientation)
{
    const UIImage stored = test::noise(20, 15, bitmapInfo(CGImageAlphaInfo::NoneSkipLast));
    const UIImage gray = grayscale(UIImage(stored.cgImage(), 3, UIImageOrientation::Right));
    EXPECT_EQ(gray.cgImage().size(), (IntSize{15, 20}));
    EXPECT_EQ(gray.scale(), 3);
    EXPECT_EQ(gray.imageOrientation(), UIImageOrientation::Right);
}

} // namespace
