#include "PNGFile.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/pixels/ColorConversion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <png.h>
#include <random>

namespace lamina::test {
namespace {

/// What libpng reads from a file, in the format it is stored in.
struct ReadBack {
    unsigned format = 0;
    int width = 0;
    int height = 0;
    Bytes pixels;
};

ReadBack readBack(const Bytes& file)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    ReadBack result;
    if (!png_image_begin_read_from_memory(&image, file.data(), file.size())) {
        ADD_FAILURE() << image.message;
        return result;
    }
    EXPECT_EQ(image.warning_or_error, 0u) << image.message; // it warns of a profile that it does not like
    result = {image.format, static_cast<int>(image.width), static_cast<int>(image.height),
              Bytes(PNG_IMAGE_SIZE(image))};
    EXPECT_TRUE(png_image_finish_read(&image, nullptr, result.pixels.data(), 0, nullptr)) << image.message;
    return result;
}

CGImage picture(int width, int height, CGImageAlphaInfo alpha, const std::function<int(int x, int y, int c)>& value)
{
    const CGImageLayout layout = CGImageLayout::rgba(width, height, alpha);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    for (int y = 0; y < height; ++y)
        for (int i = 0; i < 4 * width; ++i)
            buffer.data()[static_cast<std::size_t>(y * 4 * width + i)] =
                static_cast<std::uint8_t>(value(i / 4, y, i % 4));
    return CGImage::make(layout, std::move(buffer));
}

int ramp(int x, int y, int c)
{
    return c == 3 ? 9 : (x * (c + 1) + y * 3) % 256;
}

Bytes encoded(const CGImage& image)
{
    const auto file = encodePNG(image, "picture");
    EXPECT_TRUE(file) << file.error().cause;
    return *file;
}

// Contents that lead to each of the filters, and sizes around those that its loops take at once.
TEST(PNGEncoder, KeepsEveryPixel)
{
    std::mt19937 random(7);
    const std::function<int(int, int, int)> contents[] = {
        ramp,
        [&](int, int, int) { return static_cast<int>(random() % 256); },
        [](int x, int y, int) { return (x / 5 + y / 3) % 2 * 255; },
        [](int x, int y, int) { return (x * x + y * y) / 8 % 256; },
        [](int, int, int) { return 200; },
    };
    for (const auto& content : contents)
        for (const IntSize size : {IntSize{1, 1}, IntSize{3, 17}, IntSize{64, 5}, IntSize{301, 260}}) {
            SCOPED_TRACE(testing::Message() << size.width << " x " << size.height);
            const CGImage opaque = picture(size.width, size.height, CGImageAlphaInfo::NoneSkipLast, content);
            const ReadBack rgb = readBack(encoded(opaque));
            ASSERT_EQ(rgb.format, unsigned{PNG_FORMAT_RGB});
            ASSERT_EQ((IntSize{rgb.width, rgb.height}), size);
            int wrong = 0;
            for (std::size_t i = 0; i < rgb.pixels.size(); ++i)
                wrong += rgb.pixels[i] != opaque.bytes()[i / 3 * 4 + i % 3];
            EXPECT_EQ(wrong, 0);
            const auto translucent = [&](int x, int y, int c) { return c == 3 && x == 0 ? 128 : content(x, y, c); };
            const CGImage clear = picture(size.width, size.height, CGImageAlphaInfo::Last, translucent);
            const ReadBack rgba = readBack(encoded(clear));
            ASSERT_EQ(rgba.format, unsigned{PNG_FORMAT_RGBA});
            EXPECT_TRUE(std::ranges::equal(rgba.pixels, clear.bytes()));
        }
}

TEST(PNGEncoder, StoresNoMoreThanThePictureHas)
{
    const auto opaque = [](int x, int y, int c) { return c == 3 ? 255 : ramp(x, y, c); };
    EXPECT_EQ(readBack(encoded(picture(9, 9, CGImageAlphaInfo::Last, opaque))).format, unsigned{PNG_FORMAT_RGB});

    PixelBuffer values = PixelBuffer::allocate(6);
    std::copy_n(Bytes{0, 50, 100, 150, 200, 255}.data(), 6, values.data());
    const CGImage grey = CGImage::make(CGImageLayout::gray(3, 2), std::move(values));
    const ReadBack gray = readBack(encoded(grey));
    EXPECT_EQ(gray.format, unsigned{PNG_FORMAT_GRAY});
    EXPECT_TRUE(std::ranges::equal(gray.pixels, grey.bytes()));
    const ReadBack masked = readBack(encoded(grey.withMask(grey)));
    EXPECT_EQ(masked.format, unsigned{PNG_FORMAT_GA});
    EXPECT_EQ((Bytes(masked.pixels.begin() + 2, masked.pixels.begin() + 4)), (Bytes{50, 205}));

    // Premultiplied pixels are stored straight: 100 of 128 is 199.
    const auto half = [](int, int, int c) { return c == 3 ? 128 : 100; };
    const ReadBack straight = readBack(encoded(picture(1, 1, CGImageAlphaInfo::PremultipliedLast, half)));
    EXPECT_EQ(straight.pixels, (Bytes{199, 199, 199, 128}));
}

TEST(PNGEncoder, GivesTheSameBytesHoweverTheWorkIsSplit)
{
    const CGImage image = picture(700, 500, CGImageAlphaInfo::NoneSkipLast, ramp);
    const Bytes one = encoded(image);
    WorkerPool::shared().setConcurrency(1);
    const Bytes two = encoded(image);
    WorkerPool::shared().setConcurrency(0);
    EXPECT_EQ(one, two);
}

TEST(PNGEncoder, EmbedsAProfileThatIsPlainSRGB)
{
    const auto chunks = chunksOf(encoded(picture(2, 2, CGImageAlphaInfo::NoneSkipLast, ramp)));
    const auto chunk = std::ranges::find(chunks, "iCCP", &PNGChunk::type);
    ASSERT_NE(chunk, chunks.end());
    const Bytes& data = chunk->data;
    ASSERT_EQ(std::string(data.begin(), data.begin() + 4), "sRGB");
    libdeflate_decompressor* decompressor = libdeflate_alloc_decompressor();
    Bytes profile(100000);
    std::size_t size = 0;
    EXPECT_EQ(libdeflate_zlib_decompress(decompressor, data.data() + 6, data.size() - 6, profile.data(), profile.size(),
                                         &size),
              LIBDEFLATE_SUCCESS);
    libdeflate_free_decompressor(decompressor);
    profile.resize(size);
    EXPECT_TRUE(std::ranges::equal(profile, sRGBProfile()));
    EXPECT_EQ(big32(profile, 0), profile.size());
    EXPECT_EQ(profileModel(profile), CGColorSpace::Model::RGB);
    EXPECT_EQ(profile[8], 2); // the version that every reader knows
    // Primaries of sRGB adapted to D50, as IEC 61966-2-1 has them: rXYZ = 0.4360, 0.2225, 0.0139.
    const std::string_view text(reinterpret_cast<const char*>(profile.data()), profile.size());
    const std::size_t entry = text.find("rXYZ");
    ASSERT_NE(entry, std::string_view::npos);
    const std::size_t at = big32(profile, entry + 4) + 8;
    const double expected[] = {0.4360, 0.2225, 0.0139};
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(static_cast<double>(big32(profile, at + 4 * i)) / 65536, expected[i], 0.0005);
}

TEST(PNGEncoder, NamesTheSubjectWhenThereIsNothingToEncode)
{
    const auto file = encodePNG(CGImage(), "out.png");
    ASSERT_FALSE(file);
    EXPECT_EQ(file.error().subject, "out.png");
}

} // namespace
} // namespace lamina::test
