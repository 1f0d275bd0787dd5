#include "PNGFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace lamina::test {
namespace {

/// One row of pixels without a filter.
Bytes rowPNG(int width, int bits, int colorType, const Bytes& pixels, const std::vector<PNGChunk>& before = {})
{
    Bytes row{0};
    append(row, pixels);
    std::vector<PNGChunk> chunks{pngHeader(width, 1, bits, colorType)};
    chunks.insert(chunks.end(), before.begin(), before.end());
    chunks.push_back({"IDAT", deflated(row)});
    chunks.push_back({"IEND", {}});
    return pngOf(chunks);
}

constexpr int kGrey = 0;
constexpr int kRGB = 2;

PNGChunk gamma(std::size_t value)
{
    PNGChunk chunk{"gAMA", {}};
    appendBig32(chunk.data, value);
    return chunk;
}

TEST(PNGDecoder, RoundsSixteenBitsToTheNearest)
{
    // 128 and 129 of 65535 are 0.498 and 0.502 of 255, 65406 and 65407 are 254.498 and 254.502; the high byte alone
    // would give 0, 0, 255, 255.
    const Bytes file = rowPNG(4, 16, kGrey, {0x00, 0x80, 0x00, 0x81, 0xFF, 0x7E, 0xFF, 0x7F});
    const int expected[] = {0, 1, 254, 255};
    const std::vector<Pixel> row = firstRow(decode(kPNGDecoder, file));
    ASSERT_EQ(row.size(), 4u);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(row[i][0], expected[i]) << i;
}

TEST(PNGDecoder, BelievesStatementsAboutColorWhereTheyMatter)
{
    const Bytes pixel{128, 128, 128};
    const auto shown = [&](const std::vector<PNGChunk>& chunks) {
        return firstRow(decode(kPNGDecoder, rowPNG(1, 8, kRGB, pixel, chunks))).at(0)[0];
    };
    EXPECT_EQ(shown({gamma(45455)}), 128);       // how sRGB was written before it had a chunk
    EXPECT_NEAR(shown({gamma(100000)}), 188, 1); // linear light
    EXPECT_EQ(shown({gamma(100000), {"sRGB", {0}}}), 128);
    EXPECT_EQ(shown({gamma(0)}), 128);
    EXPECT_EQ(shown({{"iCCP", {'x', 0, 0, 1, 2, 3}}}), 128);
}

TEST(PNGDecoder, TellsDamageThatMattersFromDamageThatDoesNot)
{
    const Bytes whole = dataFile("png-rgb8.png");
    const Result<UIImage> shown = decode(kPNGDecoder, whole);
    const auto same = [&](const Bytes& file) {
        const CGImage image = pictureOf(decode(kPNGDecoder, file)).cgImage();
        return image && std::ranges::equal(image.bytes(), pictureOf(shown).cgImage().bytes());
    };
    const auto chunks = chunksOf(whole);
    const auto withExtra = [&](const PNGChunk& extra) {
        auto more = chunks;
        more.insert(more.begin() + 1, extra);
        return pngOf(more);
    };
    for (const PNGChunk& extra :
         {PNGChunk{"tEXt", Bytes(300, 'x')}, PNGChunk{"iCCP", Bytes(50, 7)}, PNGChunk{"eXIf", Bytes(9, 9)},
          PNGChunk{"gAMA", {1}}, PNGChunk{"tIME", Bytes(3, 1)}}) {
        Bytes file = withExtra(extra);
        EXPECT_TRUE(same(file)) << extra.type;
        file[8 + 25 + 8 + extra.data.size()] ^= 1; // its checksum
        EXPECT_TRUE(same(file)) << extra.type;
    }
    // A byte of the pixels or of their checksum: never a picture that is not the whole one.
    const std::size_t pixels = whole.size() - 12 - chunks[chunks.size() - 2].data.size() - 4;
    for (std::size_t at = pixels; at < whole.size() - 12; at += 3) {
        Bytes file = whole;
        file[at] ^= 0x10;
        EXPECT_EQ(causeOf(decode(kPNGDecoder, file)), cause::kDamaged) << at;
    }
}

TEST(PNGDecoder, FindsTheOrientationBehindThePixels)
{
    auto chunks = chunksOf(dataFile("png-exif-6.png"));
    const auto exif = std::ranges::find(chunks, "eXIf", &PNGChunk::type);
    ASSERT_NE(exif, chunks.end());
    std::rotate(exif, exif + 1, chunks.end() - 1);
    ASSERT_EQ(chunks[chunks.size() - 2].type, "eXIf");
    EXPECT_EQ(pictureOf(decode(kPNGDecoder, pngOf(chunks))).imageOrientation(), UIImageOrientation::Right);
}

/// The megabytes by which `body` raises the most memory that a process of its own has held; at least 255 when it
/// crashes.
template <class Body>
int megabytesTakenBy(Body body)
{
    const pid_t child = ::fork();
    if (child == 0) {
        const auto peak = [] {
            rusage usage{};
            ::getrusage(RUSAGE_SELF, &usage);
            return usage.ru_maxrss / 1024;
        };
        const long before = peak();
        body();
        ::_exit(static_cast<int>(std::min(254L, peak() - before)));
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 255;
}

TEST(PNGDecoder, PassesOverChunksThatSwellWhenUnpacked)
{
    Bytes profile{'x', 0, 0};
    append(profile, deflated(Bytes(std::size_t{100} << 20, 0)));
    Bytes text{'x', 0};
    append(text, std::span(profile).subspan(2));
    const Bytes file = rowPNG(1, 8, kRGB, {1, 2, 3}, {{"iCCP", profile}, {"zTXt", text}});
    EXPECT_EQ(firstRow(decode(kPNGDecoder, file)).at(0), (Pixel{1, 2, 3, 255}));
    EXPECT_LT(megabytesTakenBy([&] { (void)decode(kPNGDecoder, file); }), 40);
}

TEST(PNGDecoder, RefusesClaimsThatItsDataCannotCarry)
{
    const auto claims = [](int width, int height) {
        return pngOf({pngHeader(width, height, 1, kGrey), {"IDAT", deflated(Bytes(100, 0))}, {"IEND", {}}});
    };
    for (const int shortSide : {0, 100}) {
        EXPECT_EQ(causeOf(decode(kPNGDecoder, claims(60000, 60000), {.shortSide = shortSide})),
                  "the picture is too large (60000 x 60000 pixels)");
        EXPECT_EQ(causeOf(decode(kPNGDecoder, claims(15000, 15000), {.shortSide = shortSide})),
                  "the picture is too large (15000 x 15000 pixels)");
        EXPECT_TRUE(causeOf(decode(kPNGDecoder, claims(399'000'000, 1), {.shortSide = shortSide}))
                        .starts_with(cause::kTooLarge));
    }
    EXPECT_EQ(causeOf(decode(kPNGDecoder, claims(0, 5))), cause::kDamaged);
}

} // namespace
} // namespace lamina::test
