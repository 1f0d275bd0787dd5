#pragma once

#include <cstddef>
#include <cstdint>

namespace lamina::kernels {

/// Inner loops of resampling, on lanes chosen at run time. Sums are taken in the order of the taps and never fused, so that
/// every processor gives the same bytes. Rows don't overlap; nothing beyond the given counts is read or written.

/// out[i] = (add ? out[i] : 0) + Σ weights[t] · rows[t][i]
void weighBytes(const std::uint8_t* const* rows, const float* weights, int taps, std::size_t samples, bool add,
                float* out);

/// out[i] = Σ weights[t] · rows[t][i], rounded and cut to [0, 255].
void weighFloats(const float* const* rows, const float* weights, int taps, std::size_t samples, std::uint8_t* out);

void bytesToFloats(const std::uint8_t* in, std::size_t samples, float* out);
/// Rounded and cut to [0, 255].
void floatsToBytes(const float* in, std::size_t samples, std::uint8_t* out);

/// One output row of pixels of four channels: out[i] = Σ weights[i·taps + t] · in[first[i] - base + t].
void weighPixels(const float* in, int base, const int* first, const float* weights, int taps, int count, float* out);
/// The same for one channel.
void weighSamples(const float* in, int base, const int* first, const float* weights, int taps, int count, float* out);

/// Colours multiplied by the pixel's alpha, round(c·a/255). `out` may be `in`.
void premultiply(const std::uint8_t* in, std::size_t pixels, std::uint8_t* out);

/// Colours cut to the pixel's alpha: what a filter that overshoots may leave is no valid premultiplied pixel.
void cutToAlpha(std::uint8_t* row, std::size_t pixels);

/// Every pixel's fourth byte becomes 255.
void setOpaque(std::uint8_t* row, std::size_t pixels);

/// A picture to read at any place; four channels or one.
struct Texels {
    const std::uint8_t* data = nullptr;
    std::size_t stride = 0;
    int width = 0;
    int height = 0;
    int left = 0; ///< where the texels begin in what the path speaks of
    int top = 0;
};

/// Where a row of output pixels reads: the place of column 0 in source pixels (counted from edges), and the step to the next.
/// The places are computed from column 0 of the device, so that a row that begins elsewhere reads the same.
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
