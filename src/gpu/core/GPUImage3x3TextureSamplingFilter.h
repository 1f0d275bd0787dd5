#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"

#include <cstddef>
#include <string>
#include <vector>

namespace lamina {

/// The base of filters that look at a pixel and its eight neighbours. Fragment shaders get their places as the varyings
/// `textureCoordinate`, `leftTextureCoordinate`, `rightTextureCoordinate`, `topTextureCoordinate`,
/// `topLeftTextureCoordinate`, `topRightTextureCoordinate`, `bottomTextureCoordinate`, `bottomLeftTextureCoordinate`
/// and `bottomRightTextureCoordinate`.
///
/// Left and top are those of the picture as its texture holds it: where the input lies turned, a result that has a
/// direction turns with it. Beyond the border the outermost pixels go on.
class GPUImage3x3TextureSamplingFilter : public GPUImageFilter {
public:
    explicit GPUImage3x3TextureSamplingFilter(const std::string& fragmentShader);

    /// The way to the neighbours, as shares of the width and height: 0 until the first size is known, then one pixel.
    /// Setting one keeps both as they are from then on, whatever the size. From any thread; waits for the video
    /// processing queue.
    float texelWidth() const;
    void setTexelWidth(float share);
    /// The same downwards.
    float texelHeight() const;
    void setTexelHeight(float share);

    void setupFilterForSize(CGSize filterFrameSize) override;

protected:
    /// The neighbours are, unless another way to them is set.
    bool readsTexelCentres(int programIndex, std::size_t slot) const override;
    /// `texelWidth` and `texelHeight` for descriptions, where 0 stands for a way that isn't set.
    static std::vector<FilterProperty> texelProperties();

private:
    GLint m_texelWidthUniform;
    GLint m_texelHeightUniform;
    // Written whenever a size is set: they belong to the queue.
    float m_texelWidth = 0;
    float m_texelHeight = 0;
    bool m_hasOverriddenImageSizeFactor = false;
};

} // namespace lamina
