#pragma once

#include "TestPictures.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/pixels/CGImage.h"

#include <functional>
#include <vector>

namespace lamina::test {

/// One component of each pixel, row by row.
using Grid = std::vector<std::vector<int>>;

constexpr int kRed = 0;
constexpr int kGreen = 1;
constexpr int kAlpha = 3;

/// A clear context of one pixel a point, y down.
inline CGContext canvas(int width, int height)
{
    return *CGContext::image({static_cast<double>(width), static_cast<double>(height)}, false, 1);
}

/// What `draw` leaves on a clear canvas.
inline CGImage drawn(int width, int height, const std::function<void(CGContext&)>& draw)
{
    CGContext context = canvas(width, height);
    draw(context);
    return context.makeImage();
}

/// The whole of a canvas as a rectangle.
inline CGRect whole(int width, int height)
{
    return {0, 0, static_cast<double>(width), static_cast<double>(height)};
}

} // namespace lamina::test
