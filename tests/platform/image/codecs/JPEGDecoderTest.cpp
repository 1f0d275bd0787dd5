#include "DecodedPictures.h"
#include "MadeJPEG.h"
#include "TestPictures.h"

#include "platform/image/codecs/PictureDecoder_p.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <utility>

namespace lamina::test {
namespace {

constexpr std::uint8_t kEnd[] = {0xFF, 0xD9};

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

/// What is done to the bytes of a file, which end with the end marker; `scan` is where its first scan's data begin.
using Damage = void (*)(Bytes& file, std::size_t scan);

// The picture keeps its sides and what stands before the damage.
TEST(JPEGDecoder, ShowsDamagedDataAsFarAsTheyGoWhereAWarningIsHeard)
{
    static const auto spoil = [](Bytes& file, std::size_t at) {
        for (std::size_t i = 0; i < 8; ++i) // all bits are set, as in no code
            file[at + i] = i % 2 == 0 ? 0xFF : 0;
    };
    static const auto middleOfScan = [](const Bytes& file, std::size_t scan) {
        std::size_t end = scan;
        while (file[end] != 0xFF || file[end + 1] == 0 ||
               (file[end + 1] & 0xF8) == 0xD0) // zeros and restarts belong to it
            ++end;
        return (scan + end) / 2;
    };
    struct Case {
        const char* what;
        Damage damage;
        std::string cause; ///< with a warning heard; empty: a picture
        bool warns = true;
    };
    const std::vector<Case> cases{
        {"sound", [](Bytes&, std::size_t) {}, "", false},
        {"impossible codes", [](Bytes& file, std::size_t scan) { spoil(file, (scan + file.size()) / 2); }, ""},
        {"a marker amid",
         [](Bytes& file, std::size_t scan) {
             const std::size_t middle = (scan + file.size()) / 2;
             file[middle] = 0xFF;
             file[middle + 1] = 0xC5;
         },
         ""},
        {"a marker amid the first scan, which leads behind the end",
         [](Bytes& file, std::size_t scan) {
             const std::size_t middle = middleOfScan(file, scan);
             constexpr std::uint8_t kMarker[] = {0xFF, 0xE5, 0xFF, 0xFE};
             std::ranges::copy(kMarker, &file[middle]);
         },
         ""},
        {"a marker amid the first scan",
         [](Bytes& file, std::size_t scan) {
             const std::size_t middle = middleOfScan(file, scan);
             file[middle] = 0xFF;
             file[middle + 1] = 0xC5;
         },
         ""},
        {"bytes that no block uses", [](Bytes& file, std::size_t) { file.insert(file.end() - 2, 40, 0x5A); }, ""},
        {"padding", [](Bytes& file, std::size_t) { file.insert(file.end() - 2, 40, 0); }, "", false},
        {"no end", [](Bytes& file, std::size_t) { file.erase(file.end() - 2, file.end()); }, "the file ends too early"},
        {"cut", [](Bytes& file, std::size_t scan) { file.resize((scan + file.size()) / 2); },
         "the file ends too early"},
        {"cut and ended",
         [](Bytes& file, std::size_t scan) {
             file.erase(file.begin() + static_cast<std::ptrdiff_t>(scan + 20), file.end() - 2);
         },
         "the file ends too early"},
        {"impossible codes and cut",
         [](Bytes& file, std::size_t scan) {
             spoil(file, (2 * scan + file.size()) / 3);
             file.resize((scan + 2 * file.size()) / 3);
         },
         "the file ends too early"},
    };
    const auto noise = [](int x, int y, int c) { return (x * x * 7 + y * 31 + x * y * 3 + c * 50) % 256; };
    for (const JPEGRecipe& kind : {JPEGRecipe{}, {.components = 4}, {.progressive = true}, {.restartRows = 1}}) {
        JPEGRecipe recipe = kind;
        recipe.width = recipe.height = 160;
        recipe.value = noise;
        const Bytes whole = makeJPEG(recipe);
        const auto scan = std::search(whole.begin(), whole.end(), std::begin(kScan), std::end(kScan)) - whole.begin();
        for (const Case& damaged : cases) {
            SCOPED_TRACE(std::string(damaged.what) + (recipe.progressive ? ", progressive" : "") +
                         (recipe.restartRows > 0 ? ", restarts" : "") + (recipe.components == 4 ? ", inks" : ""));
            Bytes file = whole;
            damaged.damage(file, static_cast<std::size_t>(scan) + 14);
            for (const int shortSide : {0, 40}) {
                std::string warning;
                const Result<UIImage> read =
                    decodePicture(file, "photo", {.shortSide = shortSide, .warning = &warning});
                EXPECT_EQ(read ? "" : read.error().cause, damaged.cause);
                if (!read)
                    continue;
                EXPECT_EQ(read->pixelSize().width, shortSide > 0 ? shortSide : 160);
                EXPECT_EQ(warning, damaged.warns ? cause::kShownAsFarAsItGoes : "");
                const auto topOf = [](const UIImage& picture) {
                    return picture.cgImage().subImage({0, 0, picture.cgImage().width(), 8});
                };
                EXPECT_TRUE(recipe.progressive ||
                            imagesMatch(topOf(*read), topOf(shown(whole, {.shortSide = shortSide}))));
            }
            EXPECT_TRUE(damaged.warns || shown(file)) << "unheard";
            EXPECT_FALSE(damaged.what == std::string("a marker amid") && shown(file)) << "unheard";
        }
    }
}

// Held packed, the coefficients come to the same picture in less memory.
TEST(JPEGDecoder, PacksCoefficientsThatAreTooMuch)
{
    const auto hills = [](int x, int y, int c) { return (x * y / 900 + x / 3 + c * 40) % 256; };
    for (const int components : {3, 1}) {
        const Bytes file =
            makeJPEG({.width = 1001, .height = 999, .components = components, .progressive = true, .value = hills});
        constexpr std::size_t kPixels = 4 * 1001 * 999;
        const CGImage plain = shown(file).cgImage();
        EXPECT_TRUE(imagesMatch(shown(file, {.memoryLimit = kPixels + 1'000'000}).cgImage(), plain));
        EXPECT_EQ(causeOf(file, {.memoryLimit = kPixels + (components == 3 ? 340'000 : 240'000)}), cause::kTooLarge);
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
