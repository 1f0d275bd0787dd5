#include "gpu/filters/effect/CenteredFilter.h"

#include "gpu/core/VideoProcessingQueue.h"

#include <utility>

namespace lamina {

CenteredFilter::CenteredFilter(const std::string& fragmentShader)
    : GPUImageFilter(fragmentShader)
    , m_centerUniform(uniformIndex("center"))
{
    setCenter(kMiddle);
}

CGPoint CenteredFilter::center() const
{
    return valueFromVideoProcessingQueue([this] { return m_center; });
}

void CenteredFilter::setCenter(CGPoint center)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_center = center;
        tellCenter();
    });
}

void CenteredFilter::tellCenter()
{
    setPoint(rotatedPoint(m_center, m_inputRotation), m_centerUniform, m_filterProgram);
}

void CenteredFilter::setInputRotation(GPUImageRotationMode rotation, int textureIndex)
{
    GPUImageFilter::setInputRotation(rotation, textureIndex);
    tellCenter();
}

FilterProperty CenteredFilter::centerProperty(std::string name)
{
    return filterProperty(std::move(name), &CenteredFilter::setCenter, kMiddle, {0, 1}, "share of width and height",
                          "The middle of the effect");
}

} // namespace lamina
