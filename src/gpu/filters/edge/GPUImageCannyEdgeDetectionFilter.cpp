// Canny, A Computational Approach to Edge Detection, IEEE Transactions on Pattern Analysis and Machine Intelligence 8,
// 1986.

#include "gpu/filters/edge/GPUImageCannyEdgeDetectionFilter.h"

#include "gpu/core/TexelSampling.h"
#include "gpu/filters/blur/GPUImageSingleComponentGaussianBlurFilter.h"
#include "gpu/filters/color/GPUImageGrayscaleFilter.h"
#include "gpu/filters/edge/GPUImageDirectionalNonMaximumSuppressionFilter.h"
#include "gpu/filters/edge/GPUImageDirectionalSobelEdgeDetectionFilter.h"
#include "gpu/filters/edge/GPUImageWeakPixelInclusionFilter.h"

namespace lamina {

namespace {

constexpr float kUpperStart = 0.4F;
constexpr float kLowerStart = 0.1F;

} // namespace

GPUImageCannyEdgeDetectionFilter::GPUImageCannyEdgeDetectionFilter()
    : m_blur(std::make_shared<GPUImageSingleComponentGaussianBlurFilter>())
    , m_edges(std::make_shared<GPUImageDirectionalSobelEdgeDetectionFilter>())
    , m_thinning(std::make_shared<GPUImageDirectionalNonMaximumSuppressionFilter>())
{
    setUpperThreshold(kUpperStart);
    setLowerThreshold(kLowerStart);
    addFiltersInLine({std::make_shared<GPUImageGrayscaleFilter>(), m_blur, m_edges, m_thinning,
                      std::make_shared<GPUImageWeakPixelInclusionFilter>()});
}

float GPUImageCannyEdgeDetectionFilter::blurRadiusInPixels() const
{
    return m_blur->blurRadiusInPixels();
}

void GPUImageCannyEdgeDetectionFilter::setBlurRadiusInPixels(float pixels)
{
    m_blur->setBlurRadiusInPixels(pixels);
}

float GPUImageCannyEdgeDetectionFilter::blurTexelSpacingMultiplier() const
{
    return m_blur->texelSpacingMultiplier();
}

void GPUImageCannyEdgeDetectionFilter::setBlurTexelSpacingMultiplier(float pixels)
{
    m_blur->setTexelSpacingMultiplier(pixels);
}

float GPUImageCannyEdgeDetectionFilter::upperThreshold() const
{
    return m_thinning->upperThreshold();
}

void GPUImageCannyEdgeDetectionFilter::setUpperThreshold(float threshold)
{
    m_thinning->setUpperThreshold(threshold);
}

float GPUImageCannyEdgeDetectionFilter::lowerThreshold() const
{
    return m_thinning->lowerThreshold();
}

void GPUImageCannyEdgeDetectionFilter::setLowerThreshold(float threshold)
{
    m_thinning->setLowerThreshold(threshold);
}

float GPUImageCannyEdgeDetectionFilter::texelWidth() const
{
    return m_edges->texelWidth();
}

void GPUImageCannyEdgeDetectionFilter::setTexelWidth(float share)
{
    m_edges->setTexelWidth(share);
    m_thinning->setTexelWidth(share);
}

float GPUImageCannyEdgeDetectionFilter::texelHeight() const
{
    return m_edges->texelHeight();
}

void GPUImageCannyEdgeDetectionFilter::setTexelHeight(float share)
{
    m_edges->setTexelHeight(share);
    m_thinning->setTexelHeight(share);
}

FilterDescription GPUImageCannyEdgeDetectionFilter::describe()
{
    using Self = GPUImageCannyEdgeDetectionFilter;
    return filterDescription<Self>(
        "GPUImageCannyEdgeDetectionFilter", "edge", 1, "White lines of a pixel along edges, on black",
        withTexelProperties<Self>({
            filterProperty("blurRadiusInPixels", &Self::setBlurRadiusInPixels, 2.0F, {0, 20}, "pixels",
                           "How coarse the edges are that are found"),
            filterProperty("blurTexelSpacingMultiplier", &Self::setBlurTexelSpacingMultiplier, 1.0F, {0, 4}, "pixels",
                           "Distance of the blur's samples"),
            filterProperty("upperThreshold", &Self::setUpperThreshold, kUpperStart, {0, 1}, "",
                           "Steepness from which an edge is sure"),
            filterProperty("lowerThreshold", &Self::setLowerThreshold, kLowerStart, {0, 1}, "",
                           "Steepness up to which there is none"),
        }));
}

} // namespace lamina
