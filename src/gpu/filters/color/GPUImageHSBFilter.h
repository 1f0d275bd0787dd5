#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/filters/color/GPUImageColorMatrixFilter.h"

namespace lamina {

/// Hue, saturation and brightness by one colour matrix: each operation acts on what the former ones have made, without
/// a pass or a rounding in between.
///
///   rotateHue:          turns a colour's difference from its grey, in the plane of equal luminance
///   adjustSaturation:   s moves every colour: Y + s (in - Y)
///   adjustBrightness:   b multiplies red, green and blue
///
/// The turn is Paul Haeberli's ("Matrix Operations for Image Processing", 1993): about the axis of greys, sheared so
/// that the luminance 0.3 red + 0.59 green + 0.11 blue stays. With l these weights and X the matrix of the vector
/// product with (1, 1, 1) / sqrt 3, and all columns of G being l turned on its side (each row of G is l),
///
///   M = G + (I - G) (cos a + X sin a)
///
/// Greys stay as they are at any angle. Saturation goes by Y = 0.2125 red + 0.7154 green + 0.0721 blue (Rec. ITU-R
/// BT.709). All on straight values as stored; only the result is cut to 0 to 1. At first, and after `reset`, the matrix
/// is the identity.
class GPUImageHSBFilter : public GPUImageColorMatrixFilter {
public:
    GPUImageHSBFilter();
    static FilterDescription describe();

    /// Takes back all operations.
    void reset();
    /// By an angle in degrees, from red towards green.
    void rotateHue(float degrees);
    /// 0 is grey, 1 changes nothing. Factors and what comes of them stop at 10000 either way.
    void adjustSaturation(float factor);
    /// 0 is black, 1 changes nothing.
    void adjustBrightness(float factor);

private:
    /// By rows, red, green and blue alone.
    void applyMatrix(const GPUMatrix3x3& matrix);
};

} // namespace lamina
