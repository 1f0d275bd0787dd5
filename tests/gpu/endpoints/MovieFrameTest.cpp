#include "GLCalls.h"
#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/endpoints/GPUImageMovie.h"
#include "platform/base/CGGeometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

// Frames that are handed to a movie, without a file.

namespace lamina::test {
namespace {

using MovieFrameTest = GraphFixture;
using Triple = std::array<double, 3>;

/// ITU-R BT.601 and BT.709: the weights of red and blue, and the levels.
struct Colours {
    YCbCrMatrix tag;
    CVPixelFormat format;
    double red;
    double blue;

    bool isFull() const { return format == CVPixelFormat::BiPlanar420FullRange; }
    Triple stored(const Triple& rgb) const
    {
        const double y = red * rgb[0] + (1 - red - blue) * rgb[1] + blue * rgb[2];
        const double cb = (rgb[2] - y) / (2 * (1 - blue));
        const double cr = (rgb[0] - y) / (2 * (1 - red));
        const double steps = isFull() ? 255 : 224;
        const auto level = [](double value) { return std::clamp(std::round(value), 0.0, 255.0); };
        return {level(isFull() ? 255 * y : 16 + 219 * y), level(128 + steps * cb), level(128 + steps * cr)};
    }
    Triple shown(const Triple& stored) const
    {
        const double steps = isFull() ? 255 : 224;
        const double y = isFull() ? stored[0] / 255 : (stored[0] - 16) / 219;
        const double r = y + 2 * (1 - red) * (stored[2] - 128) / steps;
        const double b = y + 2 * (1 - blue) * (stored[1] - 128) / steps;
        const auto level = [](double value) { return 255 * std::clamp(value, 0.0, 1.0); };
        return {level(r), level((y - red * r - blue * b) / (1 - red - blue)), level(b)};
    }
};

constexpr int kBar = 8; // pixels
constexpr Triple kBars[] = {{1, 1, 1},   {.75, .75, 0}, {0, .75, .75}, {0, .75, 0}, {.75, 0, .75},
                            {.75, 0, 0}, {0, 0, .75},   {0, 0, 0},     {1, 0, 0},   {.2, .4, .6}};

std::shared_ptr<CVPixelBuffer> bars(const Colours& colours)
{
    const auto frame = CVPixelBuffer::make({kBar * int(std::size(kBars)), 6}, colours.format);
    frame->setMatrix(colours.tag);
    const auto& luma = frame->planes()[0];
    const auto& chroma = frame->planes()[1];
    for (int x = 0; x < luma.size.width; ++x) {
        const Triple stored = colours.stored(kBars[x / kBar]);
        for (int y = 0; y < luma.size.height; ++y) {
            luma.bytes[y * luma.bytesPerRow + x] = static_cast<std::uint8_t>(stored[0]);
            std::uint8_t* pair = chroma.bytes + y / 2 * chroma.bytesPerRow + 2 * (x / 2);
            pair[0] = static_cast<std::uint8_t>(stored[1]);
            pair[1] = static_cast<std::uint8_t>(stored[2]);
        }
    }
    return frame;
}

TEST_F(MovieFrameTest, PlanesBecomeTheColoursOfTheirStandard)
{
    constexpr auto kVideo = CVPixelFormat::BiPlanar420VideoRange;
    constexpr auto kFull = CVPixelFormat::BiPlanar420FullRange;
    const Colours cases[] = {{YCbCrMatrix::ITU_R_601_4, kVideo, 0.299, 0.114},
                             {YCbCrMatrix::None, kFull, 0.299, 0.114},
                             {YCbCrMatrix::ITU_R_709_2, kVideo, 0.2126, 0.0722},
                             {YCbCrMatrix::ITU_R_709_2, kFull, 0.2126, 0.0722}};
    const auto movie = std::make_shared<GPUImageMovie>(std::string());
    const auto consumer = consumerOf(*movie);
    for (const Colours& colours : cases) {
        movie->processMovieFrame(bars(colours), second(1));
        for (int bar = 0; bar < int(std::size(kBars)); ++bar) {
            const Triple wanted = colours.shown(colours.stored(kBars[bar]));
            const Rgba got = pixelAt(consumer->last().pixels, kBar * bar + kBar / 2, 2);
            for (std::size_t c = 0; c < 3; ++c)
                EXPECT_NEAR(got[c], wanted[c], 2)
                    << "bar " << bar << " component " << c << (colours.isFull() ? " full" : "");
            EXPECT_EQ(got[3], 255);
        }
    }
    EXPECT_EQ(movie->imageBufferHeight(), 6);
    movie->processMovieFrame(CVPixelBuffer::make({8, 6}, kVideo), second(2));
    EXPECT_EQ(movie->imageBufferWidth(), kBar * int(std::size(kBars)));
}

TEST_F(MovieFrameTest, RowsWithGapsArriveAndEachTargetHasItsCount)
{
    const IntSize size{3, 2};
    std::array<std::uint8_t, 40> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(5 * i);
    const auto frame = std::make_shared<CVPixelBuffer>(
        size, CVPixelFormat::BGRA, std::vector<CVPixelBuffer::Plane>{{bytes.data(), 20, size}}, nullptr);
    const auto movie = std::make_shared<GPUImageMovie>(std::string());
    const auto filter = multiplying(1);
    movie->addTarget(filter);
    const auto drawn = consumerOf(*filter);
    const auto direct = consumerOf(*movie);
    movie->processMovieFrame(frame, CMTime::make(7, 30));
    EXPECT_EQ(pixelAt(drawn->last().pixels, 1, 1), (Rgba{130, 125, 120, 135}));
    EXPECT_EQ(direct->last().time, CMTime::make(7, 30));
    EXPECT_EQ(direct->last().size, (CGSize{3, 2}));
    EXPECT_EQ(direct->last().counts, 1U); // its own: the filter has drawn, and the movie gave up its count before
    EXPECT_EQ(idleFramebuffers(), 2U);
}

TEST_F(MovieFrameTest, MakesNoObjectOfTheDeviceOnceWarm)
{
    GPUImageContext::setUsesKernels(false);
    for (const CVPixelFormat format : {CVPixelFormat::BGRA, CVPixelFormat::BiPlanar420VideoRange}) {
        const auto movie = std::make_shared<GPUImageMovie>(std::string());
        const auto filter = multiplying(0.5F);
        movie->addTarget(filter);
        const auto frame = CVPixelBuffer::make({64, 48}, format);
        const auto push = [&](int count) {
            for (int i = 0; i < count; ++i)
                movie->processMovieFrame(frame, second(i));
        };
        push(3);
        const GLCalls warm = glCallsSoFar();
        push(300);
        EXPECT_EQ((glCallsSoFar() - warm).objectsMade(), 0);
    }
    GPUImageContext::setUsesKernels(true);
}

} // namespace
} // namespace lamina::test
