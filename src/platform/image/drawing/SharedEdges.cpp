#include "platform/image/drawing/SharedEdges_p.h"

#include "platform/base/CGAffineTransform.h"
#include "platform/image/drawing/Rasterizer_p.h"
#include "platform/image/drawing/UIBezierPath.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

namespace lamina {

namespace {

constexpr int kFull = 255;
/// What the rounding of several outlines' coverage may leave of a pixel that they fill together.
constexpr int kRounding = 2;

bool isPart(std::uint8_t coverage)
{
    return coverage != 0 && coverage != kFull;
}

/// Calls `found(x)` for every pixel of a row that is covered in part, from the left.
template <class Found>
void eachPart(const std::uint8_t* row, int count, Found found)
{
    constexpr int kStep = sizeof(std::uint64_t);
    for (int x = 0; x < count; x += kStep) {
        const int n = std::min(kStep, count - x);
        std::uint64_t several = 0;
        std::memcpy(&several, row + x, static_cast<std::size_t>(n));
        if (several == 0 || several == ~std::uint64_t{0})
            continue; // most of a row lies inside or outside
        for (int i = x; i < x + n; ++i) {
            if (isPart(row[i]))
                found(i);
        }
    }
}

/// The pixels of an outline's edge that outlines below have begun to fill.
void addJoints(SharedEdges::Impl& edges, std::size_t outline)
{
    const CoverageMask& mask = edges.masks[outline];
    const IntRect& box = mask.bounds();
    for (int y = box.y; y < box.bottom(); ++y) {
        eachPart(mask.at(box.x, y), box.width, [&](int x) {
            const Joint joint{box.x + x, y};
            int claimed = 0;
            for (std::size_t below = 0; below < outline; ++below)
                claimed += edges.coverage(below, joint);
            if (claimed > 0 && claimed < kFull)
                edges.joints.push_back(joint);
        });
    }
}

} // namespace

std::uint8_t SharedEdges::Impl::coverage(std::size_t outline, const Joint& joint) const
{
    const IntRect& box = masks[outline].bounds();
    const bool inside = joint.x >= box.x && joint.x < box.right() && joint.y >= box.y && joint.y < box.bottom();
    return inside ? *masks[outline].at(joint.x, joint.y) : std::uint8_t{0};
}

SharedEdges::SharedEdges(const std::vector<UIBezierPath>& outlines, const IntRect& area)
{
    const auto impl = std::make_shared<Impl>();
    for (const UIBezierPath& outline : outlines) {
        Rasterizer rasterizer;
        rasterizer.addPath(outline, CGAffineTransform());
        impl->masks.push_back(rasterizer.render(area, {outline.usesEvenOddFillRule, true}));
    }
    for (std::size_t outline = 1; outline < impl->masks.size(); ++outline)
        addJoints(*impl, outline);
    const auto place = [](const Joint& joint) { return std::pair(joint.y, joint.x); };
    std::ranges::sort(impl->joints, {}, place); // one where three meet was found twice
    const auto isSame = [&](const Joint& one, const Joint& other) { return place(one) == place(other); };
    impl->joints.erase(std::unique(impl->joints.begin(), impl->joints.end(), isSame), impl->joints.end());
    m_impl = impl;
}

std::size_t SharedEdges::count() const
{
    return m_impl->masks.size();
}

JointPixels::JointPixels(const SharedEdges::Impl& edges, Surface& surface, const IntRect& clip)
    : m_edges(edges)
{
    for (const Joint& joint : edges.joints) {
        if (joint.x < clip.x || joint.x >= clip.right() || joint.y < clip.y || joint.y >= clip.bottom())
            continue;
        Pixel& pixel = m_pixels.emplace_back(Pixel{.place = joint, .ground = {}});
        std::uint8_t* const bytes = surface.at(joint.x, joint.y);
        std::copy_n(bytes, 4, pixel.ground.begin());
        std::fill_n(bytes, 4, std::uint8_t{0});
    }
}

/// Outlines that don't fill the pixel together lie side by side: their colours add up, and the ground counts where none
/// is. What an outline covers beyond that lies over those below, as far as it is opaque.
void JointPixels::add(Pixel& pixel, const std::uint8_t* drawn, int covered)
{
    float kept = 1;
    const int beyond = pixel.claimed + covered - kFull;
    if (pixel.claimed > 0 && beyond >= -kRounding)
        kept -= static_cast<float>(beyond * drawn[3]) / static_cast<float>(pixel.claimed * covered);
    for (std::size_t c = 0; c < 4; ++c)
        pixel.sum[c] = static_cast<float>(drawn[c]) + pixel.sum[c] * std::max(kept, 0.0f);
    pixel.claimed = std::min(kFull, pixel.claimed + covered);
}

void JointPixels::take(Surface& surface, std::size_t outline)
{
    for (Pixel& pixel : m_pixels) {
        const int covered = m_edges.coverage(outline, pixel.place);
        if (covered == 0)
            continue;
        std::uint8_t* const bytes = surface.at(pixel.place.x, pixel.place.y);
        add(pixel, bytes, covered);
        std::fill_n(bytes, 4, std::uint8_t{0});
    }
}

void JointPixels::putBack(Surface& surface) const
{
    for (const Pixel& pixel : m_pixels) {
        std::uint8_t* const bytes = surface.at(pixel.place.x, pixel.place.y);
        const float seen = 1 - pixel.sum[3] / kFull;
        for (std::size_t c = 0; c < 4; ++c) {
            const float value = pixel.sum[c] + static_cast<float>(pixel.ground[c]) * seen;
            bytes[c] = static_cast<std::uint8_t>(std::clamp(value + 0.5f, 0.0f, 255.0f));
        }
    }
}

} // namespace lamina
