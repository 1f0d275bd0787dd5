#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace lamina::kernels {

// What is done to every pixel of a row by itself, on lanes chosen at run time: the same bytes on every processor.
// Nothing beyond the given counts is read or written. Pixels are R G B A unless said otherwise.

/// Colours multiplied by the pixel's alpha, round(c·a/255). `out` may be `in`.
void premultiply(const std::uint8_t* in, std::size_t pixels, std::uint8_t* out);

/// The way back, in place, by `unpremultiplied`: opaque pixels stay, clear ones become black.
void unpremultiply(std::uint8_t* row, std::size_t pixels);

/// True when every pixel's fourth byte is 255.
bool isOpaque(const std::uint8_t* row, std::size_t pixels);

/// Colours cut to the pixel's alpha: what a filter that overshoots may leave is no valid premultiplied pixel.
void cutToAlpha(std::uint8_t* row, std::size_t pixels);

/// Every pixel's fourth byte becomes 255.
void setOpaque(std::uint8_t* row, std::size_t pixels);

/// For each of a pixel's four bytes the one (0 to 3) that it is taken from.
using ByteOrder = std::array<std::uint8_t, 4>;

/// Pixels of any four bytes with their bytes in another order, and the bits of `filled` (four bytes as they lie in
/// memory) set in all of them. `out` may be `in`.
void reorder(const std::uint8_t* in, std::size_t pixels, ByteOrder order, std::uint32_t filled, std::uint8_t* out);

/// Premultiplied pixels in grey: `lumaOf` the straight colours times alpha, into `gray`; the alphas into `alphas`. A
/// pixel each is one byte.
void grayOf(const std::uint8_t* in, std::size_t pixels, std::uint8_t* gray, std::uint8_t* alphas);

} // namespace lamina::kernels
