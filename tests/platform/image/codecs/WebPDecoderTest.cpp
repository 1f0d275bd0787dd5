#include "DecodedPictures.h"

#include <gtest/gtest.h>

namespace lamina::test {
namespace {

Bytes chunk(const char* name, const Bytes& payload)
{
    Bytes bytes(name, name + 4);
    append32(bytes, static_cast<std::uint32_t>(payload.size()));
    append(bytes, payload);
    if (payload.size() % 2 != 0)
        bytes.push_back(0);
    return bytes;
}

Bytes riff(std::initializer_list<Bytes> chunks)
{
    Bytes body{'W', 'E', 'B', 'P'};
    for (const Bytes& bytes : chunks)
        append(body, bytes);
    return chunk("RIFF", body);
}

void append24(Bytes& bytes, int value)
{
    append16(bytes, static_cast<std::uint32_t>(value));
    bytes.push_back(static_cast<std::uint8_t>(value >> 16));
}

/// An animation on a canvas of 100 x 60, whose only frame is the lossless flag of 64 x 48 at (x, y), which are even.
Bytes animation(int x, int y)
{
    const Bytes still = dataFile("webp-lossless.webp");
    const Bytes picture(still.begin() + 12, still.end());
    Bytes canvas{0x02, 0, 0, 0};
    append24(canvas, 100 - 1);
    append24(canvas, 60 - 1);
    Bytes frame;
    for (const int value : {x / 2, y / 2, 64 - 1, 48 - 1, 40})
        append24(frame, value);
    frame.push_back(0);
    append(frame, picture);
    // The background is opaque white; the frame's surroundings are clear all the same.
    return riff({chunk("VP8X", canvas), chunk("ANIM", {255, 255, 255, 255, 0, 0}), chunk("ANMF", frame)});
}

TEST(WebPDecoder, ComposesTheFirstFrameOnItsCanvas)
{
    const Result<UIImage> decoded = decode(kWebPDecoder, animation(20, 10));
    EXPECT_EQ(causeOf(decoded), "");
    const CGImage image = pictureOf(decoded).cgImage();
    ASSERT_EQ(image.size(), (IntSize{100, 60}));
    EXPECT_EQ(pixelAt(image, 19, 30)[3], 0);
    EXPECT_EQ(pixelAt(image, 50, 9)[3], 0);
    EXPECT_EQ(pixelAt(image, 20, 10), (Pixel{220, 40, 30, 255}));
    EXPECT_EQ(pixelAt(image, 83, 57), (Pixel{240, 220, 40, 255}));
    EXPECT_EQ(pixelAt(image, 84, 57)[3], 0);
    EXPECT_EQ(causeOf(decode(kWebPDecoder, animation(38, 10))), cause::kDamaged);
}

TEST(WebPDecoder, ReducesOpaquePicturesToTheVerySize)
{
    for (const char* name : {"webp-lossless.webp", "webp-lossy.webp"}) {
        SCOPED_TRACE(name);
        const Bytes bytes = dataFile(name);
        EXPECT_EQ(pictureOf(decode(kWebPDecoder, bytes, {.shortSide = 31})).cgImage().size(), (IntSize{42, 31}));
        EXPECT_EQ(pictureOf(decode(kWebPDecoder, bytes, {.shortSide = 48})).cgImage().size(), (IntSize{64, 48}));
        EXPECT_EQ(pictureOf(decode(kWebPDecoder, bytes, {.shortSide = 500})).cgImage().size(), (IntSize{64, 48}));
    }
    // The codec would mix the hidden colours of clear pixels into their neighbours.
    const UIImage translucent =
        pictureOf(decode(kWebPDecoder, dataFile("webp-lossless-alpha.webp"), {.shortSide = 31}));
    EXPECT_EQ(translucent.cgImage().size(), (IntSize{64, 48}));
}

TEST(WebPDecoder, RefusesHeadersThatLie)
{
    // 16384 x 16384 lossless, and a canvas of 2^24 pixels a side.
    const Bytes lossless = riff({chunk("VP8L", {0x2F, 0xFF, 0xFF, 0xFF, 0x0F, 0, 0, 0, 0, 0})});
    EXPECT_TRUE(causeOf(decode(kWebPDecoder, lossless)).starts_with(cause::kTooLarge));
    const Bytes canvas =
        riff({chunk("VP8X", {2, 0, 0, 0, 255, 255, 255, 255, 255, 255}), chunk("VP8L", {0x2F, 0, 0, 0, 0})});
    EXPECT_NE(causeOf(decode(kWebPDecoder, canvas)), "");
    EXPECT_NE(causeOf(decode(kWebPDecoder, riff({chunk("VP8 ", {})}))), "");
}

} // namespace
} // namespace lamina::test
