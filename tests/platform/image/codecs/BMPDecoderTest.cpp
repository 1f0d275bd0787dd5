#include "DecodedPictures.h"

#include <gtest/gtest.h>

namespace lamina::test {
namespace {

/// A file of any header up to 56 bytes; masks and alpha mask stand where that header wants them.
struct BMPFile {
    int width = 1;
    int height = 1;
    int bits = 24;
    std::uint32_t compression = 0;
    std::uint32_t headerSize = 40;
    Bytes extra = {}; ///< masks, then palette
    Bytes pixels = {};

    Bytes bytes() const
    {
        Bytes file{'B', 'M'};
        append32(file, 0);
        append32(file, 0);
        append32(file, static_cast<std::uint32_t>(14 + 40 + extra.size()));
        append32(file, headerSize);
        append32(file, static_cast<std::uint32_t>(width));
        append32(file, static_cast<std::uint32_t>(height));
        append16(file, 1);
        append16(file, static_cast<std::uint32_t>(bits));
        append32(file, compression);
        file.resize(54);
        append(file, extra);
        append(file, pixels);
        return file;
    }
};

Bytes words(std::initializer_list<std::uint32_t> values)
{
    Bytes bytes;
    for (const std::uint32_t value : values)
        append32(bytes, value);
    return bytes;
}

const Bytes kBlackRedGreen = words({0x000000, 0xFF0000, 0x00FF00});
constexpr Pixel kBlack{0, 0, 0, 255};
constexpr Pixel kRed{255, 0, 0, 255};
constexpr Pixel kGreen{0, 255, 0, 255};

TEST(BMPDecoder, ScalesMaskedComponentsToTheNearest)
{
    struct Case {
        const char* name;
        BMPFile file;
        std::vector<Pixel> row;
    };
    const Case cases[] = {
        // 5 bits: 16 · 255 / 31 = 131.6
        {"555", {.bits = 16, .pixels = words({16u << 10 | 31u << 5 | 1})}, {{132, 255, 8, 255}}},
        // 10 bits: 512 · 255 / 1023 = 127.6, 1 · 255 / 1023 = 0.2
        {"10 bits",
         {.bits = 32,
          .compression = 3,
          .extra = words({0x3FF00000, 0xFFC00, 0x3FF}),
          .pixels = words({512u << 20 | 1023u << 10 | 1})},
         {{128, 255, 0, 255}}},
        {"24-bit component",
         {.bits = 32, .compression = 3, .extra = words({0xFFFFFF00, 0xFF, 0}), .pixels = words({0x80000040})},
         {{128, 64, 0, 255}}},
        {"4444",
         {.width = 2,
          .bits = 16,
          .compression = 3,
          .headerSize = 56,
          .extra = words({0xF00, 0xF0, 0xF, 0xF000}),
          .pixels = words({0xF0F08123})},
         {{17, 34, 51, 136}, {0, 255, 0, 255}}},
        {"alpha never set",
         {.bits = 32,
          .compression = 3,
          .headerSize = 56,
          .extra = words({0xFF, 0xFF00, 0xFF0000, 0xFF000000}),
          .pixels = words({0x030201})},
         {{1, 2, 3, 255}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(firstRow(decode(kBMPDecoder, c.file.bytes())), c.row);
    }
}

TEST(BMPDecoder, TakesWhatWritersLeaveOut)
{
    // An index beyond the palette is black; the padding of the last row may be missing.
    BMPFile file{.width = 3, .height = -2, .bits = 8, .extra = kBlackRedGreen, .pixels = {1, 2, 200, 0, 1, 1, 1}};
    EXPECT_EQ(firstRow(decode(kBMPDecoder, file.bytes())), (std::vector{kRed, kGreen, kBlack}));
    file.pixels.pop_back();
    EXPECT_EQ(causeOf(decode(kBMPDecoder, file.bytes())), cause::kTruncated);
}

TEST(BMPDecoder, UnpacksRunsFromTheBottomUp)
{
    // Bottom row: two red, literal green red green (padded), end of line. Next row: skip one right and one up, red. No
    // more.
    const Bytes runs{2, 1, 0, 3, 2, 1, 2, 0, 0, 0, 0, 2, 1, 1, 1, 1, 0, 1};
    const BMPFile file{.width = 5, .height = 3, .bits = 8, .compression = 1, .extra = kBlackRedGreen, .pixels = runs};
    const UIImage image = pictureOf(decode(kBMPDecoder, file.bytes()));
    const std::array<std::array<Pixel, 5>, 3> wanted{{{kBlack, kRed, kBlack, kBlack, kBlack},
                                                      {kBlack, kBlack, kBlack, kBlack, kBlack},
                                                      {kRed, kRed, kGreen, kRed, kGreen}}};
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 5; ++x)
            EXPECT_EQ(pixelAt(image.cgImage(), x, y), wanted[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)])
                << x << ", " << y;
    }

    // Nibbles alternate within a run, and a run longer than the row ends at its edge.
    BMPFile nibbles{.width = 3, .bits = 4, .compression = 2, .extra = kBlackRedGreen, .pixels = {9, 0x12, 0, 1}};
    EXPECT_EQ(firstRow(decode(kBMPDecoder, nibbles.bytes())), (std::vector{kRed, kGreen, kRed}));
    nibbles.pixels = {2, 0x12};
    EXPECT_EQ(causeOf(decode(kBMPDecoder, nibbles.bytes())), cause::kTruncated);
}

TEST(BMPDecoder, RefusesHeadersThatLie)
{
    const auto cause = [](const BMPFile& file) { return causeOf(decode(kBMPDecoder, file.bytes())); };
    const Bytes some(64, 1);
    EXPECT_TRUE(cause({.width = 0x7FFFFFFF, .height = 0x7FFFFFFF, .pixels = some}).starts_with(cause::kTooLarge));
    EXPECT_EQ(cause({.height = -0x7FFFFFFF - 1, .pixels = some}), cause::kDamaged);
    EXPECT_EQ(cause({.width = -4, .pixels = some}), cause::kDamaged);
    EXPECT_EQ(cause({.bits = 7, .pixels = some}), cause::kDamaged);
    EXPECT_EQ(cause({.height = -1, .bits = 8, .compression = 1, .pixels = some}), cause::kDamaged);
    EXPECT_EQ(cause({.bits = 32, .compression = 3, .extra = words({0xFF00, 0xFF0, 0xFF}), .pixels = some}),
              cause::kDamaged);
    EXPECT_EQ(cause({.compression = 4, .pixels = some}), "this kind of BMP compression can't be read");
    // Claimed sides whose pixels aren't there cost no memory.
    EXPECT_EQ(cause({.width = 8000, .height = 8000, .pixels = some}), cause::kTruncated);
}

} // namespace
} // namespace lamina::test
