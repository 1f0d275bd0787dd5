#include "DecodedPictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

namespace lamina::test {
namespace {

/// The file with the sides of all its size boxes replaced.
Bytes claiming(Bytes bytes, std::uint32_t width, std::uint32_t height)
{
    constexpr std::string_view name = "ispe";
    for (auto at = bytes.begin(); (at = std::search(at, bytes.end(), name.begin(), name.end())) != bytes.end();) {
        at += 8;
        for (const std::uint32_t side : {width, height}) {
            for (int shift = 24; shift >= 0; shift -= 8)
                *at++ = static_cast<std::uint8_t>(side >> shift);
        }
    }
    return bytes;
}

TEST(HEICDecoder, RefusesSidesThatLie)
{
    for (const char* name : {"heic-444.heic", "avif-444.avif"}) {
        SCOPED_TRACE(name);
        const Bytes sound = dataFile(name);
        ASSERT_EQ(causeOf(decode(kHEICDecoder, sound)), "");
        EXPECT_TRUE(causeOf(decode(kHEICDecoder, claiming(sound, 16000, 16000))).starts_with(cause::kTooLarge));
        EXPECT_NE(causeOf(decode(kHEICDecoder, claiming(sound, 0x7FFFFFFF, 0x7FFFFFFF))), "");
        EXPECT_NE(causeOf(decode(kHEICDecoder, claiming(sound, 0, 48))), "");
        // Memory was granted for what was announced.
        EXPECT_NE(causeOf(decode(kHEICDecoder, claiming(sound, 8, 6))), "");
    }
}

TEST(HEICDecoder, RefusesPicturesMadeOfThemselves)
{
    // The alpha grid (item 4) takes the grid that it is the alpha of (item 2) as its tile, in place of item 3.
    Bytes bytes = dataFile("heic-alpha.heic");
    const Bytes reference{'d', 'i', 'm', 'g', 0, 4, 0, 1, 0, 3};
    const auto at = std::search(bytes.begin(), bytes.end(), reference.begin(), reference.end());
    ASSERT_NE(at, bytes.end());
    at[9] = 2;
    EXPECT_EQ(causeOf(decode(kHEICDecoder, bytes)), cause::kDamaged);
    at[9] = 4;
    EXPECT_EQ(causeOf(decode(kHEICDecoder, bytes)), cause::kDamaged);
}

TEST(HEICDecoder, KnowsItsBrands)
{
    const auto recognizes = [](std::string_view head) {
        return kHEICDecoder.recognizes({reinterpret_cast<const std::uint8_t*>(head.data()), head.size()});
    };
    using namespace std::string_view_literals;
    EXPECT_TRUE(recognizes("\0\0\0\x14"
                           "ftypheic\0\0\0\0mif1"sv));
    EXPECT_TRUE(recognizes("\0\0\0\x18"
                           "ftypmsf1\0\0\0\0msf1heic"sv));
    EXPECT_TRUE(recognizes("\0\0\0\x14"
                           "ftypavif\0\0\0\0mif1"sv));
    // A movie, and one whose version happens to read like a brand.
    EXPECT_FALSE(recognizes("\0\0\0\x18"
                            "ftypisom\0\0\2\0isomiso2"sv));
    EXPECT_FALSE(recognizes("\0\0\0\x14"
                            "ftypisomheicmp42"sv));
}

} // namespace
} // namespace lamina::test
