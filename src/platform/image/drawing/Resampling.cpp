#include "platform/image/drawing/Resampling.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/drawing/RowResampler_p.h"
#include "platform/image/drawing/SourcePixels.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>

namespace lamina {

namespace {

struct Target {
    SourcePixels source;
    CGImageLayout layout;
};

/// How the result looks: the source's own components where it has bytes of them, else R G B A.
Target targetFor(const CGImage& source, IntSize size)
{
    if (std::optional<SourcePixels> own = SourcePixels::components(source)) {
        CGImageLayout layout = source.layout();
        layout.width = size.width;
        layout.height = size.height;
        layout.bytesPerRow = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(own->channels());
        return {std::move(*own), layout};
    }
    const CGImageAlphaInfo alpha =
        source.hasAlpha() ? CGImageAlphaInfo::PremultipliedLast : CGImageAlphaInfo::NoneSkipLast;
    return {SourcePixels::rgba(source), CGImageLayout::rgba(size.width, size.height, alpha)};
}

} // namespace

CGImage resampled(const CGImage& source, IntSize size)
{
    return resampled(source, size, source.size());
}

CGImage resampled(const CGImage& source, IntSize size, IntSize whole)
{
    if (!source || size.isEmpty())
        return {};
    const Target target = targetFor(source, size);
    const auto table = [](int from, int to, int all) {
        const bool isReduced = from < all && 2 * std::int64_t{to} <= all;
        return makeAxisTable({from, static_cast<double>(to) / from, 0}, 0, to,
                             isReduced ? ResampleFilter::Area : ResampleFilter::Best);
    };
    const RowResampler resampler(target.source, table(source.width(), size.width, whole.width),
                                 table(source.height(), size.height, whole.height));
    const std::size_t rowBytes = target.layout.bytesPerRow;
    PixelBuffer buffer = PixelBuffer::allocate(target.layout.byteCount());
    if (!buffer)
        return {};
    parallelRows(0, size.height, resampler.rowCost(), [&](int begin, int end) {
        RowResampler::Band band(resampler);
        for (int y = begin; y < end; ++y)
            std::memcpy(buffer.data() + static_cast<std::size_t>(y) * rowBytes, band.row(y), rowBytes);
    });
    return CGImage::make(target.layout, std::move(buffer));
}

} // namespace lamina
