#include "platform/image/pixels/UIImage.h"

#include "EveryProcessor.h"
#include "TestPictures.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace lamina::test {
namespace {

/// A picture of one byte a pixel, a letter each; rows separated by '/'.
CGImage letters(const std::string& rows)
{
    const auto width = static_cast<int>(std::min(rows.find('/'), rows.size()));
    const auto height = static_cast<int>(rows.size() + 1) / (width + 1);
    return bytePicture(width, height,
                       [&](int x, int y) { return rows[static_cast<std::size_t>(y * (width + 1) + x)]; });
}

std::string lettersOf(const CGImage& image)
{
    std::string rows;
    for (int y = 0; y < image.height(); ++y) {
        if (y > 0)
            rows.push_back('/');
        rows.append(image.row(y), image.row(y) + image.width());
    }
    return rows;
}

struct Turn {
    int exif;
    UIImageOrientation orientation;
    std::string shown; ///< of abc/def, worked by hand
};

const Turn kTurns[] = {
    {1, UIImageOrientation::Up, "abc/def"},
    {2, UIImageOrientation::UpMirrored, "cba/fed"},
    {3, UIImageOrientation::Down, "fed/cba"},
    {4, UIImageOrientation::DownMirrored, "def/abc"},
    {5, UIImageOrientation::LeftMirrored, "ad/be/cf"},
    {6, UIImageOrientation::Right, "da/eb/fc"},
    {7, UIImageOrientation::RightMirrored, "fc/eb/da"},
    {8, UIImageOrientation::Left, "cf/be/ad"},
};

TEST(UIImage, TurnsUprightByItsTag)
{
    for (const Turn& turn : kTurns) {
        SCOPED_TRACE(turn.exif);
        EXPECT_EQ(orientationFromExif(turn.exif), turn.orientation);
        const UIImage stored(letters("abc/def").withMask(letters("ghi/jkl")), 2, turn.orientation);
        const UIImage shown = stored.upright();
        EXPECT_EQ(lettersOf(shown.cgImage()), turn.shown);
        EXPECT_EQ(shown.imageOrientation(), UIImageOrientation::Up);
        EXPECT_EQ(shown.scale(), 2);
        EXPECT_EQ(stored.pixelSize(), shown.cgImage().size());
        EXPECT_EQ(stored.size(), (CGSize{shown.cgImage().width() / 2.0, shown.cgImage().height() / 2.0}));
        ASSERT_NE(shown.cgImage().mask(), nullptr);
        std::string mask = turn.shown;
        std::ranges::for_each(mask, [](char& c) { c = static_cast<char>(c == '/' ? c : c + 6); });
        EXPECT_EQ(lettersOf(*shown.cgImage().mask()), mask);
    }
    for (const int tag : {-1, 0, 9, 65535})
        EXPECT_EQ(orientationFromExif(tag), UIImageOrientation::Up);
}

/// How many pixels `upright` does not bring to where the orientation's transform says.
int misplaced(const CGImage& stored, UIImageOrientation orientation)
{
    const CGImage shown = UIImage(stored, 1, orientation).upright().cgImage();
    const CGAffineTransform map = orientationTransform(orientation, stored.size());
    const auto pixel = static_cast<std::size_t>(stored.bitsPerPixel() / 8);
    int wrong = shown ? 0 : 1;
    for (int y = 0; shown && y < stored.height(); ++y) {
        for (int x = 0; x < stored.width(); ++x) {
            const CGPoint to = map.apply({x + 0.5, y + 0.5});
            const std::uint8_t* got = shown.row(static_cast<int>(to.y)) + static_cast<std::size_t>(to.x) * pixel;
            wrong += std::memcmp(got, stored.row(y) + static_cast<std::size_t>(x) * pixel, pixel) != 0 ? 1 : 0;
        }
    }
    return wrong;
}

// Sizes beyond a block, not divisible by it, and every size of pixel that is moved by a loop of its own.
TEST(UIImage, MovesPixelsOfEverySizeToWhereTheTransformSays)
{
    const struct {
        int bitsPerComponent;
        int bitsPerPixel;
    } formats[] = {{8, 24}, {8, 32}, {16, 48}, {16, 64}};
    for (const auto& format : formats) {
        CGImageLayout layout =
            packedLayout({71, 100}, bitmapInfo(CGImageAlphaInfo::None), format.bitsPerComponent, format.bitsPerPixel);
        layout.bytesPerRow += 3;
        std::vector<std::uint8_t> bytes(layout.byteCount());
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<std::uint8_t>(i * 2654435761u >> 13);
        const CGImage stored = pictureFromBytes(layout, bytes);
        const auto check = [&](const std::string& processor) {
            for (const Turn& turn : kTurns)
                EXPECT_EQ(misplaced(stored, turn.orientation), 0)
                    << format.bitsPerPixel << " bits, tag " << turn.exif << processor;
        };
        if (format.bitsPerPixel == 32)
            onEveryProcessor(check);
        else
            check("");
    }
}

TEST(UIImage, SharesItsPixelsWhenThereIsNothingToTurn)
{
    const UIImage image(letters("abc/def"), 3);
    EXPECT_TRUE(image.upright().isIdenticalTo(image));
    EXPECT_FALSE(image.isIdenticalTo(UIImage(image.cgImage(), 2)));
    EXPECT_FALSE(image.isIdenticalTo(UIImage(letters("abc/def"), 3)));
    EXPECT_FALSE(UIImage().upright());
    EXPECT_EQ(UIImage().size(), (CGSize{0, 0}));
}

// One bit a pixel can't be moved as bytes: the picture grows to four of them. 101/000 turned to the right.
TEST(UIImage, TurnsPicturesOfPartsOfBytes)
{
    const CGImageLayout layout =
        packedLayout({3, 2}, bitmapInfo(CGImageAlphaInfo::None), 1, 1, CGColorSpace::deviceGray());
    const CGImage bits = pictureFromBytes(layout, std::vector<std::uint8_t>{0b10100000, 0});
    const CGImage shown = UIImage(bits, 1, UIImageOrientation::Right).upright().cgImage();
    EXPECT_EQ(componentGrid(shown), (std::vector<std::vector<int>>{{0, 255}, {0, 0}, {0, 255}}));
}

} // namespace
} // namespace lamina::test
