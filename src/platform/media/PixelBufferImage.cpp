#include "platform/media/PixelBufferImage.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/PixelKernels.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace lamina {

YCbCrWeights weightsOf(YCbCrMatrix matrix, bool isFullRange)
{
    switch (matrix) {
    case YCbCrMatrix::ITU_R_709_2:
        return {0.2126, 0.0722, isFullRange};
    case YCbCrMatrix::SMPTE_240M_1995:
        return {0.212, 0.087, isFullRange};
    case YCbCrMatrix::ITU_R_2020:
        return {0.2627, 0.0593, isFullRange};
    default:
        return {0.299, 0.114, isFullRange};
    }
}

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
                kernels::pixelsOfYCbCr(row, frame.planes()[1].bytes + y / 2 * frame.planes()[1].bytesPerRow, width,
                                       weights, true, out);
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
