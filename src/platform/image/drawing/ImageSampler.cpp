#include "platform/image/drawing/ImageSampler_p.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/drawing/AxisTable_p.h"
#include "platform/image/drawing/CubicSampling_p.h"
#include "platform/image/drawing/DeviceBounds_p.h"
#include "platform/image/drawing/Rasterizer_p.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/PixelKernels.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

// Reading through an affine transform: backward mapping, with the picture reduced beforehand where it gets smaller so
// that nothing aliases (P. S. Heckbert, "Fundamentals of Texture Mapping and Image Warping", 1989).

namespace lamina {

namespace {

/// Source pixels that the cubic kernel needs around a place, and some room for rounding.
constexpr double kKernelReach = 4;

bool isUpright(IntSize size, const CGAffineTransform& t)
{
    return std::abs(t.b) * size.width < kSamePlace && std::abs(t.c) * size.height < kSamePlace;
}

bool isQuarterTurn(IntSize size, const CGAffineTransform& t)
{
    return std::abs(t.a) * size.width < kSamePlace && std::abs(t.d) * size.height < kSamePlace;
}

double smallestStretch(const CGAffineTransform& t)
{
    // Singular values s, r of a 2 × 2 matrix: s² + r² is the sum of squares, s·r the determinant's size.
    const double squares = t.a * t.a + t.b * t.b + t.c * t.c + t.d * t.d;
    const double product = 2 * std::abs(t.determinant());
    return (std::sqrt(squares + product) - std::sqrt(std::max(0.0, squares - product))) / 2;
}

/// By how much each axis of the source is to be reduced, so that no direction gets smaller afterwards.
CGSize reductionFor(const CGAffineTransform& t)
{
    CGSize reduction{std::min(1.0, std::hypot(t.a, t.b)), std::min(1.0, std::hypot(t.c, t.d))};
    const double rest =
        smallestStretch(CGAffineTransform::scaling(1 / reduction.width, 1 / reduction.height).concatenating(t));
    // A strong shear squeezes one diagonal only: reducing all the way would blur the other one away.
    const double further = std::clamp(rest, 0.5, 1.0);
    return {reduction.width * further, reduction.height * further};
}

/// The table's taps counted from the first sample that it uses.
void startAtZero(AxisTable& table)
{
    for (int& first : table.first)
        first -= table.sourceBegin;
    table.sourceEnd -= table.sourceBegin;
    table.sourceBegin = 0;
}

std::optional<SourcePixels> resampledPart(const SourcePixels& source, AxisTable x, AxisTable y)
{
    const IntSize size{x.count(), y.count()};
    const int top = y.begin;
    const RowResampler resampler(source, std::move(x), std::move(y));
    const std::size_t rowBytes = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(source.channels());
    PixelBuffer buffer = PixelBuffer::allocate(rowBytes * static_cast<std::size_t>(size.height));
    if (!buffer)
        return std::nullopt;
    parallelRows(0, size.height, resampler.rowCost(), [&](int begin, int end) {
        RowResampler::Band band(resampler);
        for (int row = begin; row < end; ++row)
            std::memcpy(buffer.data() + static_cast<std::size_t>(row) * rowBytes, band.row(top + row), rowBytes);
    });
    return SourcePixels::fromBuffer(std::move(buffer), size, source);
}

} // namespace

ImageShape::ImageShape(IntSize size, const CGAffineTransform& toDevice, const IntRect& clip, bool antialias)
    : m_coverage(RectCoverage({}, antialias))
{
    const CGRect whole{0, 0, static_cast<double>(size.width), static_cast<double>(size.height)};
    if (!toDevice.isFinite())
        return;
    if (isUpright(size, toDevice) || isQuarterTurn(size, toDevice)) {
        const RectCoverage rect(toDevice.boundingBox(whole), antialias);
        m_bounds = rect.bounds().intersection(clip);
        m_coverage = rect;
        return;
    }
    Rasterizer rasterizer;
    rasterizer.addPolygon({toDevice.apply({0, 0}), toDevice.apply({whole.maxX(), 0}),
                           toDevice.apply({whole.maxX(), whole.maxY()}), toDevice.apply({0, whole.maxY()})});
    const CoverageMask mask = rasterizer.render(clip, {.evenOdd = false, .antialias = antialias});
    m_bounds = mask.bounds();
    m_coverage = mask;
}

const std::uint8_t* ImageShape::row(int x, int y, int count, std::uint8_t* scratch) const
{
    if (const auto* rect = std::get_if<RectCoverage>(&m_coverage))
        return rect->row(x, y, count, scratch);
    return std::get<CoverageMask>(m_coverage).at(x, y);
}

std::optional<ImageSampler> ImageSampler::make(const SourcePixels& source, const CGAffineTransform& toDevice,
                                               const IntRect& area, bool nearest)
{
    ImageSampler sampler;
    sampler.m_area = area;
    sampler.m_nearest = nearest;
    const IntSize size{source.width(), source.height()};
    const bool simple = isUpright(size, toDevice) || isQuarterTurn(size, toDevice);
    const bool ready =
        simple ? sampler.prepareUpright(source, toDevice, nearest) : sampler.prepareOblique(source, toDevice, nearest);
    return ready ? std::optional(std::move(sampler)) : std::nullopt;
}

bool ImageSampler::prepareUpright(const SourcePixels& source, const CGAffineTransform& t, bool nearest)
{
    const ResampleFilter filter = nearest ? ResampleFilter::Nearest : ResampleFilter::Best;
    const bool turned = !isUpright({source.width(), source.height()}, t);
    const AxisMapping across =
        turned ? AxisMapping{source.height(), t.c, t.tx} : AxisMapping{source.width(), t.a, t.tx};
    const AxisMapping down = turned ? AxisMapping{source.width(), t.b, t.ty} : AxisMapping{source.height(), t.d, t.ty};
    if (across.scale == 0 || down.scale == 0)
        return false;
    AxisTable x = makeAxisTable(across, m_area.x, m_area.right(), filter);
    AxisTable y = makeAxisTable(down, m_area.y, m_area.bottom(), filter);
    if (!turned) {
        m_upright.emplace(source, std::move(x), std::move(y));
        return true;
    }
    const std::optional<SourcePixels> part =
        source.transposed({y.sourceBegin, x.sourceBegin, y.sourceEnd - y.sourceBegin, x.sourceEnd - x.sourceBegin});
    if (!part)
        return false;
    startAtZero(x);
    startAtZero(y);
    m_upright.emplace(*part, std::move(x), std::move(y));
    return true;
}

bool ImageSampler::prepareOblique(const SourcePixels& source, const CGAffineTransform& toDevice, bool nearest)
{
    const std::optional<CGAffineTransform> inverse = toDevice.inverted();
    if (!inverse)
        return false;
    const CGSize reduction = nearest ? CGSize{1, 1} : reductionFor(toDevice);
    const CGAffineTransform reduce = CGAffineTransform::scaling(reduction.width, reduction.height);
    m_toTexels = inverse->concatenating(reduce);
    // Only what the area can see is made ready.
    const CGRect area{static_cast<double>(m_area.x), static_cast<double>(m_area.y), static_cast<double>(m_area.width),
                      static_cast<double>(m_area.height)};
    const IntSize size{static_cast<int>(std::ceil(source.width() * reduction.width)),
                       static_cast<int>(std::ceil(source.height() * reduction.height))};
    const IntRect seen = deviceCover(m_toTexels.boundingBox(area).insetBy(-kKernelReach, -kKernelReach))
                             .intersection({0, 0, size.width, size.height});
    if (seen.isEmpty())
        return false;
    if (reduction == CGSize{1, 1} && source.isDirect()) {
        m_texels = source;
        m_texelPart = {0, 0, source.width(), source.height()};
        return true;
    }
    m_texels = reduction == CGSize{1, 1}
                   ? source.directPart(seen)
                   : resampledPart(source, makeAxisTable({source.width(), reduction.width, 0}, seen.x, seen.right()),
                                   makeAxisTable({source.height(), reduction.height, 0}, seen.y, seen.bottom()));
    m_texelPart = seen;
    return m_texels.has_value();
}

std::size_t ImageSampler::rowCost() const
{
    constexpr std::size_t kObliquePixel = 16;
    return m_upright ? m_upright->rowCost() : kObliquePixel * static_cast<std::size_t>(m_area.width);
}

ImageSampler::Band::Band(const ImageSampler& sampler)
    : m_sampler(sampler)
{
    if (sampler.m_upright)
        m_upright.emplace(*sampler.m_upright);
    else
        m_out.resize(static_cast<std::size_t>(sampler.m_area.width) *
                     static_cast<std::size_t>(sampler.m_texels->channels()));
}

const std::uint8_t* ImageSampler::Band::row(int y, int first, int count)
{
    if (m_upright)
        return m_upright->row(y);
    const SourcePixels& source = *m_sampler.m_texels;
    const CGAffineTransform& t = m_sampler.m_toTexels;
    const CGPoint start = t.apply({0.5, y + 0.5});
    const IntRect& part = m_sampler.m_texelPart;
    const kernels::SamplePath path{m_sampler.m_area.x + first, start.x, start.y, t.a, t.b};
    const kernels::Texels texels{source.directRow(0), source.stride(), source.width(), source.height(), part.x, part.y};
    const auto pixels = static_cast<std::size_t>(count);
    std::uint8_t* out = m_out.data() + static_cast<std::ptrdiff_t>(first) * source.channels();
    if (m_sampler.m_nearest)
        kernels::sampleNearest(texels, path, count, source.channels(), out);
    else if (source.channels() == 4)
        kernels::sampleCubicPixels(texels, path, count, out);
    else
        kernels::sampleCubicBytes(texels, path, count, out);
    if (source.forcesOpaque())
        kernels::setOpaque(out, pixels);
    else if (source.hasAlpha() && !m_sampler.m_nearest && source.channels() == 4)
        kernels::cutToAlpha(out, pixels);
    return m_out.data();
}

} // namespace lamina
