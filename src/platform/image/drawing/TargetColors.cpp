#include "platform/image/drawing/TargetColors_p.h"

#include "platform/image/pixels/PixelArithmetic.h"
#include "platform/image/pixels/PixelKernels.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

// Device CMYK by full replacement of the grey part with black ink: PostScript Language Reference, third edition, 1999,
// "Conversion from DeviceRGB to DeviceCMYK".

namespace lamina {

namespace {

struct Components {
    double value[4] = {};
};

Components fromRGB(double r, double g, double b, CGColorSpace::Model model)
{
    switch (model) {
    case CGColorSpace::Model::Gray:
        return {{lumaOf(r, g, b)}};
    case CGColorSpace::Model::CMYK: {
        const double light = std::max({r, g, b});
        if (light <= 0)
            return {{0, 0, 0, 1}};
        return {{1 - r / light, 1 - g / light, 1 - b / light, 1 - light}};
    }
    default:
        return {{r, g, b}};
    }
}

} // namespace

TargetColors::TargetColors(const CGColorSpace& space)
    : m_space(space)
    , m_conversion(ConversionFromSRGB::make(space.iccProfile(), space.model()))
{
}

Ink TargetColors::ink(const UIColor& color, double alpha) const
{
    const auto unit = [](double v) { return v > 0 ? std::min(v, 1.0) : 0.0; };
    const double a = unit(color.alpha) * unit(alpha);
    const CGColorSpace::Model model = m_space.model();
    Components parts = fromRGB(unit(color.red), unit(color.green), unit(color.blue), model);
    if (m_conversion) {
        const auto byte = [&](double v) { return static_cast<std::uint8_t>(unit(v) * 255 + 0.5); };
        const std::array<std::uint8_t, 4> rgba{byte(color.red), byte(color.green), byte(color.blue), 255};
        std::uint8_t out[4] = {};
        convertStraight(rgba.data(), 1, out);
        for (std::size_t i = 0; i < 4; ++i)
            parts.value[i] = out[i] / 255.0;
    }
    Ink ink;
    ink.alpha = widened(a);
    for (std::size_t i = 0; i < 4; ++i)
        ink.component[i] = widened(parts.value[i] * a);
    if (model == CGColorSpace::Model::RGB)
        ink.component[3] = ink.alpha;
    else if (model == CGColorSpace::Model::AlphaOnly)
        ink.component[0] = ink.alpha;
    return ink;
}

void TargetColors::convertStraight(const std::uint8_t* rgba, int count, std::uint8_t* components) const
{
    const CGColorSpace::Model model = m_space.model();
    if (m_conversion) {
        m_conversion->convert(rgba, count, components);
        return;
    }
    const auto byte = [](double v) { return static_cast<std::uint8_t>(v * 255 + 0.5); };
    const int channels = model == CGColorSpace::Model::CMYK ? 4 : 1;
    for (int i = 0; i < count; ++i, rgba += 4, components += channels) {
        const Components parts = fromRGB(rgba[0] / 255.0, rgba[1] / 255.0, rgba[2] / 255.0, model);
        for (int c = 0; c < channels; ++c)
            components[c] = byte(parts.value[c]);
    }
}

void TargetColors::convertRow(const std::uint8_t* rgba, int count, std::uint8_t* components, std::uint8_t* alphas) const
{
    for (int i = 0; i < count; ++i)
        alphas[i] = rgba[4 * i + 3];
    const CGColorSpace::Model model = m_space.model();
    if (model == CGColorSpace::Model::AlphaOnly) {
        std::copy(alphas, alphas + count, components);
        return;
    }
    if (model == CGColorSpace::Model::Gray && !m_conversion) {
        kernels::grayOf(rgba, static_cast<std::size_t>(count), components, alphas);
        return;
    }
    std::vector<std::uint8_t> straight(rgba, rgba + 4 * static_cast<std::ptrdiff_t>(count));
    kernels::unpremultiply(straight.data(), static_cast<std::size_t>(count));
    convertStraight(straight.data(), count, components);
    const int channels = model == CGColorSpace::Model::Gray ? 1 : 4;
    for (int i = 0; i < count; ++i) {
        std::uint8_t* p = components + static_cast<std::ptrdiff_t>(channels) * i;
        for (int c = 0; c < channels; ++c)
            p[c] = mul255(p[c], alphas[i]);
        if (model == CGColorSpace::Model::RGB)
            p[3] = alphas[i];
    }
}

} // namespace lamina
