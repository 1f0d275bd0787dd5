#pragma once

#include "platform/base/UIColor.h"
#include "platform/image/drawing/Compositing_p.h"
#include "platform/image/pixels/CGColorSpace.h"
#include "platform/image/pixels/ConversionFromSRGB.h"

#include <cstdint>
#include <optional>

namespace lamina {

/// The way from sRGB into the space of a bitmap:
///
///   grey   luma of the stored values
///   CMYK   K = 1 - max(R, G, B), C = (1 - R - K)/(1 - K) and so on
///
/// or by the space's ICC profile where it has one, see ConversionFromSRGB. Usable from several threads at once.
class TargetColors {
public:
    explicit TargetColors(const CGColorSpace& space);

    /// True for R G B A in sRGB: nothing needs converting.
    bool isPlain() const { return m_space.model() == CGColorSpace::Model::RGB && !m_conversion; }
    const CGColorSpace& space() const { return m_space; }

    /// A colour, its alpha multiplied by `alpha`, ready to be put down.
    Ink ink(const UIColor& color, double alpha) const;

    /// Premultiplied R G B A to premultiplied components (R G B A, or 1 or 4 bytes a pixel) and alphas.
    void convertRow(const std::uint8_t* rgba, int count, std::uint8_t* components, std::uint8_t* alphas) const;

private:
    void convertStraight(const std::uint8_t* rgba, int count, std::uint8_t* components) const;

    CGColorSpace m_space;
    std::optional<ConversionFromSRGB> m_conversion;
};

} // namespace lamina
