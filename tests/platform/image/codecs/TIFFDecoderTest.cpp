#include "DecodedPictures.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <map>

namespace lamina::test {
namespace {

enum Tag : std::uint16_t {
    kWidth = 256,
    kHeight = 257,
    kBits = 258,
    kCompression = 259,
    kPhotometric = 262,
    kStripOffsets = 273,
    kOrientation = 274,
    kSamples = 277,
    kRowsPerStrip = 278,
    kStripSizes = 279,
    kPlanar = 284,
    kPalette = 320,
    kTileWidth = 322,
    kTileHeight = 323,
    kTileOffsets = 324,
    kTileSizes = 325,
    kExtraSamples = 338,
    kSampleFormat = 339,
};

/// A little-endian page of one row (unless told otherwise), uncompressed. All tags are written as 32-bit or 16-bit
/// numbers.
struct TIFFPage {
    std::uint32_t width = 1;
    std::uint32_t height = 1;
    std::uint32_t bits = 8;
    std::uint32_t photometric = 1;
    std::uint32_t samples = 1;
    std::map<std::uint16_t, std::vector<std::uint32_t>> tags = {}; ///< more, or others
    std::vector<Bytes> blocks = {};                                ///< strips or tiles

    Bytes bytes() const
    {
        Bytes file{'I', 'I', 42, 0, 0, 0, 0, 0};
        std::vector<std::uint32_t> places;
        std::vector<std::uint32_t> sizes;
        for (const Bytes& block : blocks) {
            places.push_back(static_cast<std::uint32_t>(file.size()));
            sizes.push_back(static_cast<std::uint32_t>(block.size()));
            append(file, block);
            file.resize((file.size() + 1) / 2 * 2);
        }
        const bool tiled = tags.contains(kTileWidth);
        std::map<std::uint16_t, std::vector<std::uint32_t>> all = tags;
        all.insert({{kWidth, {width}},
                    {kHeight, {height}},
                    {kBits, std::vector(samples, bits)},
                    {kCompression, {1}},
                    {kPhotometric, {photometric}},
                    {kSamples, {samples}},
                    {tiled ? kTileOffsets : kStripOffsets, places},
                    {tiled ? kTileSizes : kStripSizes, sizes}});
        Bytes directory;
        append16(directory, static_cast<std::uint32_t>(all.size()));
        for (const auto& [tag, values] : all) {
            const bool isLong = tag == kWidth || tag == kHeight || tag == kTileWidth || tag == kTileHeight ||
                                tag == kStripOffsets || tag == kStripSizes || tag == kTileOffsets || tag == kTileSizes;
            Bytes data;
            for (const std::uint32_t value : values)
                isLong ? append32(data, value) : append16(data, value);
            append16(directory, tag);
            append16(directory, isLong ? 4 : 3);
            append32(directory, static_cast<std::uint32_t>(values.size()));
            if (data.size() > 4) {
                append32(directory, static_cast<std::uint32_t>(file.size()));
                append(file, data);
            } else {
                data.resize(4);
                append(directory, data);
            }
        }
        append32(directory, 0);
        file[4] = static_cast<std::uint8_t>(file.size());
        file[5] = static_cast<std::uint8_t>(file.size() >> 8);
        append(file, directory);
        return file;
    }
};

Bytes shorts(std::initializer_list<std::uint32_t> values)
{
    Bytes bytes;
    for (const std::uint32_t value : values)
        append16(bytes, value);
    return bytes;
}

Bytes floats(std::initializer_list<float> values)
{
    Bytes bytes;
    for (const float value : values)
        append32(bytes, std::bit_cast<std::uint32_t>(value));
    return bytes;
}

std::vector<Pixel> greys(std::initializer_list<int> values)
{
    std::vector<Pixel> pixels;
    for (const int value : values)
        pixels.push_back({value, value, value, 255});
    return pixels;
}

struct Row {
    const char* name;
    TIFFPage page;
    std::vector<Pixel> pixels;
};

class TIFFRows : public testing::TestWithParam<Row> {};

TEST_P(TIFFRows, AreConvertedToTheNearest)
{
    const Result<UIImage> decoded = decode(kTIFFDecoder, GetParam().page.bytes());
    EXPECT_EQ(causeOf(decoded), "");
    EXPECT_EQ(firstRow(decoded), GetParam().pixels);
}

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

INSTANTIATE_TEST_SUITE_P(
    Kinds, TIFFRows,
    testing::Values(
        // v · 255 / 65535: 128 gives 0.498, 129 gives 0.502, 65406 gives 254.498, 65407 gives 254.502
        Row{"Grey16",
            {.width = 6, .bits = 16, .blocks = {shorts({0, 128, 129, 65406, 65407, 65535})}},
            greys({0, 0, 1, 254, 255, 255})},
        Row{"Grey1WhiteIsZero",
            {.width = 4, .bits = 1, .photometric = 0, .blocks = {{0b01100000}}},
            greys({255, 0, 0, 255})},
        Row{"Grey2", {.width = 4, .bits = 2, .blocks = {{0b00011011}}}, greys({0, 85, 170, 255})},
        // 12 bits: 2048 · 255 / 4095 = 127.53
        Row{"Grey12", {.width = 2, .bits = 12, .blocks = {{0x80, 0x0F, 0xFF}}}, greys({128, 255})},
        Row{"Grey32", {.width = 2, .bits = 32, .blocks = {{0, 0, 0, 0x80, 255, 255, 255, 255}}}, greys({128, 255})},
        Row{"FloatsAreClamped",
            {.width = 6,
             .bits = 32,
             .tags = {{kSampleFormat, {3}}},
             .blocks = {floats({-1, 0.5f, 1, 7, kNaN, kInfinity})}},
            greys({0, 128, 255, 255, 0, 255})},
        Row{"Rgb16",
            {.bits = 16, .photometric = 2, .samples = 3, .blocks = {shorts({129, 32896, 65535})}},
            {{1, 128, 255, 255}}},
        // 299 / 1000 of 255 is 76.2; rounded to 8 bits before the division it would be 1 / 4.
        Row{"PremultipliedInFullDepth",
            {.bits = 16,
             .photometric = 2,
             .samples = 4,
             .tags = {{kExtraSamples, {1}}},
             .blocks = {shorts({299, 1000, 5000, 1000})}},
            {{76, 255, 255, 4}}},
        Row{"StraightAlphaBehindAnotherSample",
            {.photometric = 2, .samples = 5, .tags = {{kExtraSamples, {0, 2}}}, .blocks = {{1, 2, 3, 99, 77}}},
            {{1, 2, 3, 77}}},
        Row{"ExtraSampleOfNoMeaning",
            {.photometric = 2, .samples = 4, .tags = {{kExtraSamples, {0}}}, .blocks = {{1, 2, 3, 77}}},
            {{1, 2, 3, 255}}},
        Row{"GreyAlpha", {.samples = 2, .tags = {{kExtraSamples, {2}}}, .blocks = {{9, 200}}}, {{9, 9, 9, 200}}},
        // (255 - 55)(255 - 51) / 255 = 160, (255 - 155)(204) / 255 = 80
        Row{"Cmyk", {.photometric = 5, .samples = 4, .blocks = {{55, 155, 255, 51}}}, {{160, 80, 0, 255}}},
        Row{"PaletteOf16Bits",
            {.width = 2,
             .bits = 1,
             .photometric = 3,
             .tags = {{kPalette, {0x1234, 0xFF00, 0, 0x80FF, 0xFFFF, 1}}},
             .blocks = {{0x40}}},
            {{0x12, 0, 0xFF, 255}, {0xFF, 0x80, 0, 255}}},
        Row{"PaletteOf8Bits",
            {.width = 2, .bits = 1, .photometric = 3, .tags = {{kPalette, {1, 2, 3, 4, 5, 255}}}, .blocks = {{0x40}}},
            {{1, 3, 5, 255}, {2, 4, 255, 255}}},
        // L* = 50 is 119 in sRGB, a* = b* = 0
        Row{"Lab", {.photometric = 8, .samples = 3, .blocks = {{128, 0, 0}}}, {{119, 119, 119, 255}}},
        // (200, 100, 50) and (60, 120, 210) by the matrices of sRGB's primaries and Bradford's adaptation to D50
        Row{"Lab16",
            {.width = 2,
             .bits = 16,
             .photometric = 8,
             .samples = 3,
             .blocks = {shorts({35531, 9780, 11840, 32734, 951, 51931})}},
            {{200, 100, 50, 255}, {60, 120, 210, 255}}},
        Row{"LabWithShiftedZero",
            {.width = 2,
             .bits = 16,
             .photometric = 9,
             .samples = 3,
             .blocks = {shorts({35531, 42548, 44608, 32734, 33719, 19163})}},
            {{200, 100, 50, 255}, {60, 120, 210, 255}}},
        // BT.601: R = Y + 1.402 (Cr - 128) = 100 + 56.1, G = 100 - 0.714 · 40 = 71.4, B = 100
        Row{"YCbCr",
            {.photometric = 6, .samples = 3, .tags = {{530, {1, 1}}}, .blocks = {{100, 128, 168}}},
            {{156, 71, 100, 255}}}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(TIFFDecoder, PutsTilesOfSeparatePlanesTogether)
{
    // 20 x 18 in tiles of 16 x 16: in each plane a value for the tile, and one more in the pixel (17, 16).
    std::vector<Bytes> tiles;
    for (int plane = 0; plane < 4; ++plane) {
        for (int tile = 0; tile < 4; ++tile)
            tiles.emplace_back(256, static_cast<std::uint8_t>(50 * plane + 10 * tile));
        tiles.back()[1] = static_cast<std::uint8_t>(240 + plane);
    }
    const TIFFPage page{
        .width = 20,
        .height = 18,
        .photometric = 2,
        .samples = 4,
        .tags = {{kPlanar, {2}}, {kTileWidth, {16}}, {kTileHeight, {16}}, {kExtraSamples, {2}}, {kOrientation, {6}}},
        .blocks = tiles};
    const UIImage image = pictureOf(decode(kTIFFDecoder, page.bytes()));
    EXPECT_EQ(image.imageOrientation(), UIImageOrientation::Right);
    EXPECT_EQ(image.cgImage().size(), (IntSize{20, 18}));
    EXPECT_EQ(pixelAt(image.cgImage(), 15, 15), (Pixel{0, 50, 100, 150}));
    EXPECT_EQ(pixelAt(image.cgImage(), 16, 15), (Pixel{10, 60, 110, 160}));
    EXPECT_EQ(pixelAt(image.cgImage(), 15, 16), (Pixel{20, 70, 120, 170}));
    EXPECT_EQ(pixelAt(image.cgImage(), 16, 17), (Pixel{30, 80, 130, 180}));
    EXPECT_EQ(pixelAt(image.cgImage(), 17, 16), (Pixel{240, 241, 242, 243}));
}

TEST(TIFFDecoder, ReducesByTheMeanWeightedByAlpha)
{
    // Two rows of three pixels, grey and alpha; the third column makes a cell of its own.
    const TIFFPage page{.width = 3,
                        .height = 2,
                        .samples = 2,
                        .tags = {{kExtraSamples, {2}}},
                        .blocks = {{100, 255, 200, 0, 10, 255, 50, 255, 250, 0, 30, 255}}};
    const Result<UIImage> decoded = decode(kTIFFDecoder, page.bytes(), {.shortSide = 1});
    // Mean of 100 and 50, the clear ones don't count; alpha 2 · 255 / 4.
    EXPECT_EQ(firstRow(decoded), (std::vector<Pixel>{{75, 75, 75, 128}, {20, 20, 20, 255}}));
}

TEST(TIFFDecoder, RefusesHeadersThatLie)
{
    const auto cause = [](const TIFFPage& page) { return causeOf(decode(kTIFFDecoder, page.bytes())); };
    const std::vector<Bytes> some{Bytes(64, 1)};
    EXPECT_NE(cause({.width = 0xFFFFFFFF, .height = 0xFFFFFFFF, .blocks = some}), "");
    EXPECT_NE(cause({.width = 0x7FFFFFFF, .height = 0x7FFFFFFF, .blocks = some}), "");
    EXPECT_TRUE(
        cause({.tags = {{kTileWidth, {40000}}, {kTileHeight, {40000}}}, .blocks = some}).starts_with(cause::kTooLarge));
    EXPECT_NE(cause({.samples = 0, .blocks = some}), "");
    EXPECT_NE(cause({.bits = 16, .tags = {{kSampleFormat, {3}}}, .blocks = some}), "");
    // 100 rows announced, data for 6 of them.
    EXPECT_NE(cause({.width = 10, .height = 100, .blocks = some}), "");
    // Fax and JPEG data that stop short: their codecs would fill up the rest.
    EXPECT_NE(cause({.width = 64,
                     .height = 64,
                     .bits = 1,
                     .photometric = 0,
                     .tags = {{kCompression, {4}}},
                     .blocks = {{0x26, 0xA0}}}),
              "");
    const Bytes loop{'I', 'I', 42, 0, 8, 0, 0, 0, 0, 0, 8, 0, 0, 0};
    EXPECT_NE(causeOf(decode(kTIFFDecoder, loop)), "");
}

} // namespace
} // namespace lamina::test
