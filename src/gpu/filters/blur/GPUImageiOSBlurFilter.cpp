#include "gpu/filters/blur/GPUImageiOSBlurFilter.h"

#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/filters/blur/GPUImageGaussianBlurFilter.h"
#include "gpu/filters/color/GPUImageLuminanceRangeFilter.h"
#include "gpu/filters/color/GPUImageSaturationFilter.h"

#include <algorithm>
#include <cmath>

namespace lamina {

namespace {

constexpr float kBlurRadius = 12;
constexpr float kSaturation = 0.8F;
constexpr float kDownsampling = 4;
constexpr float kRangeReduction = 0.6F;

CGSize reduced(CGSize size, float factor)
{
    const double divisor = std::max(static_cast<double>(factor), 1.0);
    return {std::max(std::round(size.width / divisor), 1.0), std::max(std::round(size.height / divisor), 1.0)};
}

} // namespace

GPUImageiOSBlurFilter::GPUImageiOSBlurFilter()
    : m_saturation(std::make_shared<GPUImageSaturationFilter>())
    , m_blur(std::make_shared<GPUImageGaussianBlurFilter>())
    , m_range(std::make_shared<GPUImageLuminanceRangeFilter>())
    , m_downsampling(kDownsampling)
{
    m_saturation->addTarget(m_blur);
    m_blur->addTarget(m_range);
    addFilter(m_saturation);
    addFilter(m_blur);
    addFilter(m_range);
    setInitialFilters({m_saturation});
    setTerminalFilter(m_range);
    setBlurRadiusInPixels(kBlurRadius);
    setSaturation(kSaturation);
    setRangeReductionFactor(kRangeReduction);
}

float GPUImageiOSBlurFilter::blurRadiusInPixels() const
{
    return m_blur->blurRadiusInPixels();
}

void GPUImageiOSBlurFilter::setBlurRadiusInPixels(float pixels)
{
    m_blur->setBlurRadiusInPixels(pixels);
}

float GPUImageiOSBlurFilter::saturation() const
{
    return m_saturation->saturation();
}

void GPUImageiOSBlurFilter::setSaturation(float saturation)
{
    m_saturation->setSaturation(saturation);
}

float GPUImageiOSBlurFilter::downsampling() const
{
    return valueFromVideoProcessingQueue([this] { return m_downsampling; });
}

void GPUImageiOSBlurFilter::setDownsampling(float factor)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_downsampling = factor; });
}

float GPUImageiOSBlurFilter::rangeReductionFactor() const
{
    return m_range->rangeReductionFactor();
}

void GPUImageiOSBlurFilter::setRangeReductionFactor(float factor)
{
    m_range->setRangeReductionFactor(factor);
}

/// Every member but the first is told its size by the one before, except that the last is to have the old one.
void GPUImageiOSBlurFilter::setInputSize(CGSize size, int textureIndex)
{
    CGSize output = m_saturation->rotatedSize(size, textureIndex);
    if (output.width > 0 && m_forcedSize.width > 0)
        output = m_keepsAspectRatio ? sizeFittingInside(output, m_forcedSize) : m_forcedSize;
    if (output.width > 0 && output.height > 0) {
        m_saturation->forceProcessingAtSize(reduced(output, m_downsampling));
        m_range->forceProcessingAtSize(output);
    }
    GPUImageFilterGroup::setInputSize(size, textureIndex);
}

void GPUImageiOSBlurFilter::forceProcessingAtSize(CGSize size)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_forcedSize = size;
        m_keepsAspectRatio = false;
    });
}

void GPUImageiOSBlurFilter::forceProcessingAtSizeRespectingAspectRatio(CGSize size)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_forcedSize = size;
        m_keepsAspectRatio = true;
    });
}

FilterDescription GPUImageiOSBlurFilter::describe()
{
    using Self = GPUImageiOSBlurFilter;
    return filterDescription<Self>(
        "GPUImageiOSBlurFilter", "blur", 1, "Frosted glass, as behind the panels of an interface",
        {filterProperty("blurRadiusInPixels", &Self::setBlurRadiusInPixels, kBlurRadius, {0, 62},
                        "pixels of the small picture", "Width of the blur, rounded to whole pixels"),
         filterProperty("saturation", &Self::setSaturation, kSaturation, {0, 2}, "",
                        "Strength of colours: 1 as they are, 0 grey"),
         filterProperty("downsampling", &Self::setDownsampling, kDownsampling, {1, 16}, "",
                        "How many times smaller the picture is blurred: faster and wider"),
         filterProperty("rangeReductionFactor", &Self::setRangeReductionFactor, kRangeReduction, {0, 1}, "",
                        "0 leaves bright and dark parts as they are, 1 gives all the same brightness")});
}

} // namespace lamina
