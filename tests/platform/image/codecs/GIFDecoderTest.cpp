#include "DecodedPictures.h"

#include <gtest/gtest.h>

namespace lamina::test {
namespace {

constexpr Pixel kClear{0, 0, 0, 0};
constexpr Pixel kColor1{10, 20, 30, 255};

/// A file of one frame whose pixels all have index 1, in a global palette of two colours (or none).
struct GIFFile {
    std::uint32_t screenWidth = 2;
    std::uint32_t screenHeight = 2;
    std::uint32_t left = 0;
    std::uint32_t top = 0;
    std::uint32_t width = 2;
    std::uint32_t height = 2;
    bool palette = true;
    int index = 1;
    int transparent = -1;

    Bytes bytes() const
    {
        Bytes file{'G', 'I', 'F', '8', '9', 'a'};
        append16(file, screenWidth);
        append16(file, screenHeight);
        append(file, Bytes{static_cast<std::uint8_t>(palette ? 0x80 : 0), 0, 0});
        if (palette)
            append(file, Bytes{0, 0, 0, 10, 20, 30});
        if (transparent >= 0)
            append(file, Bytes{'!', 0xF9, 4, 1, 0, 0, static_cast<std::uint8_t>(transparent), 0});
        file.push_back(',');
        for (const std::uint32_t value : {left, top, width, height})
            append16(file, value);
        append(file, Bytes{0, 2});
        const Bytes codes = packedCodes();
        for (std::size_t at = 0; at < codes.size(); at += 255) {
            const std::size_t count = std::min<std::size_t>(255, codes.size() - at);
            file.push_back(static_cast<std::uint8_t>(count));
            append(file, std::span(codes).subspan(at, count));
        }
        append(file, Bytes{0, ';'});
        return file;
    }

private:
    /// Codes of three bits: a clear code before every second pixel keeps them from growing.
    Bytes packedCodes() const
    {
        std::vector<int> codes;
        for (std::uint32_t i = 0; i < std::min(width * height, 4096u); ++i) {
            if (i % 2 == 0)
                codes.push_back(4);
            codes.push_back(index);
        }
        codes.push_back(5);
        Bytes bytes((codes.size() * 3 + 7) / 8);
        for (std::size_t bit = 0; bit < codes.size() * 3; ++bit) {
            if (codes[bit / 3] >> bit % 3 & 1)
                bytes[bit / 8] = static_cast<std::uint8_t>(bytes[bit / 8] | 1 << bit % 8);
        }
        return bytes;
    }
};

TEST(GIFDecoder, ComposesTheFrameOnItsScreen)
{
    struct Case {
        const char* name;
        GIFFile file;
        std::vector<Pixel> firstRow;
    };
    const Case cases[] = {
        {"covering", {}, {kColor1, kColor1}},
        {"beside", {.screenWidth = 4, .left = 1}, {kClear, kColor1, kColor1, kClear}},
        {"partly outside", {.left = 1}, {kClear, kColor1}},
        {"wholly outside", {.left = 60, .top = 60}, {kClear, kClear}},
        {"larger than the screen", {.width = 5, .height = 7}, {kColor1, kColor1}},
        {"screen without a size", {.screenWidth = 0, .screenHeight = 0, .left = 1}, {kClear, kColor1, kColor1}},
        {"transparent", {.transparent = 1}, {kClear, kClear}},
        {"index beyond the palette", {.index = 3}, {{0, 0, 0, 255}, {0, 0, 0, 255}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Result<UIImage> decoded = decode(kGIFDecoder, c.file.bytes());
        EXPECT_EQ(causeOf(decoded), "");
        EXPECT_EQ(firstRow(decoded), c.firstRow);
    }
}

TEST(GIFDecoder, RefusesWhatItCannotShow)
{
    const auto cause = [](const GIFFile& file) { return causeOf(decode(kGIFDecoder, file.bytes())); };
    EXPECT_EQ(cause({.palette = false}), "the picture has no palette");
    EXPECT_TRUE(cause({.screenWidth = 65535, .screenHeight = 65535}).starts_with(cause::kTooLarge));
    // A frame of 4 gigapixels behind a screen of four: its lines must not be walked through.
    EXPECT_TRUE(cause({.width = 65535, .height = 65535}).starts_with(cause::kTooLarge));
    EXPECT_EQ(cause({.width = 0}), cause::kDamaged);
    const Bytes empty{'G', 'I', 'F', '8', '9', 'a', 1, 0, 1, 0, 0, 0, 0, ';'};
    EXPECT_EQ(causeOf(decode(kGIFDecoder, empty)), "the file holds no picture");
}

} // namespace
} // namespace lamina::test
