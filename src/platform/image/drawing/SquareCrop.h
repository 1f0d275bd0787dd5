#pragma once

#include "platform/image/pixels/UIImage.h"

namespace lamina {

/// The middle square of a picture as one of `edge` × `edge` points at the main screen's scale, opaque: where the
/// picture is clear it is black. The shorter side fills the square; what the longer one has beyond it is cut off alike
/// on both ends. Drawn upright. Empty without a picture, for an edge that is not positive and finite, or when memory is
/// short.
UIImage squareImageFromImage(const UIImage& image, double edge);

} // namespace lamina
