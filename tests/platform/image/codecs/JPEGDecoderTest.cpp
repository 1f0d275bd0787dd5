#include "DecodedPictures.h"
#include "TestPictures.h"

#include "platform/image/codecs/PictureDecoder_p.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <jpeglib.h>
#include <utility>

namespace lamina::test {
namespace {

struct Recipe {
    int width = 64;
    int height = 48;
    int components = 3;
    bool progressive = false;
    bool adobeMarker = true;                ///< for four components
    std::vector<jpeg_scan_info> scans = {}; ///< in place of the usual ones
    std::function<int(int x, int y, int c)> value = [](int x, int y, int c) { return (x * 3 + y * 2 + c * 50) % 256; };
};

Bytes makeJPEG(const Recipe& recipe)
{
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* memory = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &memory, &size);
    info.image_width = static_cast<JDIMENSION>(recipe.width);
    info.image_height = static_cast<JDIMENSION>(recipe.height);
    info.input_components = recipe.components;
    info.in_color_space = recipe.components == 4 ? JCS_CMYK : recipe.components == 3 ? JCS_RGB : JCS_GRAYSCALE;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 95, TRUE);
    if (recipe.progressive)
        jpeg_simple_progression(&info);
    if (!recipe.scans.empty()) {
        info.scan_info = recipe.scans.data();
        info.num_scans = static_cast<int>(recipe.scans.size());
    }
    if (!recipe.adobeMarker)
        info.write_Adobe_marker = FALSE;
    jpeg_start_compress(&info, TRUE);
    Bytes row(static_cast<std::size_t>(recipe.width * recipe.components));
    for (int y = 0; y < recipe.height; ++y) {
        for (int i = 0; i < static_cast<int>(row.size()); ++i)
            row[static_cast<std::size_t>(i)] =
                static_cast<std::uint8_t>(recipe.value(i / recipe.components, y, i % recipe.components));
        JSAMPROW rows = row.data();
        jpeg_write_scanlines(&info, &rows, 1);
    }
    jpeg_finish_compress(&info);
    Bytes bytes(memory, memory + size);
    jpeg_destroy_compress(&info);
    std::free(memory);
    return bytes;
}

constexpr std::uint8_t kScan[] = {0xFF, 0xDA};
constexpr std::uint8_t kEnd[] = {0xFF, 0xD9};

/// Where the last scan begins.
Bytes::const_iterator lastScan(const Bytes& file)
{
    return std::find_end(file.begin(), file.end(), std::begin(kScan), std::end(kScan));
}

// As some programs close what they could not fetch.
TEST(JPEGDecoder, RefusesAFileThatIsCutAndEnded)
{
    const Bytes whole = makeJPEG({.width = 40, .height = 24});
    const auto first = static_cast<std::size_t>(lastScan(whole) - whole.begin()) + 10;
    for (std::size_t length = first; length <= whole.size() - 12; ++length) {
        Bytes ended(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        append(ended, kEnd);
        ASSERT_FALSE(shown(ended)) << length;
    }
}

TEST(JPEGDecoder, RefusesScansThatLeaveAComponentOut)
{
    std::vector<jpeg_scan_info> scans;
    for (int c = 0; c < 3; ++c)
        scans.push_back({1, {c, 0, 0, 0}, 0, 63, 0, 0});
    const Bytes whole = makeJPEG({.scans = scans});
    EXPECT_TRUE(shown(whole));
    Bytes two(whole.begin(), lastScan(whole));
    append(two, kEnd);
    EXPECT_EQ(causeOf(two), cause::kDamaged);
}

TEST(JPEGDecoder, ReducesToTheFewestEighthsThatKeepTheShortSide)
{
    // A slow ramp, so that every reduction shows the same colours.
    const Bytes ramp = makeJPEG({.width = 400, .height = 300, .value = [](int x, int y, int c) {
                                     return c == 0 ? x * 255 / 399 : c == 1 ? y * 255 / 299 : 100;
                                 }});
    for (const auto& [shortSide, size] : {std::pair{1, IntSize{50, 38}},
                                          {38, {50, 38}},
                                          {39, {100, 75}},
                                          {75, {100, 75}},
                                          {76, {150, 113}},
                                          {150, {200, 150}},
                                          {151, {400, 300}},
                                          {300, {400, 300}},
                                          {5000, {400, 300}}}) {
        SCOPED_TRACE(shortSide);
        const CGImage image = shown(ramp, {.shortSide = shortSide}).cgImage();
        ASSERT_EQ(image.size(), size);
        EXPECT_EQ(image.alphaInfo(), CGImageAlphaInfo::NoneSkipLast);
        EXPECT_TRUE(imagesMatch(image, rampPicture(size.width, size.height, 100), 4));
    }
    const Bytes large = makeJPEG({.width = 4200, .height = 4100, .value = [](int, int, int) { return 90; }});
    EXPECT_EQ(shown(large, {.shortSide = 3000}).cgImage().size(), (IntSize{3150, 3075})); // not of moderate size
}

TEST(JPEGDecoder, StopsAtEndlessScansAndEndlessSearches)
{
    const Bytes whole =
        makeJPEG({.width = 2000, .height = 2000, .progressive = true, .value = [](int, int, int) { return 90; }});
    const Bytes scan(lastScan(whole), whole.end() - 2);
    Bytes hostile(whole.begin(), whole.end() - 2);
    for (int i = 0; i < 20000; ++i)
        append(hostile, scan);
    append(hostile, kEnd);
    Bytes zeros{0xFF, 0xD8, 0xFF};
    zeros.resize(std::size_t{200} << 20);
    for (const Bytes* bytes : {&hostile, &zeros}) {
        const std::clock_t start = std::clock();
        EXPECT_EQ(causeOf(*bytes), cause::kDamaged);
        EXPECT_LT(std::clock() - start, 3 * CLOCKS_PER_SEC); // of the processor's time; a second without sanitizers
    }
}

TEST(JPEGDecoder, ReadsInksAsStoredWithoutTheMarkThatTurnsThem)
{
    constexpr std::array<int, 4> kInks{51, 0, 255, 127};
    for (const bool marked : {false, true}) {
        const Bytes file = makeJPEG({.components = 4, .adobeMarker = marked, .value = [&](int, int, int c) {
                                         const int ink = kInks[static_cast<std::size_t>(c)];
                                         return marked ? 255 - ink : ink;
                                     }});
        // (1 - 51/255)(1 - 127/255) · 255
        EXPECT_TRUE(pixelMatches(shown(file).cgImage(), 30, 20, {102, 128, 0, 255}, 2));
    }
}

} // namespace
} // namespace lamina::test
