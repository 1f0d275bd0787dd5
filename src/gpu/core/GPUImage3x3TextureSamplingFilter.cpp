#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"

#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/GPUImageStage.h"
#include "gpu/core/TypedValue.h"
#include "gpu/core/VideoProcessingQueue.h"

#include <utility>

namespace lamina {

namespace {

constexpr const char* kNearbyTexelSamplingVertexShader = R"(attribute vec4 position;
attribute vec4 inputTextureCoordinate;

uniform float texelWidth;
uniform float texelHeight;

varying vec2 textureCoordinate;
varying vec2 leftTextureCoordinate;
varying vec2 rightTextureCoordinate;
varying vec2 topTextureCoordinate;
varying vec2 topLeftTextureCoordinate;
varying vec2 topRightTextureCoordinate;
varying vec2 bottomTextureCoordinate;
varying vec2 bottomLeftTextureCoordinate;
varying vec2 bottomRightTextureCoordinate;

void main()
{
    gl_Position = position;

    vec2 widthStep = vec2(texelWidth, 0.0);
    vec2 heightStep = vec2(0.0, texelHeight);
    vec2 widthHeightStep = vec2(texelWidth, texelHeight);
    vec2 widthNegativeHeightStep = vec2(texelWidth, -texelHeight);

    textureCoordinate = inputTextureCoordinate.xy;
    leftTextureCoordinate = inputTextureCoordinate.xy - widthStep;
    rightTextureCoordinate = inputTextureCoordinate.xy + widthStep;
    topTextureCoordinate = inputTextureCoordinate.xy - heightStep;
    topLeftTextureCoordinate = inputTextureCoordinate.xy - widthHeightStep;
    topRightTextureCoordinate = inputTextureCoordinate.xy + widthNegativeHeightStep;
    bottomTextureCoordinate = inputTextureCoordinate.xy + heightStep;
    bottomLeftTextureCoordinate = inputTextureCoordinate.xy - widthNegativeHeightStep;
    bottomRightTextureCoordinate = inputTextureCoordinate.xy + widthHeightStep;
}
)";

} // namespace

GPUImage3x3TextureSamplingFilter::GPUImage3x3TextureSamplingFilter(const std::string& fragmentShader)
    : GPUImageFilter(kNearbyTexelSamplingVertexShader, fragmentShader)
    , m_texelWidthUniform(uniformIndex("texelWidth"))
    , m_texelHeightUniform(uniformIndex("texelHeight"))
{
    // The program may be shared: where only one of the two is set later, the other must not be what somebody else left
    // there.
    setFloat(0, m_texelWidthUniform, m_filterProgram);
    setFloat(0, m_texelHeightUniform, m_filterProgram);
}

float GPUImage3x3TextureSamplingFilter::texelWidth() const
{
    return valueFromVideoProcessingQueue([this] { return m_texelWidth; });
}

float GPUImage3x3TextureSamplingFilter::texelHeight() const
{
    return valueFromVideoProcessingQueue([this] { return m_texelHeight; });
}

void GPUImage3x3TextureSamplingFilter::setTexelWidth(float share)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_hasOverriddenImageSizeFactor = true;
        m_texelWidth = share;
        setFloat(share, m_texelWidthUniform, m_filterProgram);
    });
}

void GPUImage3x3TextureSamplingFilter::setTexelHeight(float share)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_hasOverriddenImageSizeFactor = true;
        m_texelHeight = share;
        setFloat(share, m_texelHeightUniform, m_filterProgram);
    });
}

void GPUImage3x3TextureSamplingFilter::setupFilterForSize(CGSize filterFrameSize)
{
    // There is no size while there is no source.
    if (m_hasOverriddenImageSizeFactor || filterFrameSize.width <= 0 || filterFrameSize.height <= 0)
        return;
    m_texelWidth = static_cast<float>(1.0 / filterFrameSize.width);
    m_texelHeight = static_cast<float>(1.0 / filterFrameSize.height);
    // The size is that of the output; in a picture that lies turned, its width runs along the texture's columns. The
    // values are kept for the draw: another filter of the same program may be set up in between.
    const bool turned = swapsWidthAndHeight(m_inputRotation);
    setFloat(turned ? m_texelHeight : m_texelWidth, m_texelWidthUniform, m_filterProgram);
    setFloat(turned ? m_texelWidth : m_texelHeight, m_texelHeightUniform, m_filterProgram);
}

bool GPUImage3x3TextureSamplingFilter::readsTexelCentres(int, std::size_t slot) const
{
    return !m_hasOverriddenImageSizeFactor && m_filterProgram->reads(slot) != ShaderReads::Anywhere;
}

std::vector<FilterProperty> GPUImage3x3TextureSamplingFilter::texelProperties()
{
    using Base = GPUImage3x3TextureSamplingFilter;
    std::vector<FilterProperty> properties{
        filterProperty("texelWidth", &Base::setTexelWidth, 0.0F, {0, 1}, "share of the width",
                       "Way to the neighbours across; 0: one pixel"),
        filterProperty("texelHeight", &Base::setTexelHeight, 0.0F, {0, 1}, "share of the height",
                       "Way to the neighbours downwards; 0: one pixel"),
    };
    for (FilterProperty& property : properties) {
        property.set = [set = std::move(property.set)](GPUImageStage& filter, const TypedValue& value) {
            if (value != TypedValue(0.0F))
                set(filter, value);
        };
    }
    return properties;
}

} // namespace lamina
