#pragma once

#include "platform/image/pixels/CGImage.h"

#include "platform/base/CGGeometry.h"

#include <QImage>

namespace lamina {

/// A copy in Qt's own order of bytes. `image` is one that a context made (R, G, B, A premultiplied or opaque); null for
/// any other layout.
QImage qImage(const CGImage& image);

/// The same for the part inside `area`, which lies within the picture.
QImage qImage(const CGImage& image, const IntRect& area);

} // namespace lamina
