// Colours as numbers, as digits and as pictures of all of them.
#include "editors/colorpicker/ColorHexText.h"
#include "editors/colorpicker/ColorImages.h"
#include "editors/colorpicker/HSBColor.h"
#include "platform/base/CGGeometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <utility>

namespace lamina::test {
namespace {

/// Another way to the same: a component by its distance from the hue, in the model's trapezium.
std::array<double, 3> trapezium(double hue, double saturation, double brightness)
{
    std::array<double, 3> rgb{};
    for (std::size_t i = 0; i < 3; ++i) {
        const double sixth = std::fmod(std::array{5.0, 3.0, 1.0}[i] + hue * 6, 6);
        rgb[i] = brightness * (1 - saturation * std::clamp(std::min(sixth, 4 - sixth), 0.0, 1.0));
    }
    return rgb;
}

TEST(HSBColor, GoesToRGBAndBack)
{
    for (const float hue : {0.0F, 0.1F, 0.25F, 0.34F, 0.5F, 0.61F, 0.75F, 0.9F, 0.99F, 1.0F})
        for (const float saturation : {0.2F, 0.5F, 1.0F}) {
            const HSBColor color{hue, saturation, 0.8F};
            const RGBComponents rgb = rgbFromHSB(color);
            const std::array found{rgb.red, rgb.green, rgb.blue};
            for (std::size_t i = 0; i < 3; ++i)
                EXPECT_NEAR(found[i], trapezium(hue, saturation, color.brightness)[i], 1e-6) << hue;
            const HSBColor back = hsbFromRGB(rgb, {}, HSBPreservation::None);
            EXPECT_NEAR(back.hue, hue == 1 ? 0 : hue, 1e-5);
            EXPECT_NEAR(back.saturation, saturation, 1e-5);
            EXPECT_EQ(back.brightness, color.brightness);
        }
}

TEST(HSBColor, KeepsWhatAColourSaysNothingOf)
{
    constexpr HSBColor kPresent{0.6F, 0.3F, 0.9F};
    constexpr HSBColor kPresentRed{1, 0.3F, 0.9F};
    const struct {
        RGBComponents color;
        HSBColor present, kept, fresh;
    } kRows[] = {
        {{0, 0, 0}, kPresent, {0.6F, 0.3F, 0}, {0, 0, 0}},
        {{0.5F, 0.5F, 0.5F}, kPresent, {0.6F, 0, 0.5F}, {0, 0, 0.5F}},
        {{1, 0, 0}, kPresentRed, {1, 1, 1}, {0, 1, 1}},
        {{1, 0, 0}, kPresent, {0, 1, 1}, {0, 1, 1}},
        {{1, 1, 0}, kPresentRed, {1 / 6.0F, 1, 1}, {1 / 6.0F, 1, 1}}, // the largest is looked for in red first
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(hsbFromRGB(row.color, row.present, HSBPreservation::Keep), row.kept);
        EXPECT_EQ(hsbFromRGB(row.color, row.present, HSBPreservation::None), row.fresh);
    }
}

TEST(ColorHexText, TakesThreeOrSixDigitsAndNothingElse)
{
    const std::pair<const char*, const char*> taken[] = {
        {"#E5906F", "#E5906F"}, {"e5906f", "#E5906F"}, {" #1aB\n", "#11AABB"}, {"000", "#000000"}};
    for (const auto& [typed, shown] : taken) {
        const auto color = colorFromHexText(typed);
        EXPECT_EQ(color ? hexText(*color) : "", shown) << typed;
    }
    for (const char* const refused :
         {"", "#", "##123", "12345", "1234567", "12345g", "+12345", "0x1234", "-123", "# 123", "12 ", "１２３"})
        EXPECT_FALSE(colorFromHexText(refused)) << refused;
    EXPECT_EQ(hexText({0.5, -1, 7, 0.2}), "#8000FF");
}

TEST(ColorImages, TheRowSweepsOneValue)
{
    using enum HSBComponent;
    for (const HSBComponent component : {Hue, Saturation, Brightness}) {
        const CGImage image = hsbSweepImage(component, {0, 1, 1});
        ASSERT_EQ(image.size(), (IntSize{256, 1}));
        EXPECT_EQ(image.bitmapInfo(), 8198U);
        for (int column = 0; column < 256; ++column) {
            const double t = column / 255.0;
            const auto rgb =
                trapezium(component == Hue ? t : 0, component == Saturation ? t : 1, component == Brightness ? t : 1);
            for (std::size_t i = 0; i < 3; ++i) // cut off, so that a hair below counts as one less
                EXPECT_NEAR(image.row(0)[4 * column + 2 - i], 255 * rgb[i], 1.001) << column;
        }
    }
}

TEST(ColorImages, TheSquareIsTheIntegersThatWereAgreedOn)
{
    const auto pixels = std::make_unique<ColorSquarePixels>();
    for (const float hue : {0.0F, 0.04F, 0.37F, 0.5F, 0.86F, 1.0F}) {
        fillColorSquare(hue, *pixels);
        for (int row = 0; row < 256; ++row)
            for (int s = 0; s < 256; ++s)
                for (int i = 0; i < 3; ++i) { // red, green, blue lie the other way round
                    const int found = static_cast<int>((*pixels)[row * 256 + s] >> (8 * (2 - i)) & 0xFF);
                    const double exact = 255 * trapezium(hue, s / 255.0, 1 - row / 255.0)[i];
                    ASSERT_LE(std::abs(found - exact), 3) << hue << ' ' << row << ' ' << s;
                }
    }
    fillColorSquare(0, *pixels);
    EXPECT_EQ((*pixels)[0], 0x00FEFEFEU);
    EXPECT_EQ((*pixels)[255], 0x00FE0000U);
    EXPECT_EQ((*pixels)[256 * 127 + 128], 0x007F3F3FU); // 128 · 255 >> 8, 128 · 127 >> 8
    EXPECT_EQ(pixels->back(), 0U);
}

} // namespace
} // namespace lamina::test
