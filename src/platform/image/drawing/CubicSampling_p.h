#pragma once

#include <cstddef>
#include <cstdint>

namespace lamina::kernels {

// Pictures read at any place, on lanes chosen at run time. Sums are taken in the order of the taps and never fused, so
// that every processor gives the same bytes.

/// A picture to read at any place; four channels or one.
struct Texels {
    const std::uint8_t* data = nullptr;
    std::size_t stride = 0;
    int width = 0;
    int height = 0;
    int left = 0; ///< where the texels begin in what the path speaks of
    int top = 0;
};

/// Where a row of output pixels reads: the place of column 0 in source pixels (counted from edges), and the step to the
/// next. The places are computed from column 0 of the device, so that a row that begins elsewhere reads the same.
struct SamplePath {
    int first = 0; ///< column of the first output pixel
    double x = 0;
    double y = 0;
    double dx = 0;
    double dy = 0;
};

/// Keys' cubic convolution, a = -1/2, at every place of the path; places beyond the edge repeat it.
void sampleCubicPixels(const Texels& source, const SamplePath& path, int count, std::uint8_t* out);
void sampleCubicBytes(const Texels& source, const SamplePath& path, int count, std::uint8_t* out);
/// The pixel (of one or four bytes) under every place of the path.
void sampleNearest(const Texels& source, const SamplePath& path, int count, int channels, std::uint8_t* out);

} // namespace lamina::kernels
