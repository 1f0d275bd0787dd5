#include "platform/image/pixels/ColorConversion.h"

#include "CommandRunner.h"
#include "TestPaths.h"
#include "TestPictures.h"
#include "platform/image/pixels/PixelConversion.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace lamina::test {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Model = CGColorSpace::Model;

/// The profile in the only APP2 segment of a fixture.
Bytes profileIn(const std::string& file)
{
    const std::string text = readFile(testData("pictures/" + file));
    const Bytes bytes(text.begin(), text.end());
    constexpr std::string_view kMark("ICC_PROFILE\0", 12);
    const auto mark = std::search(bytes.begin(), bytes.end(), kMark.begin(), kMark.end());
    if (mark == bytes.end())
        return {};
    const int length = mark[-2] * 256 + mark[-1] - 2;
    return {mark + 14, mark + length};
}

TEST(ColorConversion, IsAbsentWhereNothingWouldChange)
{
    EXPECT_FALSE(ColorConversion::toSRGB(sRGBProfile(), Model::RGB));
    EXPECT_FALSE(ColorConversion::toSRGB(profileIn("jpeg-srgb.jpg"), Model::RGB));
    const Bytes wide = profileIn("jpeg-p3.jpg");
    EXPECT_TRUE(ColorConversion::toSRGB(wide, Model::RGB));
    for (const Model other : {Model::Gray, Model::CMYK, Model::AlphaOnly})
        EXPECT_FALSE(ColorConversion::toSRGB(wide, other));
    EXPECT_FALSE(ColorConversion::toSRGB({}, Model::RGB));
}

TEST(ColorConversion, SurvivesBrokenProfiles)
{
    const Bytes whole = profileIn("jpeg-p3.jpg");
    for (std::size_t length = 0; length < whole.size(); length += 13)
        EXPECT_FALSE(ColorConversion::toSRGB(std::span(whole).first(length), Model::RGB)) << length;
    // With a byte changed it is used or refused, and gives colours either way.
    for (std::size_t i = 0; i < whole.size(); i += i < 300 ? 1 : 17) {
        Bytes damaged = whole;
        damaged[i] ^= 0xA5;
        Bytes pixel{10, 20, 30, 40};
        if (const auto conversion = ColorConversion::toSRGB(damaged, Model::RGB))
            conversion->convertRow(pixel.data(), 1);
        ASSERT_EQ(pixel[3], 40) << i;
    }
    for (const double gamma : {0.0, -1.0, 1e9, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_TRUE(makeProfile(Chromaticities(), gamma).empty());
    Chromaticities flat;
    flat.green = flat.blue = flat.red; // no space lies between them
    EXPECT_TRUE(makeProfile(flat, 2.2).empty());
}

TEST(ColorConversion, ConvertsPicturesByTheirOwnSpace)
{
    CGImageLayout layout = CGImageLayout::rgba(1, 1, CGImageAlphaInfo::Last);
    layout.colorSpace = CGColorSpace::withProfile(Model::RGB, profileIn("jpeg-p3.jpg"));
    const Rgba shown = pixelAt(convertedToSRGB(pictureFromBytes(layout, Bytes{200, 150, 100, 50})), 0, 0);
    EXPECT_NEAR(shown[0], 209, 2);
    EXPECT_NEAR(shown[2], 91, 2);
    EXPECT_EQ(shown[3], 50);
}

} // namespace
} // namespace lamina::test
