#pragma once

#include <cstddef>
#include <cstdint>

namespace lamina {

/// Between Y, Cb, Cr and red, green, blue of one matrix and range, in 8192ths (the formulas of ITU-R BT.601, which
/// other standards use with shares of their own).
struct YCbCrWeights {
    /// `red` and `blue`: their shares of Y; green has the rest. Full range: Y, Cb and Cr from 0 to 255; else 16 to 235,
    /// and 16 to 240.
    YCbCrWeights(double red, double blue, bool isFullRange);

    std::int16_t black = 0; ///< of Y, in whole steps
    // What colours take of Y, Cb and Cr.
    std::int16_t y = 0;
    std::int16_t redCr = 0;
    std::int16_t greenCb = 0;
    std::int16_t greenCr = 0;
    std::int16_t blueCb = 0;
    // What Y, Cb and Cr take of red, green and blue.
    std::int16_t luma[3] = {};
    std::int16_t cb[3] = {};
    std::int16_t cr[3] = {};
};

/// From the levels of one range to those of another: (in - from) · gain / 8192 + to.
struct LevelChange {
    std::int16_t from = 0;
    std::int16_t gain = 8192;
    std::int16_t to = 0;
};

// What is done to the rows of frames, on lanes chosen at run time: the same bytes on every processor, within one step
// of the exact value. Nothing beyond the given counts is read or written. A row of chroma is Cb Cr Cb Cr ... for each
// two pixels, the last of an odd number too; pixels are B G R A unless said otherwise.
namespace kernels {

/// Opaque pixels, R G B A where red comes first.
void pixelsOfYCbCr(const std::uint8_t* luma, const std::uint8_t* chroma, std::size_t pixels,
                   const YCbCrWeights& weights, bool redFirst, std::uint8_t* out);
/// Y of each pixel.
void lumaOfPixels(const std::uint8_t* in, std::size_t pixels, const YCbCrWeights& weights, std::uint8_t* luma);
/// Cb and Cr of the mean of each two by two pixels.
void chromaOfPixels(const std::uint8_t* upper, const std::uint8_t* lower, std::size_t pixels,
                    const YCbCrWeights& weights, std::uint8_t* chroma);
/// Opaque pixels of three bytes each, in the other order where `swaps`.
void pixelsOfTriples(const std::uint8_t* in, std::size_t pixels, bool swaps, std::uint8_t* out);
/// Y Cb Y Cr, or Cb Y Cr Y, into Y and chroma.
void splitPairs(const std::uint8_t* in, std::size_t pixels, bool chromaFirst, std::uint8_t* luma, std::uint8_t* chroma);
/// Cb and Cr side by side.
void interleave(const std::uint8_t* cb, const std::uint8_t* cr, std::size_t count, std::uint8_t* out);
/// The mean of each byte and what stands in `out`, halves up.
void averageInto(const std::uint8_t* in, std::size_t count, std::uint8_t* out);
/// `out` may be `in`.
void changeLevels(const std::uint8_t* in, std::size_t count, const LevelChange& change, std::uint8_t* out);

} // namespace kernels

} // namespace lamina
