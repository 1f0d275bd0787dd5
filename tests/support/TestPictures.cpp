#include "TestPictures.h"

#include "CommandRunner.h"
#include "TestPaths.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <random>

namespace lamina::test {

namespace {

constexpr std::size_t kPadding = 12;

std::size_t pixelSize(const CGImage& image)
{
    return static_cast<std::size_t>(image.bitsPerPixel() / 8);
}

/// The place of alpha, or of the skipped byte, in memory.
std::size_t alphaPlace(const CGImageLayout& layout)
{
    const CGImageAlphaInfo alpha = layout.alphaInfo();
    const bool first = alpha == CGImageAlphaInfo::First || alpha == CGImageAlphaInfo::PremultipliedFirst ||
                       alpha == CGImageAlphaInfo::NoneSkipFirst;
    const bool turnedRound = (layout.bitmapInfo & kCGBitmapByteOrderMask) == kCGBitmapByteOrder32Little;
    return first != turnedRound ? 0 : 3;
}

/// A sound pixel of the layout with these bytes.
Rgba madeSound(Rgba pixel, const CGImageLayout& layout)
{
    const std::size_t place = alphaPlace(layout);
    const int alpha = pixel[place];
    switch (layout.alphaInfo()) {
    case CGImageAlphaInfo::NoneSkipFirst:
    case CGImageAlphaInfo::NoneSkipLast:
        pixel[place] = 255;
        break;
    case CGImageAlphaInfo::PremultipliedFirst:
    case CGImageAlphaInfo::PremultipliedLast:
        for (std::uint8_t& byte : pixel)
            byte = static_cast<std::uint8_t>(byte * alpha / 255);
        pixel[place] = static_cast<std::uint8_t>(alpha);
        break;
    default:
        break;
    }
    return pixel;
}

struct Mismatch {
    std::size_t count = 0; ///< of pixels that are off by more than the tolerance
    std::size_t pixel = 0; ///< the worst one's number
    int worst = 0;
};

Mismatch mismatchOf(const std::vector<std::uint8_t>& got, const std::vector<std::uint8_t>& wanted, std::size_t size,
                    int tolerance)
{
    Mismatch found;
    for (std::size_t pixel = 0; pixel < got.size() / size; ++pixel) {
        int most = 0;
        for (std::size_t i = pixel * size; i < (pixel + 1) * size; ++i)
            most = std::max(most, std::abs(got[i] - wanted[i]));
        found.count += most > tolerance ? 1 : 0;
        if (most > found.worst)
            found = {found.count, pixel, most};
    }
    return found;
}

std::vector<int> componentsAt(const CGImage& image, int x, int y)
{
    const std::uint8_t* pixel = image.row(y) + static_cast<std::size_t>(x) * pixelSize(image);
    return {pixel, pixel + pixelSize(image)};
}

std::vector<int> components(const Rgba& pixel)
{
    return {pixel.begin(), pixel.end()};
}

/// As it comes back from a PNG file, which knows neither premultiplied pixels nor skipped bytes.
CGImage throughAFile(const CGImage& image)
{
    const TemporaryFolder folder;
    writePng(folder.path("picture.png"), image);
    return readPictureFile(folder.path("picture.png"));
}

} // namespace

CGImageLayout paddedLayout(int width, int height, CGBitmapInfo info)
{
    CGImageLayout layout = packedLayout({width, height}, info, 8, 32);
    layout.bytesPerRow += kPadding;
    return layout;
}

CGImageLayout packedLayout(IntSize size, CGBitmapInfo info, int bitsPerComponent, int bitsPerPixel,
                           const CGColorSpace& space)
{
    const int rowBits = size.width * bitsPerPixel;
    return {size.width, size.height, static_cast<std::size_t>((rowBits + 7) / 8), bitsPerComponent, bitsPerPixel,
            info,       space};
}

CGImage pictureFromBytes(const CGImageLayout& layout, std::span<const std::uint8_t> bytes)
{
    PixelBuffer buffer = PixelBuffer::zeroed(std::max(bytes.size(), layout.byteCount()));
    std::ranges::copy(bytes, buffer.data());
    CGImage image = CGImage::make(layout, std::move(buffer));
    EXPECT_TRUE(image) << "the layout is not possible";
    return image;
}

CGImage makePicture(const CGImageLayout& layout, const PixelFunction& pixel)
{
    std::vector<std::uint8_t> bytes(layout.byteCount(), 0xAB);
    for (int y = 0; y < layout.height; ++y) {
        auto place = bytes.begin() + static_cast<std::ptrdiff_t>(static_cast<std::size_t>(y) * layout.bytesPerRow);
        for (int x = 0; x < layout.width; ++x)
            place = std::ranges::copy(pixel(x, y), place).out;
    }
    return pictureFromBytes(layout, bytes);
}

CGImage makePicture(int width, int height, const PixelFunction& pixel, bool alpha)
{
    return makePicture(
        CGImageLayout::rgba(width, height, alpha ? CGImageAlphaInfo::Last : CGImageAlphaInfo::NoneSkipLast), pixel);
}

CGImage bytePicture(int width, int height, const std::function<int(int x, int y)>& value, const CGColorSpace& space)
{
    CGImageLayout layout = CGImageLayout::gray(width, height);
    layout.colorSpace = space;
    if (space.model() == CGColorSpace::Model::AlphaOnly)
        layout.bitmapInfo = bitmapInfo(CGImageAlphaInfo::Only);
    std::vector<std::uint8_t> bytes;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            bytes.push_back(static_cast<std::uint8_t>(value(x, y)));
    }
    return pictureFromBytes(layout, bytes);
}

CGImage solidPicture(int width, int height, Rgba color, CGImageAlphaInfo alpha)
{
    return makePicture(CGImageLayout::rgba(width, height, alpha), [color](int, int) { return color; });
}

CGImage rampPicture(int width, int height, std::uint8_t blue)
{
    const auto level = [](int place, int length) {
        return static_cast<std::uint8_t>((place + 0.5) / length * 255 + 0.5);
    };
    return makePicture(width, height, [&](int x, int y) { return Rgba{level(x, width), level(y, height), blue, 255}; });
}

CGImage chartPicture(const CGImageLayout& layout)
{
    return makePicture(layout, [&](int x, int y) {
        const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
        const std::uint8_t colors[] = {byte(17 + 13 * x), byte(29 + 11 * y), byte(7 * x + 3 * y)};
        const std::uint8_t alpha = byte(255 - x - 5 * y);
        const Rgba alphaLast{colors[0], colors[1], colors[2], alpha};
        const Rgba alphaFirst{alpha, colors[0], colors[1], colors[2]};
        return madeSound(alphaPlace(layout) == 0 ? alphaFirst : alphaLast, layout);
    });
}

CGImage chartPicture(int width, int height, CGImageAlphaInfo alpha)
{
    return chartPicture(CGImageLayout::rgba(width, height, alpha));
}

CGImage noisePicture(const CGImageLayout& layout, unsigned seed)
{
    std::mt19937 random(seed);
    return makePicture(layout, [&](int, int) {
        Rgba pixel;
        for (std::uint8_t& byte : pixel)
            byte = static_cast<std::uint8_t>(random() >> 24);
        return madeSound(pixel, layout);
    });
}

CGImage noisePicture(int width, int height, CGImageAlphaInfo alpha, unsigned seed)
{
    return noisePicture(CGImageLayout::rgba(width, height, alpha), seed);
}

Rgba pixelAt(const CGImage& image, int x, int y)
{
    if (!image || x < 0 || y < 0 || x >= image.width() || y >= image.height()) {
        ADD_FAILURE() << "no pixel at " << x << ", " << y;
        return {};
    }
    const std::uint8_t* pixel = image.row(y) + 4 * static_cast<std::ptrdiff_t>(x);
    return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

int byteAt(const CGImage& image, int x, int y)
{
    return image.row(y)[x];
}

std::vector<Rgba> pixelsOf(const CGImage& image)
{
    std::vector<Rgba> pixels;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            pixels.push_back(pixelAt(image, x, y));
    }
    return pixels;
}

std::vector<std::uint8_t> bytesOf(const CGImage& image)
{
    std::vector<std::uint8_t> bytes;
    const std::size_t row = static_cast<std::size_t>(image.width()) * pixelSize(image);
    for (int y = 0; y < image.height(); ++y)
        bytes.insert(bytes.end(), image.row(y), image.row(y) + row);
    return bytes;
}

std::vector<std::vector<int>> componentGrid(const CGImage& image, int component)
{
    std::vector<std::vector<int>> grid;
    for (int y = 0; y < image.height(); ++y) {
        std::vector<int>& row = grid.emplace_back();
        for (std::size_t x = 0; x < static_cast<std::size_t>(image.width()); ++x)
            row.push_back(image.row(y)[x * pixelSize(image) + static_cast<std::size_t>(component)]);
    }
    return grid;
}

int difference(const Rgba& x, const Rgba& y)
{
    int most = 0;
    for (std::size_t i = 0; i < x.size(); ++i)
        most = std::max(most, std::abs(x[i] - y[i]));
    return most;
}

testing::AssertionResult pixelMatches(const CGImage& image, int x, int y, const Rgba& wanted, int tolerance)
{
    const Rgba got = pixelAt(image, x, y);
    if (difference(got, wanted) <= tolerance)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "at " << x << ", " << y << ": " << testing::PrintToString(components(got))
                                       << ", wanted " << testing::PrintToString(components(wanted));
}

testing::AssertionResult imagesMatch(const CGImage& got, const CGImage& wanted, int tolerance)
{
    if (!got || !wanted)
        return testing::AssertionFailure() << (got ? "nothing to compare with" : "there is no picture");
    if (got.size() != wanted.size() || got.bitsPerPixel() != wanted.bitsPerPixel()) {
        return testing::AssertionFailure()
               << got.width() << " x " << got.height() << " pixels of " << got.bitsPerPixel() << " bits, wanted "
               << wanted.width() << " x " << wanted.height() << " of " << wanted.bitsPerPixel();
    }
    const Mismatch found = mismatchOf(bytesOf(got), bytesOf(wanted), pixelSize(got), tolerance);
    if (found.count == 0)
        return testing::AssertionSuccess();
    const int x = static_cast<int>(found.pixel) % got.width();
    const int y = static_cast<int>(found.pixel) / got.width();
    return testing::AssertionFailure() << found.count << " of " << got.width() << " x " << got.height()
                                       << " pixels are off, by " << found.worst << " at " << x << ", " << y << ": "
                                       << testing::PrintToString(componentsAt(got, x, y)) << ", wanted "
                                       << testing::PrintToString(componentsAt(wanted, x, y));
}

testing::AssertionResult matchesGolden(const CGImage& got, const std::string& name, int tolerance)
{
    if (!got)
        return testing::AssertionFailure() << "there is no picture";
    const std::string path = golden(name + ".png");
    if (std::getenv("LAMINA_UPDATE_GOLDEN") != nullptr)
        writePng(path, got);
    testing::AssertionResult result = imagesMatch(throughAFile(got), readPictureFile(path), tolerance);
    if (!result) {
        const std::string left = (std::filesystem::temp_directory_path() / ("lamina-golden-" + name + ".png")).string();
        writePng(left, got);
        result << "\nwhat came: " << left << "\nwanted:    " << path;
    }
    return result;
}

void writePng(const std::string& path, const CGImage& image)
{
    const Result<std::vector<std::uint8_t>> file = encodePNG(image, path);
    ASSERT_TRUE(file.ok());
    writeFile(path, std::string(file->begin(), file->end()));
}

std::string damagedPhoto()
{
    std::string file = readFile(testData("pictures/jpeg-444.jpg"));
    return file.insert(file.size() - 2, 40, 'x'); // which no block uses
}

CGImage readPictureFile(const std::string& path)
{
    const Result<UIImage> picture = loadPicture(path);
    if (!picture) {
        ADD_FAILURE() << path << ": " << picture.error().cause;
        return {};
    }
    return picture->upright().cgImage();
}

} // namespace lamina::test
