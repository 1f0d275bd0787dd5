// How far a bell reaches follows from the density of the normal distribution, exp(-x^2 / (2 sigma^2)) / sqrt(2 pi
// sigma^2), solved for the x where it is 1/256: what is left out is less than a step of 8 bits.

#include "gpu/filters/blur/GPUImageGaussianBlurFilter.h"
#include "gpu/kernels/BlurKernel.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/VideoProcessingQueue.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace lamina {

namespace {

/// Where the bell of this sigma, itself of area 1, falls below 1/256: sqrt(-2 sigma^2 log(sqrt(2 pi sigma^2) / 256)),
/// made even. The expression is largest at sigma = 256 / sqrt(2 pi e), about 62, and about 62 itself. From there it
/// would fall, to nothing at 102 where even the top of the bell is lower, and a larger radius would blur less.
unsigned sampleRadiusForSigma(double sigma, double sigmaOfLargest)
{
    if (sigma < 1)
        return 0;
    const double s = std::min(sigma, sigmaOfLargest);
    const double square = s * s;
    const double radius = std::floor(std::sqrt(-2 * square * std::log(std::sqrt(2 * std::numbers::pi * square) / 256)));
    const auto whole = static_cast<unsigned>(radius);
    return whole + whole % 2;
}

/// What pictures of their own size are drawn with, so that programs that are never used are rarely built.
std::array<BlurReads, 2> readsToBeExpected()
{
    return GPUImageContext::deviceDrawsOnProcessor() ? std::array{BlurReads::EachDown, BlurReads::EachAcross}
                                                     : std::array{BlurReads::Pairs, BlurReads::Pairs};
}

} // namespace

GPUImageGaussianBlurFilter::GPUImageGaussianBlurFilter()
    : GPUImageGaussianBlurFilter(gaussianBlurWeights(kRadiusOfNewFilter, kSigmaOfNewFilter), kSigmaOfNewFilter)
{
}

GPUImageGaussianBlurFilter::GPUImageGaussianBlurFilter(const BlurWeights& weights, float blurRadiusInPixels,
                                                       BlurChannels channels)
    : GPUImageGaussianBlurFilter(weights, blurRadiusInPixels, channels, readsToBeExpected())
{
}

GPUImageGaussianBlurFilter::GPUImageGaussianBlurFilter(const BlurWeights& weights, float blurRadiusInPixels,
                                                       BlurChannels channels, const std::array<BlurReads, 2>& reads)
    : GPUImageTwoPassTextureSamplingFilter(
          blurVertexShader(weights, reads[0]), blurFragmentShader(weights, channels, reads[0]),
          blurVertexShader(weights, reads[1]), blurFragmentShader(weights, channels, reads[1]))
    , m_channels(channels)
    , m_weights(weights)
    , m_reads(reads)
    , m_blurRadiusInPixels(blurRadiusInPixels)
{
}

BlurWeights GPUImageGaussianBlurFilter::weightsForRadius(double pixels) const
{
    return gaussianBlurWeights(sampleRadiusForSigma(pixels, kLargestSampleRadius), pixels);
}

void GPUImageGaussianBlurFilter::setTexelSpacingMultiplier(float pixels)
{
    m_texelSpacingMultiplier = pixels;
    setVerticalTexelSpacing(static_cast<double>(pixels));
    setHorizontalTexelSpacing(static_cast<double>(pixels));
}

float GPUImageGaussianBlurFilter::blurRadiusInPixels() const
{
    return valueFromVideoProcessingQueue([this] { return m_blurRadiusInPixels; });
}

void GPUImageGaussianBlurFilter::setBlurRadiusInPixels(float pixels)
{
    if (!std::isfinite(pixels))
        return;
    runSynchronouslyOnVideoProcessingQueue([this, rounded = std::round(pixels)] {
        m_shouldResizeBlurRadiusWithImageSize = false;
        if (rounded == m_blurRadiusInPixels)
            return;
        m_blurRadiusInPixels = rounded;
        useRadius(static_cast<double>(rounded));
    });
}

void GPUImageGaussianBlurFilter::useRadius(double pixels)
{
    m_weights = weightsForRadius(pixels);
    buildPass(0);
    buildPass(1);
    setupFilterForSize(sizeOfFBO());
}

void GPUImageGaussianBlurFilter::setFraction(float& fraction, float value, float& other)
{
    if (!(value >= 0) || !std::isfinite(value))
        return;
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_shouldResizeBlurRadiusWithImageSize = value > 0 && value != fraction;
        fraction = value;
        other = 0;
    });
}

void GPUImageGaussianBlurFilter::setBlurRadiusAsFractionOfImageWidth(float fraction)
{
    setFraction(m_fractionOfWidth, fraction, m_fractionOfHeight);
}

void GPUImageGaussianBlurFilter::setBlurRadiusAsFractionOfImageHeight(float fraction)
{
    setFraction(m_fractionOfHeight, fraction, m_fractionOfWidth);
}

void GPUImageGaussianBlurFilter::setBlurPasses(int passes)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_blurPasses = std::max(passes, 1); });
}

std::string GPUImageGaussianBlurFilter::vertexShaderForStandardBlurOfRadius(unsigned blurRadius, double sigma)
{
    return standardBlurVertexShader(gaussianBlurWeights(blurRadius, sigma));
}

std::string GPUImageGaussianBlurFilter::fragmentShaderForStandardBlurOfRadius(unsigned blurRadius, double sigma)
{
    return standardBlurFragmentShader(gaussianBlurWeights(blurRadius, sigma));
}

std::string GPUImageGaussianBlurFilter::vertexShaderForOptimizedBlurOfRadius(unsigned blurRadius, double sigma)
{
    return optimizedBlurVertexShader(gaussianBlurWeights(blurRadius, sigma));
}

std::string GPUImageGaussianBlurFilter::fragmentShaderForOptimizedBlurOfRadius(unsigned blurRadius, double sigma)
{
    return optimizedBlurFragmentShader(gaussianBlurWeights(blurRadius, sigma));
}

void GPUImageGaussianBlurFilter::switchToVertexShader(const std::string& vertexShader,
                                                      const std::string& fragmentShader)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_weights.clear();
        buildProgram(firstPass(), vertexShader, fragmentShader);
        buildSecondProgram(vertexShader, fragmentShader);
        readOffsetUniforms();
        setupFilterForSize(sizeOfFBO());
    });
}

void GPUImageGaussianBlurFilter::buildPass(int programIndex)
{
    const BlurReads reads = m_reads[static_cast<std::size_t>(programIndex)];
    buildProgram(programIndex == 0 ? firstPass() : secondPass(), blurVertexShader(m_weights, reads),
                 blurFragmentShader(m_weights, m_channels, reads));
    readOffsetUniforms();
}

/// Between texels, and in steps of another length, it is pairs that say what a blur gives.
BlurReads GPUImageGaussianBlurFilter::readsFor(int programIndex, bool onGrid) const
{
    const Offsets& pass = programIndex == 0 ? m_verticalPass : m_horizontalPass;
    const double spacing = programIndex == 0 ? m_verticalTexelSpacing : m_horizontalTexelSpacing;
    if (!onGrid || spacing != 1 || !GPUImageContext::deviceDrawsOnProcessor())
        return BlurReads::Pairs;
    return pass.width == 0 ? BlurReads::EachDown : BlurReads::EachAcross;
}

void GPUImageGaussianBlurFilter::willDrawPass(int programIndex, bool onGrid)
{
    BlurReads& present = m_reads[static_cast<std::size_t>(programIndex)];
    if (m_weights.empty() || present == readsFor(programIndex, onGrid))
        return;
    present = readsFor(programIndex, onGrid);
    buildPass(programIndex);
}

bool GPUImageGaussianBlurFilter::readsTexelCentres(int programIndex, std::size_t slot) const
{
    const bool readsEach = !m_weights.empty() && m_reads[static_cast<std::size_t>(programIndex)] != BlurReads::Pairs;
    return readsEach || GPUImageTwoPassTextureSamplingFilter::readsTexelCentres(programIndex, slot);
}

void GPUImageGaussianBlurFilter::setupFilterForSize(CGSize filterFrameSize)
{
    GPUImageTwoPassTextureSamplingFilter::setupFilterForSize(filterFrameSize);
    // The fraction waits for a size, which isn't there before the first frame and after the source has gone.
    if (!m_shouldResizeBlurRadiusWithImageSize || filterFrameSize.width <= 0 || filterFrameSize.height <= 0)
        return;
    const bool byWidth = m_fractionOfWidth > 0;
    setBlurRadiusInPixels(static_cast<float>(byWidth
                                                 ? filterFrameSize.width * static_cast<double>(m_fractionOfWidth)
                                                 : filterFrameSize.height * static_cast<double>(m_fractionOfHeight)));
}

/// What a pass has drawn lies upright: the next one goes down along the texture's own columns.
void GPUImageGaussianBlurFilter::dropTheTurn()
{
    std::swap(m_verticalPass.width, m_verticalPass.height);
}

void GPUImageGaussianBlurFilter::renderToTextureWithVertices(const QuadCoordinates& vertices,
                                                             const QuadCoordinates& textureCoordinates)
{
    if (m_blurPasses < 2 || preventRendering() || !canRender()) {
        GPUImageTwoPassTextureSamplingFilter::renderToTextureWithVertices(vertices, textureCoordinates);
        return;
    }
    // The last pass is the base's: it alone is kept for capture and handed on.
    const bool turned = swapsWidthAndHeight(m_inputRotation);
    m_firstInputFramebuffer = drawBothPasses(vertices, textureCoordinates, Kept::Between);
    if (turned)
        dropTheTurn();
    const QuadCoordinates& upright = textureCoordinatesForRotation(kGPUImageNoRotation);
    for (int pass = 2; pass < m_blurPasses; ++pass)
        m_firstInputFramebuffer = drawBothPasses(vertices, upright, Kept::Between);
    GPUImageTwoPassTextureSamplingFilter::renderToTextureWithVertices(vertices, upright);
    if (turned)
        dropTheTurn();
}

std::vector<FilterProperty> GPUImageGaussianBlurFilter::properties(float blurRadiusInPixels)
{
    using Blur = GPUImageGaussianBlurFilter;
    return {
        filterProperty("texelSpacingMultiplier", &Blur::setTexelSpacingMultiplier, 1.0F, {1, 8}, "pixels",
                       "Distance of the samples; more blurs wider at the same cost, with a visible grid"),
        filterProperty("blurRadiusInPixels", &Blur::setBlurRadiusInPixels, blurRadiusInPixels, {0, 62}, "pixels",
                       "Width of the blur, rounded to whole pixels; below 1 nothing is blurred"),
        filterProperty("blurRadiusAsFractionOfImageWidth", &Blur::setBlurRadiusAsFractionOfImageWidth, 0.0F, {0, 1},
                       "share of the width", "Sets the radius when the picture's width is known; 0: not used"),
        filterProperty("blurRadiusAsFractionOfImageHeight", &Blur::setBlurRadiusAsFractionOfImageHeight, 0.0F, {0, 1},
                       "share of the height", "Sets the radius when the picture's height is known; 0: not used"),
        filterProperty("blurPasses", &Blur::setBlurPasses, 1, {1, 8}, "", "How often the whole blur is done"),
    };
}

FilterDescription GPUImageGaussianBlurFilter::describe()
{
    return filterDescription<GPUImageGaussianBlurFilter>("GPUImageGaussianBlurFilter", "blur", 1,
                                                         "Blurs with a Gaussian bell", properties(kSigmaOfNewFilter));
}

FilterKernel GPUImageGaussianBlurFilter::kernel() const
{
    const bool isPlain =
        m_channels == BlurChannels::All && m_verticalTexelSpacing == 1 && m_horizontalTexelSpacing == 1;
    return isPlain ? kernels::lineBlurKernel(m_weights) : FilterKernel();
}

} // namespace lamina
