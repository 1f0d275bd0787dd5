#include "gpu/filters/blur/BlurMixture.h"

#include <utility>

namespace lamina {

const char* const kRampFunction = R"(
float ramp(float from, float to, float x)
{
    float t = clamp((x - from) / max(to - from, kLeast), 0.0, 1.0);
    return t * t * (3.0 - 2.0 * t);
}
)";

BlurMixture::BlurMixture(std::shared_ptr<GPUImageGaussianBlurFilter> blur,
                         const std::shared_ptr<GPUImageTwoInputFilter>& mixture,
                         const std::shared_ptr<GPUImageStage>& before)
    : m_blur(std::move(blur))
{
    if (before) {
        before->addTarget(m_blur, 0);
        before->addTarget(mixture, 0);
        addFilter(before);
        setInitialFilters({before});
    } else {
        setInitialFilters({m_blur, mixture});
    }
    m_blur->addTarget(mixture, 1);
    addFilter(m_blur);
    addFilter(mixture);
    setTerminalFilter(mixture);
}

} // namespace lamina
