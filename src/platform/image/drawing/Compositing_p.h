#pragma once

#include <cstddef>
#include <cstdint>

namespace lamina {

/// Rows put over rows, source-over on premultiplied 8-bit values. Coverage, where it is not null, has one byte a pixel
/// and scales colour and alpha alike; `alpha` (65535 stands for 1) scales all of the row. The same bytes on every
/// processor.

/// R G B A over R G B A. Without coverage and with full alpha the result is src + round(dst·(255 - a)/255) exactly;
/// otherwise it is off by little more than half a step.
void compositePixels(std::uint8_t* dst, const std::uint8_t* src, const std::uint8_t* coverage, std::uint16_t alpha,
                     std::size_t pixels);

/// A row of a bitmap without alpha of its own, `channels` (1 or 4) bytes a pixel: colours premultiplied by `alphas`,
/// one byte a pixel (null: opaque).
void compositeComponents(int channels, std::uint8_t* dst, const std::uint8_t* src, const std::uint8_t* alphas,
                         const std::uint8_t* coverage, std::uint16_t alpha, std::size_t pixels);

/// A colour ready to be put down: premultiplied components on 16 bits, and the alpha that goes with them.
struct Ink {
    std::uint16_t component[4] = {};
    std::uint16_t alpha = 65535;
};

/// One colour over a row of `channels` (1 or 4) bytes a pixel; in a bitmap of R G B A the fourth component is the
/// alpha.
void compositeInk(int channels, std::uint8_t* dst, const Ink& ink, const std::uint8_t* coverage, std::size_t pixels);

/// dst = round(dst·(255 - coverage)/255); null coverage clears.
void eraseBytes(int channels, std::uint8_t* dst, const std::uint8_t* coverage, std::size_t pixels);

/// a = round(a·b/255), byte by byte.
void multiplyCoverage(std::uint8_t* a, const std::uint8_t* b, std::size_t count);

} // namespace lamina
