#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/pixels/UIImage.h"

namespace lamina {

/// Draws the picture upright, stretched over `rect` (points of a context whose y runs down). Nothing without a picture.
void drawInRect(const UIImage& image, CGContext& context, const CGRect& rect);

} // namespace lamina
