#include "DecodedPictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <jpeglib.h>
#include <string>

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

/// Where the marker FF `code` first stands.
std::size_t marker(const Bytes& bytes, std::uint8_t code)
{
    const std::uint8_t wanted[] = {0xFF, code};
    const auto at = std::search(bytes.begin(), bytes.end(), std::begin(wanted), std::end(wanted));
    EXPECT_NE(at, bytes.end());
    return static_cast<std::size_t>(at - bytes.begin());
}

constexpr std::uint8_t kBaseline = 0xC0;
constexpr std::uint8_t kProgressive = 0xC2;
constexpr std::uint8_t kScan = 0xDA;

/// The same file claiming other sides.
Bytes claiming(Bytes bytes, std::uint8_t frame, int width, int height)
{
    const std::size_t at = marker(bytes, frame) + 5;
    bytes[at] = static_cast<std::uint8_t>(height >> 8);
    bytes[at + 1] = static_cast<std::uint8_t>(height);
    bytes[at + 2] = static_cast<std::uint8_t>(width >> 8);
    bytes[at + 3] = static_cast<std::uint8_t>(width);
    return bytes;
}

Bytes withInserted(Bytes bytes, std::size_t at, const Bytes& more)
{
    bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at), more.begin(), more.end());
    return bytes;
}

bool showsTheSame(const Result<UIImage>& x, const Result<UIImage>& y)
{
    const CGImage first = pictureOf(x).cgImage();
    const CGImage second = pictureOf(y).cgImage();
    return first && second && std::ranges::equal(first.bytes(), second.bytes());
}

TEST(JPEGDecoder, RefusesAFileCutAnywhere)
{
    for (const bool progressive : {false, true}) {
        const Bytes whole = makeJPEG({.width = 40, .height = 24, .progressive = progressive});
        ASSERT_TRUE(pictureOf(decode(kJPEGDecoder, whole)));
        for (std::size_t length = 3; length < whole.size(); ++length) {
            const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
            ASSERT_EQ(causeOf(decode(kJPEGDecoder, cut)), cause::kTruncated) << length << " of " << whole.size();
            if (length < marker(whole, kScan) + 10 || length > whole.size() - 12)
                continue;
            Bytes ended = cut; // as some programs close what they could not fetch
            append(ended, Bytes{0xFF, 0xD9});
            if (const UIImage shown = pictureOf(decode(kJPEGDecoder, ended)); shown && !progressive)
                FAIL() << "shown in part at " << length;
        }
    }
}

TEST(JPEGDecoder, RefusesHalfOfALargePhotoWithoutShowingGrey)
{
    const Bytes whole = makeJPEG({.width = 4000, .height = 3000});
    const Bytes half(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(whole.size() / 2));
    for (const int shortSide : {0, 375})
        EXPECT_EQ(causeOf(decode(kJPEGDecoder, half, {.shortSide = shortSide})), cause::kTruncated);
}

TEST(JPEGDecoder, RefusesScansThatLeaveAComponentOut)
{
    std::vector<jpeg_scan_info> scans;
    for (int c = 0; c < 3; ++c)
        scans.push_back({1, {c, 0, 0, 0}, 0, 63, 0, 0});
    const Bytes whole = makeJPEG({.scans = scans});
    EXPECT_TRUE(pictureOf(decode(kJPEGDecoder, whole)));
    const std::uint8_t wanted[] = {0xFF, kScan};
    const auto last = std::find_end(whole.begin(), whole.end(), std::begin(wanted), std::end(wanted));
    Bytes two(whole.begin(), last);
    append(two, Bytes{0xFF, 0xD9});
    EXPECT_EQ(causeOf(decode(kJPEGDecoder, two)), cause::kDamaged);
}

TEST(JPEGDecoder, ReducesToTheFewestEighthsThatKeepTheShortSide)
{
    // A slow ramp, so that every reduction shows the same colours.
    const Bytes ramp = makeJPEG({.width = 400, .height = 300, .value = [](int x, int y, int c) {
                                     return c == 0 ? x * 255 / 399 : c == 1 ? y * 255 / 299 : 100;
                                 }});
    struct Case {
        int shortSide;
        IntSize size;
    };
    for (const Case& one : {Case{1, {50, 38}}, Case{38, {50, 38}}, Case{39, {100, 75}}, Case{75, {100, 75}},
                            Case{76, {150, 113}}, Case{150, {200, 150}}, Case{151, {400, 300}}, Case{300, {400, 300}},
                            Case{5000, {400, 300}}, Case{0, {400, 300}}}) {
        SCOPED_TRACE(one.shortSide);
        const CGImage image = pictureOf(decode(kJPEGDecoder, ramp, {.shortSide = one.shortSide})).cgImage();
        ASSERT_EQ(image.size(), one.size);
        EXPECT_EQ(image.alphaInfo(), CGImageAlphaInfo::NoneSkipLast);
        for (int i = 1; i < 8; ++i) {
            const int x = image.width() * i / 8;
            const int y = image.height() * i / 8;
            const Pixel got = pixelAt(image, x, y);
            EXPECT_NEAR(got[0], (x + 0.5) / one.size.width * 255, 4);
            EXPECT_NEAR(got[1], (y + 0.5) / one.size.height * 255, 4);
            EXPECT_NEAR(got[2], 100, 4);
            EXPECT_EQ(image.row(y)[4 * static_cast<std::size_t>(x) + 3], 255);
        }
    }
}

TEST(JPEGDecoder, ReducesALargePictureByAnyEighths)
{
    const Bytes large = makeJPEG({.width = 4200, .height = 4100, .value = [](int, int, int) { return 90; }});
    EXPECT_EQ(pictureOf(decode(kJPEGDecoder, large, {.shortSide = 3000})).cgImage().size(), (IntSize{3150, 3075}));
}

TEST(JPEGDecoder, WeighsTheMemoryOfAProgressivePictureBeforeTakingIt)
{
    // 64 million pixels of three whole components: 384 MB of coefficients, however small the result.
    const DecodeOptions reduced{.shortSide = 1000};
    const Bytes progressive = claiming(makeJPEG({.progressive = true}), kProgressive, 12000, 12000);
    EXPECT_EQ(causeOf(decode(kJPEGDecoder, progressive, reduced)), "the picture is too large (12000 x 12000 pixels)");
    const Bytes baseline = makeJPEG({});
    EXPECT_EQ(causeOf(decode(kJPEGDecoder, claiming(baseline, kBaseline, 60000, 60000), reduced)),
              "the picture is too large (60000 x 60000 pixels)");
    // Within the limit once reduced, but no file of one kilobyte holds it.
    EXPECT_TRUE(causeOf(decode(kJPEGDecoder, claiming(baseline, kBaseline, 16000, 16000), reduced))
                    .starts_with(cause::kTooLarge));
    // A claim that can be believed; the data then are not there.
    EXPECT_EQ(causeOf(decode(kJPEGDecoder, claiming(baseline, kBaseline, 4000, 3000), reduced)), cause::kDamaged);
}

TEST(JPEGDecoder, StopsAtEndlessScansAndEndlessSearches)
{
    const Bytes whole =
        makeJPEG({.width = 2000, .height = 2000, .progressive = true, .value = [](int, int, int) { return 90; }});
    const std::uint8_t wanted[] = {0xFF, kScan};
    const auto last = std::find_end(whole.begin(), whole.end(), std::begin(wanted), std::end(wanted));
    const Bytes scan(last, whole.end() - 2);
    Bytes hostile(whole.begin(), whole.end() - 2);
    for (int i = 0; i < 20000; ++i)
        append(hostile, scan);
    append(hostile, Bytes{0xFF, 0xD9});
    Bytes zeros{0xFF, 0xD8, 0xFF};
    zeros.resize(std::size_t{200} << 20);
    for (const Bytes* bytes : {&hostile, &zeros}) {
        const std::clock_t start = std::clock();
        EXPECT_EQ(causeOf(decode(kJPEGDecoder, *bytes)), cause::kDamaged);
        EXPECT_LT(std::clock() - start, 3 * CLOCKS_PER_SEC); // of the processor's time; a second without sanitizers
    }
}

TEST(JPEGDecoder, PassesOverWhatEveryViewerPassesOver)
{
    const Bytes whole = makeJPEG({});
    const Result<UIImage> shown = decode(kJPEGDecoder, whole);
    Bytes versionThree = whole;
    versionThree[marker(whole, 0xE0) + 9] = 3;
    EXPECT_TRUE(showsTheSame(decode(kJPEGDecoder, versionThree), shown));
    const Bytes stray{0, 1, 2, 3};
    EXPECT_TRUE(showsTheSame(decode(kJPEGDecoder, withInserted(whole, marker(whole, kBaseline), stray)), shown));
    EXPECT_TRUE(showsTheSame(decode(kJPEGDecoder, withInserted(whole, whole.size() - 2, stray)), shown));
}

TEST(JPEGDecoder, NamesTheKindsItCannotRead)
{
    const Bytes whole = makeJPEG({});
    const std::size_t frame = marker(whole, kBaseline);
    const auto causeWith = [&](std::size_t offset, std::uint8_t value) {
        Bytes changed = whole;
        changed[frame + offset] = value;
        return causeOf(decode(kJPEGDecoder, changed));
    };
    EXPECT_EQ(causeWith(1, 0xC9), "JPEG pictures with arithmetic coding are not supported");
    EXPECT_EQ(causeWith(4, 12), "JPEG pictures of more than 8 bits are not supported");
    EXPECT_EQ(causeWith(1, 0xC3), "this kind of JPEG is not supported");
}

TEST(JPEGDecoder, ReadsInksAsStoredWithoutTheMarkThatTurnsThem)
{
    const std::array<int, 4> inks{51, 0, 255, 127};
    const Bytes plain = makeJPEG({.components = 4, .adobeMarker = false, .value = [&](int, int, int c) {
                                      return inks[static_cast<std::size_t>(c)];
                                  }});
    const Bytes marked =
        makeJPEG({.components = 4, .value = [&](int, int, int c) { return 255 - inks[static_cast<std::size_t>(c)]; }});
    for (const Bytes* bytes : {&plain, &marked}) {
        const Pixel got = pixelAt(pictureOf(decode(kJPEGDecoder, *bytes)).cgImage(), 30, 20);
        EXPECT_NEAR(got[0], 102, 2); // (1 - 51/255)(1 - 127/255) · 255
        EXPECT_NEAR(got[1], 128, 2);
        EXPECT_NEAR(got[2], 0, 2);
        EXPECT_EQ(got[3], 255);
    }
}

TEST(JPEGDecoder, PutsAProfileTogetherFromItsSegments)
{
    const Bytes wide = dataFile("jpeg-p3.jpg");
    const std::size_t at = marker(wide, 0xE2);
    const std::size_t length = static_cast<std::size_t>(wide[at + 2]) * 256 + wide[at + 3];
    const Bytes profile(wide.begin() + static_cast<std::ptrdiff_t>(at) + 18,
                        wide.begin() + static_cast<std::ptrdiff_t>(at + 2 + length));
    Bytes bare = wide;
    bare.erase(bare.begin() + static_cast<std::ptrdiff_t>(at),
               bare.begin() + static_cast<std::ptrdiff_t>(at + 2 + length));

    const auto segment = [&](std::uint8_t number) {
        const std::size_t third = profile.size() / 3;
        const auto first = profile.begin() + static_cast<std::ptrdiff_t>(third * (number - 1u));
        const Bytes part(first, number == 3 ? profile.end() : first + static_cast<std::ptrdiff_t>(third));
        const std::size_t size = part.size() + 16;
        std::string head = "\xFF\xE2..ICC_PROFILE";
        head[2] = static_cast<char>(size >> 8);
        head[3] = static_cast<char>(size);
        head.append({'\0', static_cast<char>(number), '\3'});
        Bytes bytes(head.begin(), head.end());
        append(bytes, part);
        return bytes;
    };
    const auto with = [&](std::initializer_list<std::uint8_t> numbers) {
        Bytes segments;
        for (const std::uint8_t number : numbers)
            append(segments, segment(number));
        return decode(kJPEGDecoder, withInserted(bare, at, segments));
    };
    const Result<UIImage> converted = decode(kJPEGDecoder, wide);
    const Result<UIImage> untouched = decode(kJPEGDecoder, bare);
    EXPECT_FALSE(showsTheSame(converted, untouched));
    EXPECT_TRUE(showsTheSame(with({1, 2, 3}), converted));
    EXPECT_TRUE(showsTheSame(with({3, 1, 2}), converted));
    EXPECT_TRUE(showsTheSame(with({1, 3}), untouched));
    EXPECT_TRUE(showsTheSame(with({1, 2, 2, 3}), untouched));
}

} // namespace
} // namespace lamina::test
