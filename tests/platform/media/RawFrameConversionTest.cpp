#include "platform/media/capture/RawFrameConversion_p.h"

#include "TestCameraNode.h"
#include "TestPictures.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/media/CVPixelBuffer.h"
#include "platform/media/PixelBufferImage.h"
#include "platform/media/capture/FramePool_p.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace lamina::test {

namespace {

constexpr CVPixelFormat kFormats[] = {CVPixelFormat::BGRA, CVPixelFormat::BiPlanar420FullRange,
                                      CVPixelFormat::BiPlanar420VideoRange};

/// Smooth, so that it survives chroma at half the sides; grey for a camera without colours.
CGImage smoothPicture(IntSize size, bool isGray)
{
    return makePicture(size.width, size.height, [&](int x, int y) -> Rgba {
        const auto level = [](int value) { return static_cast<std::uint8_t>(value); };
        const Rgba color{level(20 + x), level(200 - y), level(60 + y / 2), 255};
        return isGray ? Rgba{color[0], color[0], color[0], 255} : color;
    });
}

/// The bytes as a frame; one block where planes follow one another, as they do without padding.
RawFrame frameOf(const std::vector<std::uint8_t>& bytes, IntSize size, RawEncoding encoding)
{
    RawFrame frame;
    frame.encoding = encoding;
    frame.size = size;
    const auto pixels = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
    const std::size_t chroma = (bytes.size() - std::min(pixels, bytes.size())) / 2;
    frame.planes[0] = {bytes.data(), bytes.size(), 0};
    if (encoding == RawEncoding::NV12 || encoding == RawEncoding::I420)
        frame.planes[1] = {bytes.data() + pixels, bytes.size() - pixels, 0};
    if (encoding == RawEncoding::I420)
        frame.planes[2] = {bytes.data() + pixels + chroma, chroma, 0};
    return frame;
}

int worstDifference(const CGImage& one, const CGImage& other)
{
    int worst = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < 4 * one.width(); ++x)
            worst = std::max(worst, std::abs(one.row(y)[x] - other.row(y)[x]));
    }
    return worst;
}

TEST(RawFrameConversion, EveryEncodingBecomesEveryFormat)
{
    RawFrameConverter converter;
    for (std::size_t i = 0; i < kRawEncodingNames.size(); ++i) {
        const auto encoding = static_cast<RawEncoding>(i);
        for (const IntSize size : {IntSize{64, 48}, IntSize{131, 33}, IntSize{1, 1}}) {
            const CGImage picture = smoothPicture(size, encoding == RawEncoding::GRAY8);
            const auto bytes = rawBytesOf(picture, encoding);
            for (const CVPixelFormat format : kFormats) {
                const std::string what = std::string(kRawEncodingNames[i]) + ", " + std::to_string(size.width) + "x" +
                                         std::to_string(size.height) + ", to " +
                                         std::to_string(static_cast<unsigned>(format));
                const auto frame = converter.converted(frameOf(bytes, size, encoding), format);
                ASSERT_TRUE(frame) << what;
                EXPECT_EQ(frame->pixelFormat(), format) << what;
                const bool isPlanar = format != CVPixelFormat::BGRA;
                EXPECT_EQ(frame->planes()[0].bytesPerRow, static_cast<std::size_t>((isPlanar ? 1 : 4) * size.width));
                EXPECT_LE(worstDifference(imageOfPixelBuffer(*frame), picture), encoding == RawEncoding::MJPG ? 8 : 4)
                    << what;
            }
        }
    }
}

TEST(RawFrameConversion, MatrixRangeAndPaddingAreHeeded)
{
    RawFrameConverter converter;
    // Y 128, Cb 90, Cr 240 in rows of 6 bytes for 2 pixels, by BT.709 in full range.
    const std::vector<std::uint8_t> bytes{128, 90, 128, 240, 1, 2, 128, 90, 128, 240};
    RawFrame frame;
    frame.encoding = RawEncoding::YUY2;
    frame.size = {2, 2};
    frame.planes[0] = {bytes.data(), bytes.size(), 6};
    frame.matrix = YCbCrMatrix::ITU_R_709_2;
    frame.isFullRange = true;
    const auto pixels = converter.converted(frame, CVPixelFormat::BGRA);
    ASSERT_TRUE(pixels);
    const std::uint8_t* const last = pixels->planes()[0].bytes + 12;
    EXPECT_NEAR(last[0], 128 + 1.8556 * -38, 1);
    EXPECT_NEAR(last[2], std::min(128 + 1.5748 * 112, 255.0), 1);
    const auto planes = converter.converted(frame, CVPixelFormat::BiPlanar420VideoRange);
    ASSERT_TRUE(planes);
    EXPECT_EQ(planes->matrix(), YCbCrMatrix::ITU_R_709_2);
    EXPECT_NEAR(planes->planes()[0].bytes[3], 16 + 128 * 219.0 / 255, 1);
    EXPECT_NEAR(planes->planes()[1].bytes[1], 128 + 112 * 224.0 / 255, 1);
}

TEST(RawFrameConversion, WhatIsNotThereIsNotRead)
{
    RawFrameConverter converter;
    const IntSize size{64, 48};
    for (std::size_t i = 0; i < kRawEncodingNames.size(); ++i) {
        const auto encoding = static_cast<RawEncoding>(i);
        const auto bytes = rawBytesOf(smoothPicture(size, false), encoding);
        const RawFrame whole = frameOf(bytes, size, encoding);
        const std::size_t left = bytes.size() - (encoding == RawEncoding::MJPG ? bytes.size() / 2 : 1);
        const std::vector<std::uint8_t> cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(left));
        std::vector<RawFrame> wrong{frameOf(cut, size, encoding), whole, whole, whole};
        wrong[1].planes = {};
        wrong[2].planes[0].size = 3;
        if (encoding != RawEncoding::MJPG) {
            for (const IntSize other : {IntSize{0, 0}, IntSize{-1, 48}, IntSize{100'000, 100'000}, IntSize{64, 500}}) {
                wrong[3].size = other;
                wrong.push_back(wrong[3]);
            }
            wrong[3] = whole;
            wrong[3].planes[0].bytesPerRow = 7;
            wrong.push_back(whole);
            wrong.back().planes[0].bytesPerRow = ~std::size_t{0} / 2;
        } else {
            wrong.pop_back();
        }
        for (std::size_t k = 0; k < wrong.size(); ++k)
            EXPECT_FALSE(converter.converted(wrong[k], CVPixelFormat::BGRA)) << kRawEncodingNames[i] << ", case " << k;
    }
}

TEST(FramePool, GivesMemoryAgainThatNobodyUses)
{
    FramePool pool;
    std::set<const void*> places;
    const auto kept = pool.make({640, 480}, CVPixelFormat::BGRA);
    for (int i = 0; i < 10; ++i)
        places.insert(pool.make({640, 480}, CVPixelFormat::BGRA)->planes()[0].bytes);
    EXPECT_EQ(places.size(), 1u);
    EXPECT_EQ(places.count(kept->planes()[0].bytes), 0u);
}

} // namespace

} // namespace lamina::test
