#include "TestPictures.h"
#include "export/functions/PDFPrintFunction.h"
#include "export/functions/PrintProfile.h"
#include "platform/image/pixels/PixelConversion.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <lcms2.h>

namespace lamina::test {
namespace {

class PrintColors : public testing::Test {
protected:
    // This program stands in no folder from which the profile would be found.
    PrintColors() { ::setenv("LAMINA_PROFILES", LAMINA_PROFILES, 1); }
    ~PrintColors() override { ::unsetenv("LAMINA_PROFILES"); }

    static CGImage inks(const UIImage& image)
    {
        const Result<UIImage> result = PDFPrintFunction().convertToCMYK(image);
        EXPECT_TRUE(result) << result.error().message();
        return result ? result->cgImage() : CGImage();
    }
    static CGImage onWhite(const CGImage& straight)
    {
        return makePicture(straight.width(), straight.height(), [&](int x, int y) {
            const Rgba p = pixelAt(straight, x, y);
            const auto mixed = [&](int c) {
                return static_cast<std::uint8_t>((c * p[3] + 255 * (255 - p[3]) + 127) / 255);
            };
            return Rgba{mixed(p[0]), mixed(p[1]), mixed(p[2]), 255};
        });
    }
};

/// The most that a component of two pictures of four bytes a pixel differs.
int greatestDifference(const CGImage& one, const CGImage& other)
{
    EXPECT_EQ(one.size(), other.size());
    int greatest = 0;
    for (int i = 0; i < one.width() * one.height(); ++i)
        greatest = std::max(greatest, difference(pixelsOf(one)[std::size_t(i)], pixelsOf(other)[std::size_t(i)]));
    return greatest;
}

TEST_F(PrintColors, InksAreThoseOfTheProfileWorkedOutWithoutShortCuts)
{
    const auto level = [](int i) { return static_cast<std::uint8_t>(std::min(255, i * 16)); };
    const CGImage colors = makePicture(17 * 17, 17, [&](int x, int y) {
        return Rgba{level(x % 17), level(x / 17), level(y), 255};
    });
    const Result<CGColorSpace> space = printColorSpace();
    ASSERT_TRUE(space);
    cmsHPROFILE sRGB = cmsCreate_sRGBProfile();
    cmsHPROFILE paper = cmsOpenProfileFromMem(space->iccProfile().data(), space->iccProfile().size());
    cmsHTRANSFORM exact = cmsCreateTransform(sRGB, TYPE_RGBA_8, paper, TYPE_CMYK_DBL, INTENT_PERCEPTUAL,
                                             cmsFLAGS_BLACKPOINTCOMPENSATION | cmsFLAGS_NOOPTIMIZE);
    const CGImage result = inks(UIImage(colors));
    double greatest = 0;
    double mostInk = 0;
    for (int y = 0; y < colors.height(); ++y)
        for (int x = 0; x < colors.width(); ++x) {
            double percent[4];
            cmsDoTransform(exact, pixelAt(colors, x, y).data(), percent, 1);
            const Rgba got = pixelAt(result, x, y);
            for (int c = 0; c < 4; ++c)
                greatest = std::max(greatest, std::abs(got[c] - 2.55 * percent[c]));
            mostInk = std::max(mostInk, (got[0] + got[1] + got[2] + got[3]) / 2.55);
        }
    cmsDeleteTransform(exact);
    cmsCloseProfile(paper);
    cmsCloseProfile(sRGB);
    EXPECT_LE(greatest, 2);
    EXPECT_LE(mostInk, 301);
    EXPECT_EQ(pixelAt(result, 288, 16), (Rgba{0, 0, 0, 0})) << "white is the paper";
}

TEST_F(PrintColors, APreviewOfTheInksLooksLikeThePicture)
{
    const std::vector<Rgba> printable{{0, 0, 0, 255},       {255, 255, 255, 255}, {128, 128, 128, 255},
                                      {224, 172, 140, 255}, {90, 110, 70, 255},   {200, 60, 70, 255}};
    const CGImage colors = makePicture(int(printable.size()), 1, [&](int x, int) { return printable[std::size_t(x)]; });
    const CGImage printed = inks(UIImage(colors));
    EXPECT_EQ(printed.colorSpace(), *printColorSpace());
    EXPECT_EQ(printed.bitmapInfo(), bitmapInfo(CGImageAlphaInfo::None));
    EXPECT_LE(greatestDifference(convertedToSRGB(printed), colors), 12);
}

TEST_F(PrintColors, AnyPictureBecomesAnOpaqueUprightOneOfScaleOne)
{
    const CGImage chart = chartPicture(7, 5);
    const CGImage masked =
        chartPicture(7, 5, CGImageAlphaInfo::NoneSkipLast).withMask(bytePicture(7, 5, [](int x, int) {
            return x < 3 ? 255 : 0;
        }));
    const CGImage deep = pictureFromBytes(packedLayout({2, 1}, bitmapInfo(CGImageAlphaInfo::Last), 16, 64),
                                          std::vector<std::uint8_t>{0x80, 0, 0xFF, 0xFF, 0, 0, 0xFF, 0xFF, //
                                                                    0, 0, 0, 0, 0, 0, 0x33, 0x33});
    const CGImage fourInks = inks(UIImage(chart));
    struct Case {
        const char* name;
        UIImage source;
        CGImage expected;
    };
    const std::vector<Case> cases{
        {"translucent", UIImage(chart, 3), onWhite(chart)},
        {"turned", UIImage(chart, 1, UIImageOrientation::LeftMirrored),
         onWhite(UIImage(chart, 1, UIImageOrientation::LeftMirrored).upright().cgImage())},
        {"masked", UIImage(masked), onWhite(convertedToSRGB(masked))},
        {"16 bits", UIImage(deep),
         makePicture(2, 1,
                     [](int x, int) {
                         return x ? Rgba{204, 204, 204, 255} : Rgba{128, 255, 0, 255};
                     })},
        {"inks", UIImage(fourInks), convertedToSRGB(fourInks)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Result<UIImage> result = PDFPrintFunction().convertToRGB(c.source);
        ASSERT_TRUE(result);
        EXPECT_EQ(result->scale(), 1);
        EXPECT_EQ(result->imageOrientation(), UIImageOrientation::Up);
        EXPECT_EQ(result->cgImage().bitmapInfo(), bitmapInfo(CGImageAlphaInfo::NoneSkipLast));
        EXPECT_LE(greatestDifference(result->cgImage(), c.expected), 1);
        EXPECT_EQ(bytesOf(inks(c.source)), bytesOf(inks(UIImage(result->cgImage()))));
    }
    EXPECT_EQ(PDFPrintFunction().convertToRGB(UIImage()).error().cause, "there is no picture");
}

TEST_F(PrintColors, WithoutItsProfileThereIsACauseAndNoPicture)
{
    ::unsetenv("LAMINA_PROFILES");
    const UIImage image(solidPicture(2, 2, {1, 2, 3, 255}));
    const Result<UIImage> result = PDFPrintFunction().convertToCMYK(image);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().message(), "FOGRA39-coated.icc: the colour profile for print is not installed");
    EXPECT_TRUE(PDFPrintFunction().convertToRGB(image));
}

} // namespace
} // namespace lamina::test
