#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/core/TypedValue.h"
#include "gpu/kernels/KernelFrame.h"
#include "platform/gl/GLHeaders.h"

#include <span>
#include <string>
#include <utility>

namespace lamina {

/// Tints a picture by its luminance: black stays black, white white, the middle takes the colour. What the monochrome
/// filter and the tinted looks stand on.
///
///   Y = 0.2125 red + 0.7154 green + 0.0721 blue
///   tint = 2 Y f                      where Y < 0.5
///   tint = 1 - 2 (1 - Y) (1 - f)      elsewhere
///   out.rgb = (1 - intensity) in.rgb + intensity tint,   out.a = in.a
///
/// f is the tint colour, straight, as stored, like `in`. An intensity above 1 goes on past the tinted picture; the
/// result is cut to 0 to 1.
class LuminanceTintFilter : public GPUImageFilter {
public:
    /// Share of the tint.
    float intensity() const { return m_intensity; }
    void setIntensity(float intensity);

    const GPUVector4& color() const { return m_color; }
    /// Red, green, blue; the fourth number is kept and used by nobody.
    void setColor(const GPUVector4& color);
    /// Changes the tint and leaves `color` as it is.
    void setColorRed(float red, float green, float blue);

protected:
    FilterKernel kernel() const override;

    /// Which number of the colour tints which channel.
    enum class ColorOrder { RedGreenBlue, GreenRedBlue };
    LuminanceTintFilter(ColorOrder order, float intensity, const GPUVector4& color);

    /// What a subclass offers by name: both properties and "setColorRed:green:blue:".
    template <class Filter>
    static FilterDescription describeTint(std::string className, std::string help, float intensity,
                                          const GPUVector4& color);

private:
    ColorOrder m_order;
    GLint m_intensityUniform;
    GLint m_filterColorUniform;
    float m_intensity = 0;
    GPUVector4 m_color;
};

template <class Filter>
FilterDescription LuminanceTintFilter::describeTint(std::string className, std::string help, float intensity,
                                                    const GPUVector4& color)
{
    return filterDescription<Filter>(
        std::move(className), "editor", 1, std::move(help),
        {filterProperty("intensity", &LuminanceTintFilter::setIntensity, intensity, {0, 1}, "",
                        "Share of the tinted picture; above 1 goes past it"),
         filterProperty("color", &LuminanceTintFilter::setColor, color, {0, 1}, "",
                        "Colour of the middle tones; the fourth number has no effect")},
        {filterOperation("setColorRed:green:blue:", &LuminanceTintFilter::setColorRed, "Colour of the middle tones",
                         color.one, color.two, color.three)});
}

} // namespace lamina
