#pragma once

#include "TestPictures.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "platform/image/pixels/CGImage.h"

#include <array>
#include <functional>
#include <memory>
#include <vector>

namespace lamina::test {

/// Red, green, blue, alpha, 0 to 1, as stored.
using Color = std::array<double, 4>;

/// A picture as a texture, in double precision. The coordinate (0, 0) is the picture's top left corner, (1, 1) its
/// bottom right.
class Texture {
public:
    /// Four bytes a pixel in the order R G B A, whatever the alpha is said to mean: what GL sees.
    explicit Texture(const CGImage& image);
    int width() const { return m_image.width(); }
    int height() const { return m_image.height(); }
    /// Clamped to the edge.
    Color texel(int x, int y) const;
    /// GL_LINEAR, clamped to the edge.
    Color sample(double u, double v) const;

private:
    CGImage m_image;
};

/// What a filter of one input makes of the place (u, v), the centre of a pixel of the output.
using Formula = std::function<Color(const Texture& in, double u, double v)>;
/// The same for two inputs; the output has the size of the first.
using TwoInputFormula = std::function<Color(const Texture& first, const Texture& second, double u, double v)>;

/// Straight alpha where translucent, else opaque with 255 in the skipped byte. Noise takes all bytes, alpha too.
CGImage noisePicture(int width, int height, bool translucent, unsigned seed = 1);
CGImage flatPicture(int width, int height, Rgba color, bool translucent);
/// Red grows to the right, green downwards, blue along the falling diagonal, alpha (if translucent) to the left.
CGImage gradientPicture(int width, int height, bool translucent);
/// Flat, gradient and noise, opaque and translucent, odd sizes down to a single pixel.
std::vector<CGImage> usualPictures();

/// The formula at every pixel centre, held within 0 to 1 and rounded to 8 bits; a picture with straight alpha.
CGImage evaluated(const CGImage& input, const Formula& formula);

struct Difference {
    int largest = 0;
    int x = 0;
    int y = 0;
};
/// The largest difference of a component, and where. Sizes must be equal.
Difference largestDifference(const CGImage& one, const CGImage& other);
/// Fails, naming the worst pixel, when sizes differ or a component by more than `tolerance`.
void expectPicture(const CGImage& got, const CGImage& wanted, int tolerance = 2);

/// Runs `filter` by newCGImageByFilteringCGImage on `input` and compares with `formula`.
void expectFilter(GPUImageOutput& filter, const CGImage& input, const Formula& formula, int tolerance = 2);

/// What comes out of the filter for `first` in slot 0 and `second` in slot 1.
CGImage filteredPair(GPUImageTwoInputFilter& filter, const CGImage& first, const CGImage& second);
void expectTwoInputFilter(GPUImageTwoInputFilter& filter, const CGImage& first, const CGImage& second,
                          const TwoInputFormula& formula, int tolerance = 2);

/// The picture as a filter sees it through the rotation of its slot.
CGImage turned(const CGImage& input, GPUImageRotationMode rotation);
/// All eight rotations: `input` pushed into a new filter whose slot 0 has that rotation. The formula sees the turned
/// picture.
void expectFilterInAllRotations(const std::function<std::shared_ptr<GPUImageFilter>()>& make, const CGImage& input,
                                const Formula& formula, int tolerance = 2);

/// Skips nothing: fails with the cause when no GL context can be had.
void requireContext();

} // namespace lamina::test
