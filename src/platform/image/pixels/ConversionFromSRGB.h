#pragma once

#include "platform/image/pixels/CGColorSpace.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <utility>

namespace lamina {

/// The way from sRGB to the colours of an ICC profile, with black point compensation: perceptual for CMYK, whose
/// profiles map what can't be printed by their own tables; relative colorimetric for RGB and grey.
///
/// A cheap value (the transform is shared), usable from several threads at once. Made once for many pixels: a profile
/// of inks takes some ten milliseconds to prepare.
class ConversionFromSRGB {
public:
    /// Nothing when the profile is absent, can't be used or is not of the model, or when it is sRGB in effect.
    static std::optional<ConversionFromSRGB> make(std::span<const std::uint8_t> iccProfile, CGColorSpace::Model model);

    /// `count` pixels of R G B A, whose alpha is not looked at, into 1 byte (grey) or 4 each: C M Y K with 255 full
    /// ink, or R G B and a byte that is left as it was. `components` may be `rgba`.
    void convert(const std::uint8_t* rgba, int count, std::uint8_t* components) const;

private:
    explicit ConversionFromSRGB(std::shared_ptr<void> transform)
        : m_transform(std::move(transform))
    {
    }

    std::shared_ptr<void> m_transform;
};

} // namespace lamina
