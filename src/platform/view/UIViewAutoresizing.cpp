#include "platform/view/UIViewAutoresizing.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace lamina {

namespace {

/// One axis of a rectangle in its parent.
struct Span {
    double start;
    double length;
};

/// `flexible`: the margin before it, its length, the margin behind it.
Span resized(Span span, const std::array<bool, 3>& flexible, double before, double after)
{
    const std::array<double, 3> parts = {span.start, span.length, before - span.start - span.length};
    double sum = 0;
    int count = 0;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        sum += flexible[i] ? parts[i] : 0;
        count += flexible[i] ? 1 : 0;
    }
    const auto grown = [&](std::size_t i) {
        if (!flexible[i])
            return parts[i];
        return parts[i] + (after - before) * (sum > 0 ? parts[i] / sum : 1.0 / count);
    };
    return {grown(0), std::max(0.0, grown(1))};
}

} // namespace

CGRect autoresized(const CGRect& rect, UIViewAutoresizing mask, CGSize before, CGSize after)
{
    using Mask = UIViewAutoresizing;
    const auto flexible = [mask](Mask near, Mask side, Mask far) {
        return std::array{hasFlag(mask, near), hasFlag(mask, side), hasFlag(mask, far)};
    };
    const Span across = resized({rect.origin.x, rect.size.width},
                                flexible(Mask::FlexibleLeftMargin, Mask::FlexibleWidth, Mask::FlexibleRightMargin),
                                before.width, after.width);
    const Span down = resized({rect.origin.y, rect.size.height},
                              flexible(Mask::FlexibleTopMargin, Mask::FlexibleHeight, Mask::FlexibleBottomMargin),
                              before.height, after.height);
    return {across.start, down.start, across.length, down.length};
}

} // namespace lamina
