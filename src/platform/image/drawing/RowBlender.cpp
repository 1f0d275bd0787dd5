#include "platform/image/drawing/RowBlender_p.h"

#include "platform/image/pixels/PixelArithmetic.h"

namespace lamina {

void RowBlender::ink(std::uint8_t* dst, const Ink& ink, const std::uint8_t* coverage, std::size_t pixels) const
{
    if (m_mode == CGBlendMode::Normal) {
        compositeInk(m_channels, dst, ink, coverage, pixels);
        return;
    }
    std::uint8_t color[4] = {};
    for (std::size_t c = 0; c < 4; ++c)
        color[c] = narrowed(ink.component[c]);
    replace(dst, color, 0, coverage, 65535, pixels);
}

void RowBlender::pixels(std::uint8_t* dst, const std::uint8_t* src, const std::uint8_t* coverage, std::uint16_t alpha,
                        std::size_t pixels) const
{
    if (m_mode == CGBlendMode::Normal)
        compositePixels(dst, src, coverage, alpha, pixels);
    else
        replace(dst, src, 4, coverage, alpha, pixels);
}

void RowBlender::components(std::uint8_t* dst, const std::uint8_t* src, const std::uint8_t* alphas,
                            const std::uint8_t* coverage, std::uint16_t alpha, std::size_t pixels) const
{
    if (m_mode == CGBlendMode::Normal)
        compositeComponents(m_channels, dst, src, alphas, coverage, alpha, pixels);
    else
        replace(dst, src, static_cast<std::size_t>(m_channels), coverage, alpha, pixels);
}

void RowBlender::replace(std::uint8_t* dst, const std::uint8_t* src, std::size_t step, const std::uint8_t* coverage,
                         std::uint16_t alpha, std::size_t pixels) const
{
    const auto channels = static_cast<std::size_t>(m_channels);
    if (m_mode == CGBlendMode::Clear)
        eraseBytes(m_channels, dst, coverage, pixels);
    for (std::size_t i = 0; i < pixels && m_mode == CGBlendMode::Copy; ++i, src += step) {
        const unsigned part = coverage ? coverage[i] : 255;
        for (std::size_t c = 0; c < channels; ++c) {
            const unsigned put = narrowed((widened(src[c]) * (alpha + 1u)) >> 16);
            std::uint8_t& d = dst[i * channels + c];
            d = mul255(put * part + d * (255 - part), 1);
        }
    }
    for (std::size_t i = 0; i < pixels && m_keepsOpaque; ++i)
        dst[4 * i + 3] = 255;
}

} // namespace lamina
