#include "gpu/filters/blur/GPUImageZoomBlurFilter.h"

#include "gpu/filters/blur/NineSampleShader.h"

#include <string>

namespace lamina {

namespace {

constexpr float kBlurSize = 1;

} // namespace

GPUImageZoomBlurFilter::GPUImageZoomBlurFilter()
    : AspectRatioFilter(nineSampleShader({"0.01 * (center - textureCoordinate) * blurSize",
                                          std::string("uniform highp float blurSize;\n") + kAspectRatioShader}))
    , m_blurSizeUniform(uniformIndex("blurSize"))
{
    setBlurSize(kBlurSize);
}

void GPUImageZoomBlurFilter::setBlurSize(float size)
{
    m_blurSize = size;
    setFloat(size, m_blurSizeUniform, m_filterProgram);
}

FilterDescription GPUImageZoomBlurFilter::describe()
{
    using Self = GPUImageZoomBlurFilter;
    return filterDescription<Self>(
        "GPUImageZoomBlurFilter", "blur", 1, "Blurs towards a point, as a zooming lens",
        {filterProperty("blurSize", &Self::setBlurSize, kBlurSize, {0, 4}, "percent of the way to the centre",
                        "Distance of the nine samples; more blurs further"),
         filterProperty("blurCenter", &Self::setBlurCenter, kMiddle, {0, 1}, "share of the size",
                        "The point, which stays sharp")});
}

} // namespace lamina
