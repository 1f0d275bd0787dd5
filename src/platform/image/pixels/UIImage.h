#pragma once

#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/CGImage.h"

namespace lamina {

/// How stored pixels must be turned to be seen upright. `Left` means: stored pixels are turned a quarter to the left
/// (counter-clockwise) to be shown; the mirrored ones are mirrored left to right before that turn. The values are the
/// platform's.
enum class UIImageOrientation {
    Up = 0,            ///< EXIF 1
    Down = 1,          ///< EXIF 3
    Left = 2,          ///< EXIF 8
    Right = 3,         ///< EXIF 6
    UpMirrored = 4,    ///< EXIF 2
    DownMirrored = 5,  ///< EXIF 4
    LeftMirrored = 6,  ///< EXIF 5
    RightMirrored = 7, ///< EXIF 7
};

/// True for the four orientations that swap width and height.
constexpr bool swapsSides(UIImageOrientation orientation)
{
    return orientation == UIImageOrientation::Left || orientation == UIImageOrientation::Right ||
           orientation == UIImageOrientation::LeftMirrored || orientation == UIImageOrientation::RightMirrored;
}

/// The orientation of an EXIF tag's value; anything but 1 to 8 means upright.
UIImageOrientation orientationFromExif(int value);

/// The linear map of an orientation that takes stored pixels of `stored` size to shown ones (both with y down).
CGAffineTransform orientationTransform(UIImageOrientation orientation, IntSize stored);

/// A picture with its scale (pixels per point, above zero) and orientation. A cheap value that shares its pixels; the
/// empty UIImage is "no picture". Usable from any thread.
class UIImage {
public:
    UIImage() = default;
    explicit UIImage(CGImage image, double scale = 1, UIImageOrientation orientation = UIImageOrientation::Up);

    explicit operator bool() const { return static_cast<bool>(m_image); }

    /// The stored pixels, before any turn.
    const CGImage& cgImage() const { return m_image; }
    double scale() const { return m_scale; }
    UIImageOrientation imageOrientation() const { return m_orientation; }

    /// Size in points as shown: stored sides by the scale, swapped where the orientation swaps them.
    CGSize size() const;
    /// Size in pixels as shown.
    IntSize pixelSize() const;

    /// The same picture with its pixels moved so that the orientation is `Up`; itself when it is upright already.
    /// A pure move of whole pixels: nothing is interpolated. Empty when memory is short.
    UIImage upright() const;

    /// Same pixels in memory, scale and orientation.
    bool isIdenticalTo(const UIImage& other) const;

private:
    CGImage m_image;
    double m_scale = 1;
    UIImageOrientation m_orientation = UIImageOrientation::Up;
};

} // namespace lamina
