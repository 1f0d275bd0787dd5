#include "platform/text/TextLayout.h"
#include "CommandRunner.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace lamina::test {
namespace {

TextStyle dejaVu(double size, int lines = 1)
{
    return {{"DejaVu Sans", size}, NSTextAlignment::Natural, NSLineBreakMode::TruncatingTail, lines};
}

double widthOf(const std::string& text, double size = 100)
{
    return layoutText(text, dejaVu(size)).size.width;
}

TEST(TextLayout, MeasuresAreTheFontsAndGrowEvenlyWithTheSize)
{
    // An em has 2048 units: A is 1401 wide, lines are 1901 above and 483 below the baseline.
    for (const double size : {3.0, 11.0, 17.5, 400.0}) {
        const TextLayout text = layoutText("A", dejaVu(size));
        EXPECT_NEAR(text.size.width, size * 1401 / 2048, 0.002 * size);
        EXPECT_NEAR(text.size.height, size * (1901 + 483) / 2048, 0.01 * size);
        const CGRect ink = text.outlines.controlBounds(); // 1493 high, standing on the baseline
        EXPECT_NEAR(ink.size.height, size * 1493 / 2048, 0.005 * size);
        EXPECT_NEAR(ink.maxY(), size * 1901 / 2048, 0.01 * size);
    }
    TextStyle bold = dejaVu(20);
    bold.font.weight = UIFontWeight::Bold;
    EXPECT_GT(layoutText("Blend", bold).size.width, 1.05 * widthOf("Blend", 20));
    EXPECT_EQ(layoutText("", dejaVu(20)).size, CGSize());
    EXPECT_EQ(layoutText("A", dejaVu(0)).size, CGSize());
}

TEST(TextLayout, WritingIsShapedAndRunsItsOwnWay)
{
    EXPECT_NEAR(widthOf("e\u0301"), widthOf("\u00e9"), 0.1);         // an accent of its own takes no room
    EXPECT_LT(widthOf("\u0628\u0628"), 0.8 * 2 * widthOf("\u0628")); // letters that join are narrower
    const auto letters = [](const std::string& text) { return layoutText(text, dejaVu(50)).outlines; };
    // Alef, bet, gimel stand from right to left: as when told to stand the other way round from left to right.
    EXPECT_EQ(letters("\u05d0\u05d1\u05d2"), letters("\u202d\u05d2\u05d1\u05d0"));
    EXPECT_FALSE(letters("\U000FFFFD").isEmpty()); // no font has it
    EXPECT_FALSE(layoutText("a\xff"
                            "b",
                            dejaVu(20))
                     .outlines.isEmpty());
}

TEST(TextLayout, LinesStandWhereTheyAreAligned)
{
    struct Case {
        const char* text;
        NSTextAlignment alignment;
        double middle; ///< of the ink, in 300 points
    };
    const Case cases[] = {
        {"HH", NSTextAlignment::Natural, 15},          {"\u05d0\u05d0", NSTextAlignment::Natural, 286},
        {"HH", NSTextAlignment::Right, 285},           {"\u05d0\u05d0", NSTextAlignment::Left, 14},
        {"\u05d0\u05d0", NSTextAlignment::Right, 286}, {"HH", NSTextAlignment::Center, 150},
    };
    for (const Case& c : cases) {
        TextStyle style = dejaVu(20);
        style.alignment = c.alignment;
        EXPECT_NEAR(layoutText(c.text, style, 300).outlines.controlBounds().midX(), c.middle, 2) << c.text;
    }
}

TEST(TextLayout, TextThatDoesNotFitIsBrokenOrCutShort)
{
    const std::string text = "One photo shines\nthrough the other";
    struct Case {
        double width;
        int lines, count;
        bool truncated;
    };
    const Case cases[] = {{1e9, 0, 2, false}, {100, 0, 4, false}, {100, 3, 3, true},
                          {100, 9, 4, false}, {100, 1, 1, true},  {1e9, 1, 1, false}};
    for (const Case& c : cases) {
        const TextLayout set = layoutText(text, dejaVu(16, c.lines), c.width);
        EXPECT_EQ(set.lineCount, c.count) << c.width << " " << c.lines;
        EXPECT_EQ(set.truncated, c.truncated) << c.width << " " << c.lines;
        EXPECT_LE(set.size.width, c.width);
        EXPECT_NEAR(set.size.height, c.count * 16 * 2384 / 2048.0, 0.5);
        const CGRect ink = set.outlines.controlBounds();
        EXPECT_TRUE(ink.minX() >= -1 && ink.maxX() <= c.width + 1 && ink.maxY() <= set.size.height);
    }
    TextStyle style = dejaVu(16);
    const UIBezierPath tail = layoutText("summer-in-the-hills.jpg", style, 100).outlines;
    style.lineBreakMode = NSLineBreakMode::TruncatingMiddle;
    const UIBezierPath middle = layoutText("summer-in-the-hills.jpg", style, 100).outlines;
    EXPECT_FALSE(middle == tail);
    EXPECT_GT(middle.controlBounds().maxY(), tail.controlBounds().maxY()); // the j and the p are there
    EXPECT_LE(middle.controlBounds().maxX(), 101);
}

TEST(TextLayoutDeathTest, WithoutFontsThereIsNoTextAndNoCrash)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const TemporaryFolder folder;
    writeFile(folder.path("fonts.conf"), "<fontconfig/>");
    const auto run = [&] {
        setenv("FONTCONFIG_FILE", folder.path("fonts.conf").c_str(), 1);
        std::exit(layoutText("A", dejaVu(20)).outlines.isEmpty() ? 0 : 1);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "there are no fonts");
}

} // namespace
} // namespace lamina::test
