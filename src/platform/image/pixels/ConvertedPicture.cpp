#include "platform/image/pixels/PixelConversion.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelArithmetic.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

// A mask is stretched by bilinear interpolation, in integers.

namespace lamina {

namespace {

/// For each of `count` places the two of `samples` it lies between and the share of the second, in 256ths; centres on
/// centres.
struct Place {
    int first;
    int second;
    unsigned share;
};

Place placeOf(int index, int count, int samples)
{
    const double position = std::clamp((index + 0.5) * samples / count - 0.5, 0.0, samples - 1.0);
    const int first = static_cast<int>(position);
    return {first, std::min(first + 1, samples - 1), static_cast<unsigned>(std::lround((position - first) * 256))};
}

unsigned mix(unsigned first, unsigned second, unsigned share)
{
    return first * (256 - share) + second * share;
}

/// Multiplies straight alpha by a mask's coverage, stretched over the picture.
class MaskRows {
public:
    MaskRows(const CGImage& coverage, IntSize picture)
        : m_coverage(coverage)
        , m_picture(picture)
    {
        for (int x = 0; x < picture.width; ++x)
            m_columns.push_back(placeOf(x, picture.width, coverage.width()));
    }

    void apply(int y, std::uint8_t* rgba) const
    {
        const Place row = placeOf(y, m_picture.height, m_coverage.height());
        const std::uint8_t* above = m_coverage.row(row.first);
        const std::uint8_t* below = m_coverage.row(row.second);
        for (const Place& column : m_columns) {
            const unsigned left = mix(above[column.first], below[column.first], row.share);
            const unsigned right = mix(above[column.second], below[column.second], row.share);
            const unsigned value = (mix(left, right, column.share) + 32768) >> 16;
            rgba[3] = mul255(rgba[3], value);
            rgba += 4;
        }
    }

private:
    const CGImage& m_coverage;
    IntSize m_picture;
    std::vector<Place> m_columns;
};

} // namespace

CGImage convertedToSRGB(const CGImage& image)
{
    if (!image)
        return {};
    const CGImage coverage = image.mask() ? coverageOfMask(*image.mask()) : CGImage();
    if (image.mask() && !coverage)
        return {};
    const CGImageAlphaInfo alpha =
        image.hasAlpha() || coverage ? CGImageAlphaInfo::Last : CGImageAlphaInfo::NoneSkipLast;
    const CGImageLayout layout = CGImageLayout::rgba(image.width(), image.height(), alpha);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    if (!buffer)
        return {};
    const RowConverter rows(image, AlphaForm::Straight);
    const MaskRows mask(coverage, coverage ? image.size() : IntSize());
    parallelRows(0, image.height(), 2 * static_cast<std::size_t>(image.width()), [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            std::uint8_t* row = buffer.data() + static_cast<std::size_t>(y) * layout.bytesPerRow;
            rows.convert(0, y, image.width(), row);
            if (coverage)
                mask.apply(y, row);
        }
    });
    return CGImage::make(layout, std::move(buffer));
}

} // namespace lamina
