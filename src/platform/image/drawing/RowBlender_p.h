#pragma once

#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/Compositing_p.h"

#include <cstddef>
#include <cstdint>

namespace lamina {

/// Puts rows over rows of a bitmap by a blend mode. Arguments as in Compositing_p.h.
class RowBlender {
public:
    /// `keepsOpaque`: of R G B A whose alpha stays 255.
    RowBlender(CGBlendMode mode, int channels, bool keepsOpaque)
        : m_mode(mode)
        , m_channels(channels)
        , m_keepsOpaque(keepsOpaque)
    {
    }

    /// One colour.
    void ink(std::uint8_t* dst, const Ink& ink, const std::uint8_t* coverage, std::size_t pixels) const;
    /// R G B A.
    void pixels(std::uint8_t* dst, const std::uint8_t* src, const std::uint8_t* coverage, std::uint16_t alpha,
                std::size_t pixels) const;
    /// Colours of a bitmap without alpha of its own, premultiplied by `alphas`.
    void components(std::uint8_t* dst, const std::uint8_t* src, const std::uint8_t* alphas,
                    const std::uint8_t* coverage, std::uint16_t alpha, std::size_t pixels) const;

private:
    /// In the modes other than Normal; `step` bytes from one pixel of `src` to the next.
    void replace(std::uint8_t* dst, const std::uint8_t* src, std::size_t step, const std::uint8_t* coverage,
                 std::uint16_t alpha, std::size_t pixels) const;

    CGBlendMode m_mode;
    int m_channels;
    bool m_keepsOpaque;
};

} // namespace lamina
