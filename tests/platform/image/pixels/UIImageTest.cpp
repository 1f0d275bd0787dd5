#include "platform/image/pixels/UIImage.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace lamina::test {
namespace {

/// A picture of one byte a pixel, a letter each; rows separated by '/'. Rows are padded by `padding` bytes of '#'.
CGImage letters(const std::string& rows, std::size_t padding = 0)
{
    const std::size_t width = rows.find('/') == std::string::npos ? rows.size() : rows.find('/');
    const std::size_t height = (rows.size() + 1) / (width + 1);
    CGImageLayout layout = CGImageLayout::gray(static_cast<int>(width), static_cast<int>(height));
    layout.bytesPerRow += padding;
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    std::memset(buffer.data(), '#', buffer.size());
    for (std::size_t y = 0; y < height; ++y)
        std::memcpy(buffer.data() + y * layout.bytesPerRow, rows.data() + y * (width + 1), width);
    return CGImage::make(layout, std::move(buffer));
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
    const char* shown; ///< of abc/def, worked by hand
};

constexpr Turn kTurns[] = {
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
        const UIImage stored(letters("abc/def", 5).withMask(letters("ghi/jkl")), 2, turn.orientation);
        const UIImage shown = stored.upright();
        EXPECT_EQ(lettersOf(shown.cgImage()), turn.shown);
        EXPECT_EQ(shown.imageOrientation(), UIImageOrientation::Up);
        EXPECT_EQ(shown.scale(), 2);
        EXPECT_EQ(stored.pixelSize(), shown.cgImage().size());
        EXPECT_EQ(stored.size(), (CGSize{shown.cgImage().width() / 2.0, shown.cgImage().height() / 2.0}));
        ASSERT_NE(shown.cgImage().mask(), nullptr);
        std::string mask = turn.shown;
        for (char& c : mask)
            c = static_cast<char>(c == '/' ? c : c + 6);
        EXPECT_EQ(lettersOf(*shown.cgImage().mask()), mask);
    }
    for (const int tag : {-1, 0, 9, 65535})
        EXPECT_EQ(orientationFromExif(tag), UIImageOrientation::Up);
}

// Sizes beyond a block, not divisible by it, and every size of pixel that is moved by a loop of its own.
TEST(UIImage, MovesPixelsOfEverySizeToWhereTheTransformSays)
{
    constexpr int kWidth = 71;
    constexpr int kHeight = 100;
    struct Format {
        int bitsPerComponent;
        int bitsPerPixel;
    };
    for (const Format format : {Format{8, 24}, Format{8, 32}, Format{16, 48}, Format{16, 64}}) {
        CGImageLayout layout = CGImageLayout::rgba(kWidth, kHeight, CGImageAlphaInfo::None);
        const auto pixel = static_cast<std::size_t>(format.bitsPerPixel / 8);
        layout.bitsPerComponent = format.bitsPerComponent;
        layout.bitsPerPixel = format.bitsPerPixel;
        layout.bytesPerRow = pixel * kWidth + 3;
        PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
        for (std::size_t i = 0; i < buffer.size(); ++i)
            buffer.data()[i] = static_cast<std::uint8_t>(i * 2654435761u >> 13);
        const CGImage stored = CGImage::make(layout, std::move(buffer));
        for (const Turn& turn : kTurns) {
            SCOPED_TRACE(testing::Message() << format.bitsPerPixel << " bits, tag " << turn.exif);
            const CGImage shown = UIImage(stored, 1, turn.orientation).upright().cgImage();
            ASSERT_TRUE(shown);
            const CGAffineTransform map = orientationTransform(turn.orientation, stored.size());
            int wrong = 0;
            for (int y = 0; y < kHeight; ++y)
                for (int x = 0; x < kWidth; ++x) {
                    const CGPoint to = map.apply({x + 0.5, y + 0.5});
                    const std::uint8_t* got =
                        shown.row(static_cast<int>(to.y)) + static_cast<std::size_t>(to.x) * pixel;
                    wrong += std::memcmp(got, stored.row(y) + static_cast<std::size_t>(x) * pixel, pixel) != 0;
                }
            EXPECT_EQ(wrong, 0);
        }
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

// One bit a pixel can't be moved as bytes: the picture grows to four of them. 10100000/00000000 turned to the right.
TEST(UIImage, TurnsPicturesOfPartsOfBytes)
{
    CGImageLayout layout = CGImageLayout::gray(3, 2);
    layout.bitsPerComponent = layout.bitsPerPixel = 1;
    layout.bytesPerRow = 1;
    PixelBuffer buffer = PixelBuffer::zeroed(2);
    buffer.data()[0] = 0b10100000;
    const CGImage bits = CGImage::make(layout, std::move(buffer));
    const CGImage shown = UIImage(bits, 1, UIImageOrientation::Right).upright().cgImage();
    ASSERT_EQ(shown.size(), (IntSize{2, 3}));
    for (int y = 0; y < 3; ++y) {
        EXPECT_EQ(shown.row(y)[0], 0);
        EXPECT_EQ(shown.row(y)[4], y == 1 ? 0 : 255);
    }
}

} // namespace
} // namespace lamina::test
