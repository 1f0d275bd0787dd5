#include "gpu/filters/blur/GPUImageGaussianSelectiveBlurFilter.h"

#include "gpu/core/AspectRatioFilter.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/filters/blend/BlendShader.h"
#include "gpu/filters/blur/GPUImageGaussianBlurFilter.h"

#include <string>

namespace lamina {

namespace {

constexpr float kBlurRadius = 5;
constexpr float kCircleRadius = 0.1875F;
constexpr float kBlurSize = 0.09375F;
constexpr CGPoint kCirclePoint{0.5, 0.5};

constexpr const char* kUniforms = R"(
uniform float excludeCircleRadius;
uniform float excludeBlurSize;
)";

} // namespace

class GPUImageGaussianSelectiveBlurFilter::Mixture : public AspectRatioFilter<GPUImageTwoInputFilter> {
public:
    Mixture()
        : AspectRatioFilter(blendShader("mix(base, overlay, ramp(excludeCircleRadius - excludeBlurSize, "
                                        "excludeCircleRadius, distanceFromCenter(textureCoordinate)))",
                                        std::string(kUniforms) + kRampFunction + kAspectRatioShader))
    {
    }
    using AspectRatioFilter::aspectRatioProperty;
    using AspectRatioFilter::center;
    using AspectRatioFilter::setCenter;
};

GPUImageGaussianSelectiveBlurFilter::GPUImageGaussianSelectiveBlurFilter()
    : GPUImageGaussianSelectiveBlurFilter(std::make_shared<Mixture>())
{
}

GPUImageGaussianSelectiveBlurFilter::GPUImageGaussianSelectiveBlurFilter(const std::shared_ptr<Mixture>& mixture)
    : BlurMixture(std::make_shared<GPUImageGaussianBlurFilter>(), mixture)
    , m_mixture(mixture)
{
    setBlurRadiusInPixels(kBlurRadius);
    setExcludeCircleRadius(kCircleRadius);
    setExcludeBlurSize(kBlurSize);
}

void GPUImageGaussianSelectiveBlurFilter::setExcludeCircleRadius(float radius)
{
    m_excludeCircleRadius = radius;
    m_mixture->setFloat(radius, "excludeCircleRadius");
}

void GPUImageGaussianSelectiveBlurFilter::setExcludeBlurSize(float size)
{
    m_excludeBlurSize = size;
    m_mixture->setFloat(size, "excludeBlurSize");
}

CGPoint GPUImageGaussianSelectiveBlurFilter::excludeCirclePoint() const
{
    return m_mixture->center();
}

void GPUImageGaussianSelectiveBlurFilter::setExcludeCirclePoint(CGPoint point)
{
    m_mixture->setCenter(point);
}

float GPUImageGaussianSelectiveBlurFilter::aspectRatio() const
{
    return m_mixture->aspectRatio();
}

void GPUImageGaussianSelectiveBlurFilter::setAspectRatio(float heightOverWidth)
{
    m_mixture->setAspectRatio(heightOverWidth);
}

FilterDescription GPUImageGaussianSelectiveBlurFilter::describe()
{
    using Self = GPUImageGaussianSelectiveBlurFilter;
    return filterDescription<Self>(
        "GPUImageGaussianSelectiveBlurFilter", "blur", 1, "Blurs all but a circle",
        {filterProperty("blurRadiusInPixels", &BlurMixture::setBlurRadiusInPixels, kBlurRadius, {0, 62}, "pixels",
                        "Width of the blur, rounded to whole pixels"),
         filterProperty("excludeCircleRadius", &Self::setExcludeCircleRadius, kCircleRadius, {0, 1},
                        "share of the width", "From where on all is blurred"),
         filterProperty("excludeCirclePoint", &Self::setExcludeCirclePoint, kCirclePoint, {0, 1}, "share of the size",
                        "Middle of the circle"),
         filterProperty("excludeBlurSize", &Self::setExcludeBlurSize, kBlurSize, {0, 1}, "share of the width",
                        "Width of the way from sharp to blurred"),
         Mixture::aspectRatioProperty<Self>()});
}

} // namespace lamina
