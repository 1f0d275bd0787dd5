#include "DecodedPictures.h"
#include "TestPictures.h"

#include "platform/base/Causes.h"
#include "platform/image/codecs/PictureBuilder_p.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/image/pixels/UprightPicture.h"

#include <gtest/gtest.h>
#include <webp/decode.h>
#include <webp/encode.h>

#include <atomic>
#include <chrono>
#include <ctime>
#include <functional>
#include <thread>

namespace lamina::test {
namespace {

using Steady = std::chrono::steady_clock;

constexpr int kWidth = 4000;
constexpr int kHeight = 3000;

const CGImage& largePicture()
{
    static const CGImage picture = solidPicture(kWidth, kHeight, {10, 200, 30, 255}, CGImageAlphaInfo::NoneSkipLast);
    return picture;
}

Bytes encoded(std::string_view type)
{
    return *encodePicture(largePicture(), *pictureFormatForUTI(type), "picture");
}

Bytes webP()
{
    const CGImage& picture = largePicture();
    std::uint8_t* file = nullptr;
    const std::size_t size = WebPEncodeRGBA(picture.row(0), picture.width(), picture.height(),
                                            static_cast<int>(picture.bytesPerRow()), 20, &file);
    Bytes bytes(file, file + size);
    WebPFree(file);
    return bytes;
}

/// Black pixels of 16 bits, in seven passes.
Bytes interlacedPNG()
{
    std::size_t size = 0;
    for (const auto& [left, top, across, down] :
         {std::array{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4}, {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}}) {
        const int columns = (kWidth - left + across - 1) / across;
        const int rows = (kHeight - top + down - 1) / down;
        size += static_cast<std::size_t>(rows) * (1 + 6 * static_cast<std::size_t>(columns));
    }
    Bytes file{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    Bytes header(13);
    storeBig32(header.data(), kWidth);
    storeBig32(&header[4], kHeight);
    header[8] = 16;
    header[9] = 2;
    header[12] = 1;
    append(file, pngChunk("IHDR", header));
    append(file, pngChunk("IDAT", packed(Bytes(size))));
    append(file, pngChunk("IEND", {}));
    return file;
}

struct Case {
    const char* name;
    std::function<Bytes()> file;
};

class Cancelling : public testing::TestWithParam<Case> {};

TEST_P(Cancelling, StopsInTheMidst)
{
    const Bytes file = GetParam().file();
    const Steady::time_point start = Steady::now();
    EXPECT_EQ(causeOf(file), "");
    const Steady::duration whole = Steady::now() - start;
    std::atomic<bool> cancelled = false;
    Steady::time_point told;
    std::thread other([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(3));
        told = Steady::now();
        cancelled = true;
    });
    const std::string cause = causeOf(file, {.cancelled = &cancelled});
    const Steady::time_point end = Steady::now();
    other.join();
    EXPECT_EQ(cause, cause::kCancelled);
    // Most of the rest isn't read; a busy machine may take its while to go on with either thread.
    EXPECT_LT(end - told, whole * 3 / 4 + std::chrono::milliseconds(200));
}

INSTANTIATE_TEST_SUITE_P(Formats, Cancelling,
                         testing::Values(Case{"JPEG", [] { return encoded(kUTTypeJPEG); }},
                                         Case{"PNG", [] { return encoded(kUTTypePNG); }},
                                         Case{"InterlacedPNG", interlacedPNG}, Case{"WebP", webP},
                                         Case{"GIF", [] { return encoded(kUTTypeGIF); }},
                                         Case{"BMP", [] { return encoded(kUTTypeBMP); }},
                                         Case{"TIFF", [] { return encoded(kUTTypeTIFF); }}),
                         [](const auto& tested) { return tested.param.name; });

/// A lossless picture that is all header: two transforms and a table of codes, a bit for each 4 x 4 pixels.
Bytes headerOfWebP(unsigned side)
{
    constexpr unsigned kTwoGreens = 0x1111013; // a bit each; all else is nought
    const unsigned blocks = (side + 3) / 4 * ((side + 3) / 4);
    Bytes bits{0x2F};
    std::size_t used = 8;
    const auto put = [&](unsigned value, unsigned count, unsigned noughts = 0) {
        bits.resize((used + count + noughts) / 8 + 1);
        for (unsigned i = 0; i < count; ++i, ++used)
            bits[used / 8] = static_cast<std::uint8_t>(bits[used / 8] | (value >> i & 1) << used % 8);
        used += noughts;
    };
    put(side - 1, 14);
    put(side - 1, 14, 4);
    for (const unsigned transform : {0b001, 0b011}) {
        put(transform, 7);
        put(kTwoGreens, 28, blocks);
    }
    put(0b100, 7);
    put(kTwoGreens, 28, blocks);
    put(0x11111, 20, 256);
    bits.resize(bits.size() + bits.size() % 2);
    const auto length = [](std::size_t value) {
        Bytes bytes(4);
        for (std::size_t i = 0; i < 4; ++i)
            bytes[i] = static_cast<std::uint8_t>(value >> 8 * i);
        return bytes;
    };
    Bytes file{'R', 'I', 'F', 'F'};
    append(file, length(12 + bits.size()));
    append(file, Bytes{'W', 'E', 'B', 'P', 'V', 'P', '8', 'L'});
    append(file, length(bits.size()));
    append(file, bits);
    return file;
}

// Piece by piece the codec would begin it anew some thousand times.
TEST(Cancelling, DoesNotMakeAHeaderLong)
{
    const Bytes file = headerOfWebP(4000);
    std::clock_t start = std::clock();
    int width = 0;
    int height = 0;
    WebPFree(WebPDecodeRGBA(file.data(), file.size(), &width, &height));
    const std::clock_t atOnce = std::clock() - start;
    EXPECT_EQ(width, 4000);
    start = std::clock();
    EXPECT_EQ(causeOf(file), "");
    EXPECT_LT(std::clock() - start, 8 * atOnce); // some 3 times, and what a debug build takes for its rows
}

TEST(Cancelling, EndsWhatIsDoneToAllPixels)
{
    const std::atomic<bool> cancelled = true;
    const DecodeOptions options{.cancelled = &cancelled};
    EXPECT_FALSE(PictureBuilder(50, 50, options).fill({1, 2, 3, 4}));
    for (const bool translucent : {false, true}) {
        const auto finished = PictureBuilder(50, 50, options).finish(translucent, {}, UIImageOrientation::Up);
        ASSERT_FALSE(finished);
        EXPECT_EQ(finished.error().cause, cause::kCancelled);
    }
    const UIImage lying(chartPicture(64, 48), 1, UIImageOrientation::Right);
    EXPECT_FALSE(upright(lying, &cancelled));
    EXPECT_TRUE(upright(lying, nullptr));
}

} // namespace
} // namespace lamina::test
