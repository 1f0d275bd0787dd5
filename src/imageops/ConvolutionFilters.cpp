#include "imageops/ConvolutionKernels_p.h"
#include "imageops/DrawingSurface.h"
#include "imageops/ImageFilters.h"
#include "platform/base/Log.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/UIImage.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

namespace lamina {

namespace {

using filters::Convolution;

/// Drawn rows convolved into a surface of the same size. The rows that a kernel covers pass through a small ring, so
/// that every row is drawn once for each band of rows that sees it.
class ConvolvedRows {
public:
    ConvolvedRows(const DrawnRows& source, Convolution kind, long bias, DrawingSurface& target)
        : m_source(source)
        , m_target(target)
        , m_kind(kind)
        , m_radius(filters::radiusOf(kind))
        , m_bias(static_cast<int>(std::clamp(bias, -kLargestBias, kLargestBias)))
        , m_rowBytes(target.bytesPerRow())
    {
    }

    /// False when memory is short.
    bool run() const
    {
        constexpr int kFewestRows = 32; // a band reads up to four rows of its neighbours again
        const int most = 4 * static_cast<int>(WorkerPool::shared().concurrency());
        const int bands = std::clamp(m_source.height() / kFewestRows, 1, most);
        const std::size_t ringBytes = static_cast<std::size_t>(2 * m_radius + 1) * m_rowBytes;
        PixelBuffer rings = PixelBuffer::allocate(static_cast<std::size_t>(bands) * ringBytes);
        if (!rings)
            return false;
        WorkerPool::shared().parallelFor(0, bands, 1, [&](int first, int last) {
            for (int band = first; band < last; ++band)
                convolveBand(rowOf(band, bands), rowOf(band + 1, bands),
                             rings.data() + static_cast<std::size_t>(band) * ringBytes);
        });
        return true;
    }

private:
    static constexpr long kLargestBias = 4096;

    int rowOf(int band, int bands) const { return static_cast<int>(std::int64_t{m_source.height()} * band / bands); }

    void convolveBand(int first, int last, std::uint8_t* ring) const
    {
        const auto slot = [&](int y) { return ring + static_cast<std::size_t>(y % (2 * m_radius + 1)) * m_rowBytes; };
        int unread = std::max(0, first - m_radius);
        for (int y = first; y < last; ++y) {
            for (; unread <= std::min(y + m_radius, m_source.height() - 1); ++unread)
                m_source.read(unread, slot(unread));
            std::array<const std::uint8_t*, filters::kMostKernelRows> rows{};
            const bool whole = y >= m_radius && y + m_radius < m_source.height() && m_source.width() > 2 * m_radius;
            for (int i = 0; whole && i <= 2 * m_radius; ++i)
                rows[static_cast<std::size_t>(i)] = slot(y - m_radius + i);
            convolveRow(slot(y), whole ? rows.data() : nullptr, m_target.row(y));
        }
    }

    /// `rows` is null where the kernel reaches beyond the top, the bottom or both sides.
    void convolveRow(const std::uint8_t* middle, const std::uint8_t* const* rows, std::uint8_t* out) const
    {
        if (!rows) {
            makeBorder(middle, out, m_rowBytes);
            return;
        }
        const std::size_t side = 4 * static_cast<std::size_t>(m_radius);
        makeBorder(middle, out, side);
        makeBorder(middle + m_rowBytes - side, out + m_rowBytes - side, side);
        const std::uint8_t filled = m_source.hasAlpha() ? 0 : 255;
        filters::convolveRow(m_kind, {rows, m_rowBytes / 4, m_bias, filled}, out);
    }

    void makeBorder(const std::uint8_t* in, std::uint8_t* out, std::size_t bytes) const
    {
        if (m_kind != Convolution::EdgeDetection) {
            std::memcpy(out, in, bytes);
            return;
        }
        for (std::size_t i = 0; i < bytes; ++i)
            out[i] = i % 4 == 0 ? in[i] : 0;
    }

    const DrawnRows& m_source;
    DrawingSurface& m_target;
    Convolution m_kind;
    int m_radius;
    int m_bias;
    std::size_t m_rowBytes;
};

UIImage convolved(const UIImage& image, Convolution kind, long bias)
{
    const std::optional<DrawnRows> rows = workingRows(image);
    if (!rows)
        return {};
    std::optional<DrawingSurface> surface = DrawingSurface::make(rows->size(), rows->hasAlpha());
    if (!surface || !ConvolvedRows(*rows, kind, bias, *surface).run())
        return {};
    return std::move(*surface).makePicture();
}

} // namespace

UIImage edgeDetectionWithBias(const UIImage& image, long /*bias*/)
{
    return convolved(image, Convolution::EdgeDetection, 0);
}

UIImage embossWithBias(const UIImage& image, long bias)
{
    return convolved(image, Convolution::Emboss, bias);
}

UIImage sharpenWithBias(const UIImage& image, long bias)
{
    return convolved(image, Convolution::Sharpen, bias);
}

UIImage unsharpenWithBias(const UIImage& image, long bias)
{
    return convolved(image, Convolution::Unsharpen, bias);
}

UIImage gaussianBlurWithBias(const UIImage& image, long bias)
{
    logDebug(std::to_string(bias));
    return convolved(image, Convolution::GaussianBlur, bias);
}

} // namespace lamina
