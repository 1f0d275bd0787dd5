#pragma once

#include "platform/image/pixels/CGImage.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/pixels/UIImage.h"

#include <QColor>
#include <QImage>

namespace lamina {

/// A copy in Qt's own order of bytes. `image` is one that a context made (R, G, B, A premultiplied or opaque); null for
/// any other layout.
QImage qImage(const CGImage& image);

/// The same for the part inside `area`, which lies within the picture.
QImage qImage(const CGImage& image, const IntRect& area);

/// The pixels of `area` of such a picture, put at the same place of one of its size in Qt's order
/// (`ARGB32_Premultiplied`).
void copyPixels(const CGImage& image, const IntRect& area, QImage& target);

/// The colour as our contexts take it, its alpha times `alpha`.
UIColor uiColor(const QColor& color, double alpha = 1);

/// Draws a picture over `rect`, on white where it is translucent: `paper` says how far the white reaches.
void drawOnPaper(const UIImage& picture, CGContext& context, const CGRect& paper, const CGRect& rect);

} // namespace lamina
