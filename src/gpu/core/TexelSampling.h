#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GLProgram.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/GPUImageStage.h"
#include "gpu/core/GPUImageTwoPassFilter.h"
#include "gpu/core/ShaderReads.h"
#include "gpu/core/TypedValue.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"

#include <concepts>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace lamina {

/// A vertex shader of `TexelSampling` for those that compute their places themselves: it passes the pixel's own on as
/// `textureCoordinate`, and the way to the neighbour on the right and below as `texelStep`.
extern const char* const kGPUImageTexelStepVertexShaderString;

/// The way from a pixel to its neighbours in texture coordinates, told to a program as `texelWidth` and `texelHeight`.
/// All from any thread; waits for the video processing queue.
class TexelSize {
public:
    /// `filter` owns this and the program, which may be null.
    TexelSize(GPUImageFilter& filter, std::shared_ptr<GLProgram> program);

    /// As shares of the picture's width and height; 0 before the first size.
    float width() const;
    /// The same downwards.
    float height() const;
    /// From then on both stay as they are, whatever the size.
    void setWidth(float share);
    /// The same downwards.
    void setHeight(float share);
    /// A way has been set, which need not be one pixel. On the queue.
    bool isOverridden() const { return m_isOverridden; }
    /// One pixel of this size, unless a way has been set. `turned`: in the texture the picture lies on its side.
    void setupForSize(CGSize size, bool turned);

private:
    void setShare(float& side, GLint uniform, float share);

    GPUImageFilter& m_filter;
    std::shared_ptr<GLProgram> m_program;
    GLint m_widthUniform = -1;
    GLint m_heightUniform = -1;
    // Written whenever a size is set: they belong to the queue.
    float m_width = 0;
    float m_height = 0;
    bool m_isOverridden = false;
};

/// For descriptions: these properties and, behind them, `texelWidth` and `texelHeight` of a filter that has the
/// setters; there 0 stands for a way that isn't set.
template <class Filter>
std::vector<FilterProperty> withTexelProperties(std::vector<FilterProperty> properties)
{
    const auto add = [&](FilterProperty property) {
        property.set = [set = std::move(property.set)](GPUImageStage& filter, const TypedValue& value) {
            if (value != TypedValue(0.0F))
                set(filter, value);
        };
        properties.push_back(std::move(property));
    };
    add(filterProperty("texelWidth", &Filter::setTexelWidth, 0.0F, {0, 1}, "share of the width",
                       "Way to the neighbours across; 0: one pixel"));
    add(filterProperty("texelHeight", &Filter::setTexelHeight, 0.0F, {0, 1}, "share of the height",
                       "Way to the neighbours downwards; 0: one pixel"));
    return properties;
}

/// A filter whose vertex shader gets the way to the neighbours as the uniforms `texelWidth` and `texelHeight`; of two
/// passes it is the second that does.
///
/// Left and top are those of the picture as its texture holds it: where the input lies turned, a result that has a
/// direction turns with it. Beyond the border the outermost pixels go on.
template <class Base>
class TexelSampling : public Base {
public:
    /// The way to the neighbours, as shares of the width and height: 0 until the first size is known, then one pixel.
    /// Setting one keeps both as they are from then on, whatever the size. From any thread; waits for the video
    /// processing queue.
    float texelWidth() const { return m_texelSize.width(); }
    void setTexelWidth(float share) { m_texelSize.setWidth(share); }
    /// The same downwards.
    float texelHeight() const { return m_texelSize.height(); }
    void setTexelHeight(float share) { m_texelSize.setHeight(share); }

    void setupFilterForSize(CGSize filterFrameSize) override
    {
        m_texelSize.setupForSize(filterFrameSize, liesTurned());
    }

protected:
    /// The arguments are the base's.
    template <class... Arguments>
    explicit TexelSampling(Arguments&&... arguments)
        : Base(std::forward<Arguments>(arguments)...)
        , m_texelSize(*this, samplingProgram())
    {
    }

    /// Whether the neighbours are the texels next to a pixel. On the queue.
    bool stepsOverTexels() const { return !m_texelSize.isOverridden(); }

    /// Of the program that gets the way, all varyings must lie whole ways from the pixel, as those of
    /// `kGPUImageNearbyTexelSamplingVertexShaderString` do, or this be overridden. Computed places are found out.
    bool readsTexelCentres(int programIndex, std::size_t slot) const override
    {
        if (programIndex != (kInSecondPass ? 1 : 0))
            return Base::readsTexelCentres(programIndex, slot);
        return stepsOverTexels() && samplingProgram()->reads(slot) != ShaderReads::Anywhere;
    }

    /// Whether what is sampled, the first input here, lies on its side in its texture. On the queue.
    virtual bool liesTurned() const
    {
        // What a first pass has drawn lies upright.
        return !kInSecondPass && swapsWidthAndHeight(this->m_inputRotation);
    }

    /// For descriptions of subclasses.
    static std::vector<FilterProperty> texelProperties(std::vector<FilterProperty> others = {})
    {
        return withTexelProperties<TexelSampling>(std::move(others));
    }

private:
    static constexpr bool kInSecondPass = std::derived_from<Base, GPUImageTwoPassFilter>;

    const std::shared_ptr<GLProgram>& samplingProgram() const
    {
        if constexpr (kInSecondPass)
            return this->m_secondFilterProgram;
        else
            return this->m_filterProgram;
    }

    TexelSize m_texelSize;
};

} // namespace lamina
