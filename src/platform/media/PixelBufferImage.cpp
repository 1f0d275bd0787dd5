#include "platform/media/PixelBufferImage.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/PixelKernels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace lamina {

namespace {

/// What red, green and blue take of Y, Cb and Cr, in 65536ths (ITU-R BT.601, BT.709, BT.2020, SMPTE 240M).
struct YCbCrWeights {
    int y = 0;
    int black = 0; ///< of Y
    int redCr = 0;
    int greenCb = 0;
    int greenCr = 0;
    int blueCb = 0;
};

std::pair<double, double> lumaOf(YCbCrMatrix matrix)
{
    switch (matrix) {
    case YCbCrMatrix::ITU_R_709_2:
        return {0.2126, 0.0722};
    case YCbCrMatrix::SMPTE_240M_1995:
        return {0.212, 0.087};
    case YCbCrMatrix::ITU_R_2020:
        return {0.2627, 0.0593};
    default:
        return {0.299, 0.114};
    }
}

YCbCrWeights weightsOf(YCbCrMatrix matrix, bool fullRange)
{
    const auto [red, blue] = lumaOf(matrix);
    const double green = 1 - red - blue;
    const double scale = fullRange ? 1 : 255.0 / 219;
    const double chroma = fullRange ? 1 : 255.0 / 224;
    const auto fixed = [](double value) { return static_cast<int>(std::lround(value * 65536)); };
    return {fixed(scale),
            fullRange ? 0 : 16,
            fixed(2 * (1 - red) * chroma),
            fixed(-2 * (1 - blue) * blue / green * chroma),
            fixed(-2 * (1 - red) * red / green * chroma),
            fixed(2 * (1 - blue) * chroma)};
}

std::uint8_t clamped(int in65536ths)
{
    return static_cast<std::uint8_t>(std::clamp((in65536ths + 32768) >> 16, 0, 255));
}

void convertRow(const std::uint8_t* luma, const std::uint8_t* chroma, std::size_t width, const YCbCrWeights& of,
                std::uint8_t* out)
{
    for (std::size_t x = 0; x < width; ++x, out += 4) {
        const int y = (luma[x] - of.black) * of.y;
        const int cb = chroma[x / 2 * 2] - 128;
        const int cr = chroma[x / 2 * 2 + 1] - 128;
        out[0] = clamped(y + cr * of.redCr);
        out[1] = clamped(y + cb * of.greenCb + cr * of.greenCr);
        out[2] = clamped(y + cb * of.blueCb);
        out[3] = 255;
    }
}

} // namespace

CGImage imageOfPixelBuffer(const CVPixelBuffer& frame)
{
    if (frame.planes().empty())
        return {};
    const IntSize size = frame.size();
    const auto width = static_cast<std::size_t>(size.width);
    const CGImageLayout layout = CGImageLayout::rgba(size.width, size.height, CGImageAlphaInfo::NoneSkipLast);
    PixelBuffer pixels = PixelBuffer::allocate(layout.byteCount());
    if (!pixels)
        return {};
    const bool isPlanar = frame.planes().size() > 1;
    const YCbCrWeights weights = weightsOf(frame.matrix(), frame.pixelFormat() == CVPixelFormat::BiPlanar420FullRange);
    const bool isBlueFirst = frame.pixelFormat() == CVPixelFormat::BGRA;
    const kernels::ByteOrder order = isBlueFirst ? kernels::ByteOrder{2, 1, 0, 3} : kernels::ByteOrder{0, 1, 2, 3};
    const std::uint8_t opaque[4] = {0, 0, 0, 255};
    std::uint32_t filled = 0;
    std::copy_n(opaque, sizeof filled, reinterpret_cast<std::uint8_t*>(&filled));
    const CVPixelBuffer::Plane& first = frame.planes().front();
    parallelRows(0, size.height, width, [&](int begin, int end) {
        for (auto y = static_cast<std::size_t>(begin); y < static_cast<std::size_t>(end); ++y) {
            const std::uint8_t* const row = first.bytes + y * first.bytesPerRow;
            std::uint8_t* const out = pixels.data() + y * layout.bytesPerRow;
            if (isPlanar)
                convertRow(row, frame.planes()[1].bytes + y / 2 * frame.planes()[1].bytesPerRow, width, weights, out);
            else
                kernels::reorder(row, width, order, filled, out);
        }
    });
    return CGImage::make(layout, std::move(pixels));
}

UIImageOrientation orientationOfFrames(int rotation, bool mirrored)
{
    switch (rotation) {
    case 90:
        return mirrored ? UIImageOrientation::LeftMirrored : UIImageOrientation::Right;
    case 180:
        return mirrored ? UIImageOrientation::DownMirrored : UIImageOrientation::Down;
    case 270:
        return mirrored ? UIImageOrientation::RightMirrored : UIImageOrientation::Left;
    default:
        return mirrored ? UIImageOrientation::UpMirrored : UIImageOrientation::Up;
    }
}

} // namespace lamina
