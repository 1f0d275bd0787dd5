#pragma once

#include <cstddef>
#include <cstdint>

namespace lamina::kernels {

/// Inner loops of resampling, on lanes chosen at run time. Sums are taken in the order of the taps and never fused, so
/// that every processor gives the same bytes. Rows don't overlap; nothing beyond the given counts is read or written.

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

} // namespace lamina::kernels
