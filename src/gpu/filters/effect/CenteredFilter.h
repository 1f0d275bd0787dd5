#pragma once

#include "gpu/core/AspectRatioFilter.h"
#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"

#include <string>

namespace lamina {

/// The base of filters that do something around a point. Their fragment shaders find it as the uniform `vec2 center`.
class CenteredFilter : public AspectRatioFilter<GPUImageFilter> {
public:
    /// (0.5, 0.5) at first; (0, 0) is the picture's top left corner, (1, 1) its bottom right one. From any thread;
    /// waits for the video processing queue.
    using AspectRatioFilter::center;
    using AspectRatioFilter::setCenter;

protected:
    explicit CenteredFilter(const std::string& fragmentShader)
        : AspectRatioFilter(fragmentShader)
    {
    }

    // For those whose shaders look at the proportions.
    using AspectRatioFilter::aspectRatio;
    using AspectRatioFilter::setAspectRatio;

    /// `center` for descriptions, by the name that the filter has for it.
    static FilterProperty centerProperty(const std::string& name = "center");
};

} // namespace lamina
