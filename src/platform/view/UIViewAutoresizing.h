#pragma once

#include "platform/base/CGGeometry.h"

namespace lamina {

/// What of a view gives way when its parent's size changes: its sides, and its distances from the parent's edges. A set
/// of flags, whose values are the platform's.
enum class UIViewAutoresizing : unsigned {
    None = 0,
    FlexibleLeftMargin = 1 << 0,
    FlexibleWidth = 1 << 1,
    FlexibleRightMargin = 1 << 2,
    FlexibleTopMargin = 1 << 3,
    FlexibleHeight = 1 << 4,
    FlexibleBottomMargin = 1 << 5,
};

/// All flags of both.
constexpr UIViewAutoresizing operator|(UIViewAutoresizing one, UIViewAutoresizing other)
{
    return static_cast<UIViewAutoresizing>(static_cast<unsigned>(one) | static_cast<unsigned>(other));
}

/// Whether `mask` has one of `flags`.
constexpr bool hasFlag(UIViewAutoresizing mask, UIViewAutoresizing flags)
{
    return (static_cast<unsigned>(mask) & static_cast<unsigned>(flags)) != 0;
}

/// Where `rect`, which stands in a parent of size `before`, stands once that has size `after`. In each axis the
/// flexible ones of margin, side and margin share the parent's change in proportion to their lengths, alike where those
/// sum up to nothing (or less: a view may stick out). Without a flexible one the place from the top left stays. No side
/// becomes shorter than 0.
CGRect autoresized(const CGRect& rect, UIViewAutoresizing mask, CGSize before, CGSize after);

} // namespace lamina
