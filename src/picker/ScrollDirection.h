#pragma once

#include "platform/base/CGGeometry.h"

namespace lamina {

/// Where content has moved last. The values are those of the screens that scroll.
enum class ScrollDirection { Up = 0, Down = 1, Right = 2, Left = 3, None = 4 };

/// What is remembered of a scrolled view from one event to the next. A plain value.
struct ScrollTracking {
    CGPoint lastContentOffset; ///< the content point at the top left of the view, points
    ScrollDirection scrollDirection = ScrollDirection::Up;

    friend bool operator==(const ScrollTracking&, const ScrollTracking&) = default;
};

/// Takes the offset that the view has now. A step up or down counts before one to the side.
constexpr void yms_scrollViewDidScroll(ScrollTracking& tracking, CGPoint contentOffset)
{
    const CGPoint last = tracking.lastContentOffset;
    tracking.scrollDirection = last.y > contentOffset.y   ? ScrollDirection::Down
                               : last.y < contentOffset.y ? ScrollDirection::Up
                               : last.x > contentOffset.x ? ScrollDirection::Right
                               : last.x < contentOffset.x ? ScrollDirection::Left
                                                          : ScrollDirection::None;
    tracking.lastContentOffset = contentOffset;
}

} // namespace lamina
