#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/CGColorSpace.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace lamina {

/// Pixels of four bytes in memory, rows from top to bottom, `bytesPerRow` apart.
struct PixelRows {
    std::uint8_t* first = nullptr;
    int width = 0;
    int height = 0;
    std::size_t bytesPerRow = 0;
};

/// The model that an ICC profile's header states; alpha only when there is no such header or it states another one.
CGColorSpace::Model profileModel(std::span<const std::uint8_t> iccProfile);

/// The way from the colours of an ICC profile to sRGB, for pixels of four bytes:
///
///   RGB    R G B A to R G B A        Gray   V _ _ A to R G B A        CMYK   C M Y K (255 full ink) to R G B 255
///
/// Alpha is straight and is not touched. Relative colorimetric with black point compensation for RGB and grey, so that
/// colours inside sRGB keep their look exactly; perceptual for CMYK, whose profiles map the gamut by their own tables.
/// A cheap value (the transform is shared); converting is usable from several threads at once.
class ColorConversion {
public:
    /// Nothing when there is nothing to do: the profile is absent, can't be used or is not of the model, or it is sRGB
    /// in effect (no colour of a grid through the whole space moves by more than 1/255).
    static std::optional<ColorConversion> toSRGB(std::span<const std::uint8_t> iccProfile, CGColorSpace::Model model);

    /// `count` pixels in place, four bytes each.
    void convertRow(std::uint8_t* pixels, int count) const;
    /// All rows in place, shared out to the worker pool. Once `cancelled` is set, which any thread may do, the rows
    /// that nobody has begun are left as they are.
    void convertRows(const PixelRows& rows, const std::atomic<bool>* cancelled = nullptr) const;

private:
    using Transform = std::shared_ptr<void>;
    using GreyTable = std::array<std::uint8_t, 3 * 256>;

    ColorConversion(CGColorSpace::Model model, Transform transform);
    static std::optional<ColorConversion> fromProfile(void* profile, CGColorSpace::Model model);
    bool changesNothing() const;

    CGColorSpace::Model m_model;
    Transform m_transform;
    std::shared_ptr<const GreyTable> m_greys; ///< in place of the transform, which is slow for one component
};

/// Primaries and white point of an RGB space, by x and y of the CIE 1931 diagram; those of sRGB unless set.
struct Chromaticities {
    CGPoint white{0.3127, 0.3290};
    CGPoint red{0.64, 0.33};
    CGPoint green{0.30, 0.60};
    CGPoint blue{0.15, 0.06};
};

/// An ICC profile of RGB with these primaries whose linear light is value^gamma, as files without a profile may state
/// it. Empty for impossible values.
std::vector<std::uint8_t> makeProfile(const Chromaticities& primaries, double gamma);

/// Device CMYK (C M Y K, 255 full ink) to R G B 255 in place by the plain formula R = (1 - C)(1 - K) and its siblings.
/// `convertDeviceCMYK` of rows shares them out to the worker pool.
void convertDeviceCMYK(std::uint8_t* pixels, int count);
void convertDeviceCMYK(const PixelRows& rows);

/// An ICC profile of sRGB: version 2, the same bytes every time.
std::span<const std::uint8_t> sRGBProfile();

} // namespace lamina
