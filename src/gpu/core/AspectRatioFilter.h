#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// What fragment shaders of an `AspectRatioFilter` begin with, precision and varyings apart. Places are those of the
/// first input's `textureCoordinate`, ways and distances are in widths of the picture:
///
///   uniform vec2 center                     where the circle's middle is
///   uniform vec2 aspect                     what a way in texture coordinates is multiplied with, by component
///   vec2 wayFromCenter(vec2 place)          (place - center) * aspect
///   float distanceFromCenter(vec2 place)    its length: circles are round whatever the picture's proportions
extern const char* const kAspectRatioShader;

/// A filter that measures in its picture: circles, squares. `Base` is the filter's base; of one that draws twice, both
/// passes have the same shaders.
///
/// The uniforms are set before each draw, for the size that is drawn. Where the input lies turned, they are turned with
/// it: what is told about the picture as it is drawn holds for all rotations.
template <class Base>
class AspectRatioFilter : public Base {
public:
    /// Height over width: what is set, or that of the picture; 0 before the first picture. From any thread; waits for
    /// the queue.
    float aspectRatio() const
    {
        return valueFromVideoProcessingQueue([this] { return ratioInForce(); });
    }
    /// Takes the place of the picture's own; 0 and less gives that back.
    void setAspectRatio(float heightOverWidth)
    {
        runSynchronouslyOnVideoProcessingQueue([&] { m_aspectRatio = heightOverWidth > 0 ? heightOverWidth : 0; });
    }

    void setUniformsForProgramAtIndex(int programIndex) override
    {
        Base::setUniformsForProgramAtIndex(programIndex);
        // A second pass reads what the first has drawn upright.
        const GPUImageRotationMode rotation = programIndex == 0 ? this->m_inputRotation : kGPUImageNoRotation;
        const bool turned = swapsWidthAndHeight(rotation);
        const float ratio = ratioInForce();
        glUniform2f(m_aspectUniform, turned ? ratio : 1, turned ? 1 : ratio);
        const CGPoint center = Base::rotatedPoint(m_center, rotation);
        glUniform2f(m_centerUniform, static_cast<float>(center.x), static_cast<float>(center.y));
    }

protected:
    /// With the arguments of the base, and the circle in the middle.
    template <class... Arguments>
    explicit AspectRatioFilter(const Arguments&... arguments)
        : Base(arguments...)
        , m_aspectUniform(this->uniformIndex("aspect"))
        , m_centerUniform(this->uniformIndex("center"))
    {
    }

    static constexpr CGPoint kMiddle{0.5, 0.5};

    /// In shares of the width and height, from the top left corner. From any thread; waits for the queue.
    CGPoint center() const
    {
        return valueFromVideoProcessingQueue([this] { return m_center; });
    }
    void setCenter(CGPoint center)
    {
        runSynchronouslyOnVideoProcessingQueue([&] { m_center = center; });
    }

    /// For descriptions, of the filter or of a group around it.
    template <class Filter = AspectRatioFilter>
    static FilterProperty aspectRatioProperty()
    {
        return filterProperty("aspectRatio", &Filter::setAspectRatio, 0.0F, {0, 4}, "height over width",
                              "Proportions for which circles are round; 0: the picture's own");
    }

private:
    float ratioInForce() const
    {
        const CGSize size = this->sizeOfFBO();
        return m_aspectRatio > 0 || size.width <= 0 ? m_aspectRatio : static_cast<float>(size.height / size.width);
    }

    GLint m_aspectUniform;
    GLint m_centerUniform;
    CGPoint m_center = kMiddle;
    float m_aspectRatio = 0; ///< 0: the picture's
};

} // namespace lamina
