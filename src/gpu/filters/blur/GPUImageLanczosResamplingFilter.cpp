#include "gpu/filters/blur/GPUImageLanczosResamplingFilter.h"

#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/filters/blur/BlurShaders.h"

namespace lamina {

namespace {

BlurWeights taps()
{
    return normalisedBlurWeights({0.38026, 0.27667, 0.08074, -0.02612});
}

} // namespace

GPUImageLanczosResamplingFilter::GPUImageLanczosResamplingFilter()
    : GPUImageTwoPassTextureSamplingFilter(standardBlurVertexShader(taps()), standardBlurFragmentShader(taps()),
                                           standardBlurVertexShader(taps()), standardBlurFragmentShader(taps()))
{
}

CGSize GPUImageLanczosResamplingFilter::originalImageSize() const
{
    return valueFromVideoProcessingQueue([this] { return m_originalImageSize; });
}

void GPUImageLanczosResamplingFilter::setOriginalImageSize(CGSize size)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_originalImageSize = size;
        setupFilterForSize(sizeOfFBO());
    });
}

void GPUImageLanczosResamplingFilter::setInputSize(CGSize size, int textureIndex)
{
    m_sizeOfInput = rotatedSize(size, textureIndex);
    GPUImageTwoPassTextureSamplingFilter::setInputSize(size, textureIndex);
}

void GPUImageLanczosResamplingFilter::setupFilterForSize(CGSize)
{
    const bool told = m_originalImageSize.width > 0 && m_originalImageSize.height > 0;
    GPUImageTwoPassTextureSamplingFilter::setupFilterForSize(told ? m_originalImageSize : m_sizeOfInput);
}

CGSize GPUImageLanczosResamplingFilter::sizeOfPass(int index) const
{
    return index == 0 ? CGSize{m_sizeOfInput.width, sizeOfFBO().height} : sizeOfFBO();
}

FilterDescription GPUImageLanczosResamplingFilter::describe()
{
    using Self = GPUImageLanczosResamplingFilter;
    return filterDescription<Self>(
        "GPUImageLanczosResamplingFilter", "blur", 1, "Makes pictures smaller without jagged edges",
        {filterProperty("originalImageSize", &Self::setOriginalImageSize, CGSize{}, {0, 16384}, "pixels",
                        "In whose pixels the samples lie apart; 0x0: the picture's own")},
        {filterOperation("forceProcessingAtSize:", &Self::forceProcessingAtSize, "Pixels that come out", CGSize{}),
         filterOperation(
             "forceProcessingAtSizeRespectingAspectRatio:", &Self::forceProcessingAtSizeRespectingAspectRatio,
             "Pixels that what comes out fits in, in the picture's proportions", CGSize{})});
}

} // namespace lamina
