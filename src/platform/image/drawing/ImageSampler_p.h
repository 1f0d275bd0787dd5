#pragma once

#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/CoverageMask_p.h"
#include "platform/image/drawing/RowResampler_p.h"
#include "platform/image/drawing/SourcePixels.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

namespace lamina {

/// The outline of a picture on the device: the device pixels that it covers, and how much of each.
class ImageShape {
public:
    /// `toDevice` takes the picture's pixels (edges counted from the top left) to device pixels; `clip` bounds the
    /// work.
    ImageShape(IntSize size, const CGAffineTransform& toDevice, const IntRect& clip, bool antialias);

    const IntRect& bounds() const { return m_bounds; }
    /// Coverage of pixels [x, x + count) of row y inside the bounds; null when all are covered wholly.
    const std::uint8_t* row(int x, int y, int count, std::uint8_t* scratch) const;

private:
    std::variant<RectCoverage, CoverageMask> m_coverage;
    IntRect m_bounds;
};

/// Reads a picture through an affine transform, row by row of the device. Upright transforms, mirroring and quarter
/// turns included, resample each axis by itself (AxisTable); others take Keys' cubic convolution at every pixel, from a
/// copy that was resampled to about the device's size first where the picture gets smaller. Places beyond the picture
/// repeat its edge.
class ImageSampler {
public:
    /// Rows of `area` (device pixels). Nothing when the transform can't be inverted or memory is short.
    static std::optional<ImageSampler> make(const SourcePixels& source, const CGAffineTransform& toDevice,
                                            const IntRect& area, bool nearest);

    /// Cost of a row in plain pixels.
    std::size_t rowCost() const;

    /// The work of one thread. Must not outlive the sampler.
    class Band {
    public:
        explicit Band(const ImageSampler& sampler);
        /// Row y of the area, of which pixels [first, first + count), counted from the area's left, are sure to be
        /// there; valid until the next call.
        const std::uint8_t* row(int y, int first, int count);

    private:
        const ImageSampler& m_sampler;
        std::optional<RowResampler::Band> m_upright;
        std::vector<std::uint8_t> m_out;
    };

private:
    ImageSampler() = default;
    bool prepareUpright(const SourcePixels& source, const CGAffineTransform& toDevice, bool nearest);
    bool prepareOblique(const SourcePixels& source, const CGAffineTransform& toDevice, bool nearest);

    IntRect m_area;
    std::optional<RowResampler> m_upright;
    std::optional<SourcePixels> m_texels; ///< of the oblique way: rows that can be read directly
    CGAffineTransform m_toTexels;         ///< from device pixels
    IntRect m_texelPart;                  ///< that the texels are, of all
    bool m_nearest = false;
};

} // namespace lamina
