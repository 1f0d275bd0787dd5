// The picture plus its derivative along the falling diagonal, which is what light from one side adds to a relief
// (Gonzalez and Woods, Digital Image Processing, chapter 3).

#include "gpu/filters/edge/GPUImageEmbossFilter.h"

namespace lamina {

GPUImageEmbossFilter::GPUImageEmbossFilter()
{
    setIntensity(m_intensity);
}

void GPUImageEmbossFilter::setIntensity(float intensity)
{
    m_intensity = intensity;
    const float i = intensity;
    setConvolutionKernel({{-2 * i, -i, 0}, {-i, 1, i}, {0, i, 2 * i}});
}

FilterDescription GPUImageEmbossFilter::describe()
{
    return filterDescription<GPUImageEmbossFilter>(
        "GPUImageEmbossFilter", "editor", 1, "Makes edges stand out like a relief",
        texelProperties({filterProperty("intensity", &GPUImageEmbossFilter::setIntensity, 1.0F, {0, 4}, "",
                                        "How much edges stand out")}));
}

} // namespace lamina
