#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/HueRotationFilter.h"

namespace lamina {

/// A look of its own: the hue turns, and colours shift besides, so that even hue 0 is not the picture that went in.
///
///   I = 0.595716 red - 0.474453 green - 0.321263 blue,   red = Y + 0.2563 I + 0.6210 Q
///
/// The weights of I don't sum to zero, so greys take on a tint; the rest is told at the base. `setHue` counts 120 to
/// the half turn: the default 90 turns by 3 pi / 4. The values still wrap at 360, which is three half turns. The look
/// was found with these numbers, and people know it so.
class GpuImageCustomHue : public HueRotationFilter {
public:
    GpuImageCustomHue();
    static FilterDescription describe();
};

} // namespace lamina
