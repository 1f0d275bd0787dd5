#include "platform/base/WorkerPool.h"
#include "platform/image/drawing/CGContext_p.h"
#include "platform/image/drawing/CoverageRow_p.h"
#include "platform/image/drawing/DeviceBounds_p.h"
#include "platform/image/drawing/ImageSampler_p.h"
#include "platform/image/drawing/RowBlender_p.h"
#include "platform/image/drawing/Surface_p.h"
#include "platform/image/drawing/TargetColors_p.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelArithmetic.h"

#include <algorithm>
#include <utility>

namespace lamina {

namespace {

constexpr int channelsOf(SurfaceKind kind)
{
    return kind == SurfaceKind::RGBA || kind == SurfaceKind::CMYK ? 4 : 1;
}

/// Where a picture's own components can be put down as they are: opaque ones of the bitmap's own space.
std::optional<SourcePixels> ownComponents(const CGImage& image, const TargetColors& colors)
{
    if (image.colorSpace() != colors.space() || image.colorSpace().model() == CGColorSpace::Model::RGB)
        return std::nullopt;
    return SourcePixels::components(image);
}

/// Neighbouring pixels of a row.
struct Span {
    int first;
    int count;
};

/// Without the pixels at both ends that are not covered: of a turned picture's box they are up to half.
Span coveredSpan(const std::uint8_t* coverage, int count)
{
    if (!coverage)
        return {0, count};
    const auto isCovered = [](std::uint8_t c) { return c != 0; };
    const std::uint8_t* end = coverage + count;
    const std::uint8_t* first = std::find_if(coverage, end, isCovered);
    while (end != first && !isCovered(end[-1]))
        --end;
    return {static_cast<int>(first - coverage), static_cast<int>(end - first)};
}

/// Rows of a picture put over rows of a bitmap.
class RowPainter {
public:
    RowPainter(const ImageSampler& sampler, const RowBlender& blender, const TargetColors& colors, SurfaceKind kind,
               bool own, std::size_t pixels)
        : m_band(sampler)
        , m_blender(blender)
        , m_colors(colors)
        , m_kind(kind)
        , m_own(own)
    {
        if (!own && !colors.isPlain()) {
            m_components.resize(pixels * static_cast<std::size_t>(channelsOf(kind)));
            m_alphas.resize(pixels);
        }
    }

    /// Pixels `span` of row y, counted from the left end of the sampler's area, as `dst` and `coverage` are.
    void paint(int y, const Span& span, std::uint8_t* dst, const std::uint8_t* coverage, std::uint16_t alpha)
    {
        const int channels = channelsOf(m_kind);
        const auto pixels = static_cast<std::size_t>(span.count);
        const std::uint8_t* row =
            m_band.row(y, span.first, span.count) + static_cast<std::ptrdiff_t>(span.first) * (m_own ? channels : 4);
        dst += static_cast<std::ptrdiff_t>(span.first) * channels;
        coverage = coverage ? coverage + span.first : nullptr;
        if (m_own) {
            // Coverage alone is its own alpha.
            m_blender.components(dst, row, m_kind == SurfaceKind::Alpha ? row : nullptr, coverage, alpha, pixels);
            return;
        }
        if (m_colors.isPlain()) {
            m_blender.pixels(dst, row, coverage, alpha, pixels);
            return;
        }
        m_colors.convertRow(row, span.count, m_components.data(), m_alphas.data());
        if (m_kind == SurfaceKind::RGBA)
            m_blender.pixels(dst, m_components.data(), coverage, alpha, pixels);
        else
            m_blender.components(dst, m_components.data(), m_alphas.data(), coverage, alpha, pixels);
    }

private:
    ImageSampler::Band m_band;
    const RowBlender& m_blender;
    const TargetColors& m_colors;
    SurfaceKind m_kind;
    bool m_own;
    std::vector<std::uint8_t> m_components;
    std::vector<std::uint8_t> m_alphas;
};

} // namespace

void CGContext::Impl::drawImage(const CGImage& image, const CGAffineTransform& toDevice)
{
    const ImageShape shape(image.size(), toDevice, clipBounds(), state.antialias);
    IntRect area = shape.bounds();
    CoverageMask mask;
    if (image.mask() && !area.isEmpty()) {
        const CGImage& through = *image.mask();
        const CGAffineTransform stretch =
            CGAffineTransform::scaling(static_cast<double>(image.width()) / through.width(),
                                       static_cast<double>(image.height()) / through.height());
        mask = maskCoverage(through, stretch.concatenating(toDevice), true);
        area = area.intersection(mask.bounds());
    }
    const bool seen = state.alpha > 0 || state.blendMode != CGBlendMode::Normal;
    Surface* surface = area.isEmpty() || !seen ? nullptr : target();
    if (!surface)
        return;
    const bool nearest = state.interpolation == Interpolation::None;
    const std::optional<SourcePixels> own = ownComponents(image, colors);
    const std::optional<ImageSampler> sampler =
        ImageSampler::make(own ? *own : SourcePixels::rgba(image), toDevice, area, nearest);
    if (!sampler)
        return;
    const std::uint16_t alpha = widened(state.alpha);
    const RowBlender rows = blender();
    const auto width = static_cast<std::size_t>(area.width);
    parallelRows(area.y, area.bottom(), width + sampler->rowCost(), [&](int begin, int end) {
        RowPainter painter(*sampler, rows, colors, surface->kind(), own.has_value(), width);
        CoverageRow coverage(width);
        for (int y = begin; y < end; ++y) {
            // The mask has the picture's outline in it already.
            coverage.start(mask ? mask.at(area.x, y) : shape.row(area.x, y, area.width, coverage.scratch()));
            if (state.clip.mask)
                coverage.multiply(state.clip.mask.at(area.x, y));
            if (const Span span = coveredSpan(coverage.get(), area.width); span.count > 0)
                painter.paint(y, span, surface->at(area.x, y), coverage.get(), alpha);
        }
    });
}

void CGContext::drawImage(const CGImage& image, const CGAffineTransform& imageToUser)
{
    if (!image)
        return;
    const CGAffineTransform toDevice = imageToUser.concatenating(m_impl->state.ctm);
    if (!toDevice.isFinite())
        return;
    const CGRect box =
        toDevice.boundingBox({0, 0, static_cast<double>(image.width()), static_cast<double>(image.height())});
    m_impl->withShadow(deviceCover(box), [&] { m_impl->drawImage(image, toDevice); });
}

void CGContext::drawImage(const CGImage& image, const CGRect& rect)
{
    if (!image || rect.isEmpty())
        return;
    drawImage(image, CGAffineTransform{rect.size.width / image.width(), 0, 0, -rect.size.height / image.height(),
                                       rect.minX(), rect.maxY()});
}

} // namespace lamina
