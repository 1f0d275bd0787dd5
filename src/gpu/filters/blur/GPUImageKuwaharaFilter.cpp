#include "gpu/filters/blur/GPUImageKuwaharaFilter.h"

#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/filters/blur/KuwaharaShaders.h"
#include "gpu/filters/blur/StepVertexShader.h"

#include <algorithm>

namespace lamina {

namespace {

constexpr int kRadius = 3;
constexpr int kLargestRadius = 16;

} // namespace

GPUImageKuwaharaFilter::GPUImageKuwaharaFilter()
    : PixelStepFilter(kStepVertexShader, kuwaharaShader(kRadius), "texelWidthOffset", "texelHeightOffset")
    , m_radius(kRadius)
{
}

int GPUImageKuwaharaFilter::radius() const
{
    return valueFromVideoProcessingQueue([this] { return m_radius; });
}

void GPUImageKuwaharaFilter::setRadius(int pixels)
{
    runSynchronouslyOnVideoProcessingQueue([this, radius = std::clamp(pixels, 0, kLargestRadius)] {
        if (radius == m_radius)
            return;
        m_radius = radius;
        switchToShaders(kStepVertexShader, kuwaharaShader(static_cast<unsigned>(radius)));
    });
}

FilterDescription GPUImageKuwaharaFilter::describe()
{
    using Self = GPUImageKuwaharaFilter;
    return filterDescription<Self>("GPUImageKuwaharaFilter", "blur", 1, "An oil painting: even areas, sharp edges",
                                   {filterProperty("radius", &Self::setRadius, kRadius, {0, kLargestRadius}, "pixels",
                                                   "Width of the brush; the work grows with its square")});
}

} // namespace lamina
