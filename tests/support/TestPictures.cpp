#include "TestPictures.h"

#include "CommandRunner.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureEncoding.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

namespace lamina::test {

CGImage makePicture(int width, int height, const std::function<Rgba(int, int)>& pixel, bool alpha)
{
    const CGImageLayout layout =
        CGImageLayout::rgba(width, height, alpha ? CGImageAlphaInfo::Last : CGImageAlphaInfo::NoneSkipLast);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    for (int y = 0; y < height; ++y) {
        std::uint8_t* row = buffer.data() + static_cast<std::size_t>(y) * layout.bytesPerRow;
        for (int x = 0; x < width; ++x) {
            const Rgba value = pixel(x, y);
            std::copy(value.begin(), value.end(), row + 4 * x);
        }
    }
    return CGImage::make(layout, std::move(buffer));
}

CGImage rampPicture(int width, int height, std::uint8_t blue)
{
    const auto level = [](int place, int length) {
        return static_cast<std::uint8_t>((place + 0.5) / length * 255 + 0.5);
    };
    return makePicture(width, height, [&](int x, int y) { return Rgba{level(x, width), level(y, height), blue, 255}; });
}

Rgba pixelAt(const CGImage& image, int x, int y)
{
    const std::uint8_t* pixel = image.row(y) + 4 * x;
    return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

void writePng(const std::string& path, const CGImage& image)
{
    const Result<std::vector<std::uint8_t>> file = encodePNG(image, path);
    ASSERT_TRUE(file.ok());
    writeFile(path, std::string(file->begin(), file->end()));
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

int difference(const Rgba& x, const Rgba& y)
{
    int most = 0;
    for (std::size_t i = 0; i < x.size(); ++i)
        most = std::max(most, std::abs(x[i] - y[i]));
    return most;
}

} // namespace lamina::test
