#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/PictureBuilder_p.h"
#include "platform/image/codecs/PictureDecoding.h"

#include "platform/image/pixels/UIImage.h"

#include <cstdint>
#include <span>
#include <vector>

namespace lamina {

/// The largest whole number by which both sides can be divided (the rest rounded up) with at least `shortSide` pixels
/// left on the shorter one; 1 when nothing is to be reduced.
int reductionFactor(std::int64_t width, std::int64_t height, int shortSide);

/// The bytes that a collector holds, for `checkClaim`.
std::uint64_t collectorBytes(std::int64_t width, std::int64_t height, int factor);

/// Takes the full-size rows of a picture from top to bottom, RGBA with straight alpha, and keeps the mean of each
/// square of `factor` pixels (colours weighted by alpha; squares at the right and bottom edge may be cut). With the
/// factor 1 rows go straight to their place.
class RowCollector {
public:
    /// Empty (false) when memory is short. `translucent`: whether the rows carry alpha; without it
    /// their alpha bytes are 255.
    RowCollector(int width, int height, int factor, bool translucent, const DecodeOptions& options = {});
    explicit operator bool() const { return static_cast<bool>(m_builder); }

    /// Where the next row is to be written: 4 · width bytes. Valid until `advance`.
    std::uint8_t* row() { return m_factor == 1 ? m_builder.row(m_row) : m_full.data(); }
    /// Takes that row in. At most `height` times.
    void advance();
    /// To be called when every row was taken in. Fails when it was cancelled.
    Result<UIImage> finish(std::span<const std::uint8_t> iccProfile, UIImageOrientation orientation) &&;

private:
    void accumulate();
    void flush();

    int m_width;
    int m_height;
    int m_factor;
    bool m_translucent;
    int m_row = 0;
    PictureBuilder m_builder;
    std::vector<std::uint8_t> m_full;
    std::vector<std::uint32_t> m_sums;
};

} // namespace lamina
