#pragma once

#include "platform/image/pixels/UIImage.h"

#include "platform/base/CGGeometry.h"

namespace lamina {

// Turning, flipping, cropping, scaling, masking and reflecting pictures on the CPU.
//
// Rules common to all. The picture that goes in is never changed. No result, the empty picture, comes of: no picture,
// an argument that is not finite, a size that is not positive or ends up below one pixel, a result longer than 2^18
// pixels on a side or larger than 2^27 pixels, and memory that runs short; none of these takes time or memory first.
// Sizes are in points and pixel counts are truncated. The result keeps `scale` and `imageOrientation` of its source
// unless said otherwise: orientation is not baked in, the stored pixels are worked on and the old tag goes on top.
// Pixels come out as A R G B of 8 bits in device RGB: premultiplied when there is alpha, with a skipped first byte
// otherwise; unless said otherwise there is alpha when the source's alpha info is 1 to 4. Interpolation is of high
// quality and edges are antialiased. Any thread; large pictures are split over the worker pool.

/// Turns the stored pixels about their centre, after mirroring them: `flipOverHorizontalAxis` mirrors x (left and right
/// change places), `verticalAxis` mirrors y. A positive angle turns counter-clockwise. The result is the bounding box
/// of the turned picture, each side truncated, always with alpha: its corners are transparent.
///
/// A multiple of a quarter turn, as near as a float tells one, moves whole pixels and rounds nothing: four quarters and
/// two flips give back the same bytes. Such a result keeps the source's layout when that is four bytes of RGB, so that
/// straight alpha stays as it is; where it had no alpha, the skipped byte becomes an alpha of 255.
UIImage rotateInRadians(const UIImage& image, float angle, bool flipOverHorizontalAxis, bool verticalAxis);
/// The same without flips.
UIImage rotateInRadians(const UIImage& image, float angle);
/// `rotateInRadians` of the angle × 0.017453293.
UIImage rotateInDegrees(const UIImage& image, float angle);

/// Top and bottom change places: a turn by 0 with `verticalAxis`.
UIImage verticalFlip(const UIImage& image);
/// Left and right change places: a turn by 0 with `flipOverHorizontalAxis`.
UIImage horizontalFlip(const UIImage& image);

/// Turns the stored pixels within their frame, counter-clockwise about its centre: the size stays, corners are cut off,
/// and what becomes empty is transparent. Always with alpha.
UIImage rotateImagePixelsInRadians(const UIImage& image, float angle);
/// The same of the angle × 0.017453293.
UIImage rotateImagePixelsInDegrees(const UIImage& image, float angle);

/// Where a crop is anchored. Any other number acts as `TopLeft`.
enum CropMode : int {
    CropModeTopLeft = 0,
    CropModeTopCenter = 1,
    CropModeTopRight = 2,
    CropModeBottomLeft = 3,
    CropModeBottomCenter = 4,
    CropModeBottomRight = 5,
    CropModeLeftCenter = 6,
    CropModeRightCenter = 7,
    CropModeCenter = 8,
};

/// A part of the picture of `size` points, sharing the source's bytes and layout. The anchor counts in points of the
/// picture's shown size; where the orientation swaps the sides, x and y are swapped in the stored pixels, without
/// regard to mirroring. A rectangle that ends between pixels takes those in whole; one that reaches beyond the picture
/// gives none.
UIImage cropToSize(const UIImage& image, CGSize size, int mode);
/// With mode 0.
UIImage cropToSize(const UIImage& image, CGSize size);

/// How a picture is brought to a size. Any other number acts as `Fill`.
enum ScaleMode : int {
    ScaleModeFill = 0,
    ScaleModeFit = 1,
    ScaleModeCover = 2,
};

/// The size that a picture of `own` points is scaled to, in points, of which `scaleToFillSize` truncates the pixels:
/// for those who must know it before they have the picture. Nothing useful comes of sides that are not positive and
/// finite.
CGSize scaledSize(CGSize own, CGSize size, int mode);
/// The same for `scaleByFactor`.
CGSize scaledSize(CGSize own, float factor);

/// `scaleToFillSize` of the picture's size × `factor`.
UIImage scaleByFactor(const UIImage& image, float factor);
/// By mode: `scaleToFitSize`, `scaleToCoverSize` or `scaleToFillSize`.
UIImage scaleToSize(const UIImage& image, CGSize size, int mode);
/// `scaleToFillSize`.
UIImage scaleToSize(const UIImage& image, CGSize size);
/// Stretched to exactly `size` points as shown.
UIImage scaleToFillSize(const UIImage& image, CGSize size);
/// The aspect kept, wholly inside `size`: 400 × 200 in 100 × 100 becomes 100 × 50.
UIImage scaleToFitSize(const UIImage& image, CGSize size);
/// The aspect kept, covering `size`: 400 × 200 over 100 × 100 becomes 200 × 100.
UIImage scaleToCoverSize(const UIImage& image, CGSize size);

/// The picture through a mask of the same pixel size (another size gives no picture): white shows and black hides. The
/// mask acts twice, as a clip while the picture is drawn and as a mask of what was drawn, so that a grey of S lets S²
/// through:
///
///   out = in · (S/255)²   for all four premultiplied channels, rounded once
///
/// S is the mask's grey value on black: a colour is brought to grey, a translucent pixel is darker. Of a
/// coverage-only mask it is the coverage. Orientations are not looked at. Always with alpha.
UIImage maskWithImage(const UIImage& image, const UIImage& mask);

/// A strip of `height` points and the picture's width that continues the picture below its bottom edge: mirrored, its
/// alpha running linearly from `fromAlpha` at the top to `toAlpha` at the bottom (both cut to [0, 1]). What reaches
/// beyond the picture is clear. Stored pixels are drawn, whatever the orientation. The result has the main screen's
/// scale, orientation up, and is R G B A premultiplied. No picture for height 0. Main thread, for the screen's scale.
UIImage reflectedImageWithHeight(const UIImage& image, unsigned height, float fromAlpha, float toAlpha);

} // namespace lamina
