#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Few shades of each channel, as on a printed poster.
///
///   out.rgb = floor(in.rgb * levels + 0.5) / levels,   out.a = in.a
///
/// On straight values as stored. The levels are steps: 10 of them, as at first, give 11 shades from black to white.
class GPUImagePosterizeFilter : public GPUImageFilter {
public:
    GPUImagePosterizeFilter();
    static FilterDescription describe();

    /// Steps from black to white; 255 and more change nothing; 0 and less leave black.
    int colorLevels() const { return m_colorLevels; }
    void setColorLevels(int levels);

private:
    GLint m_colorLevelsUniform;
    int m_colorLevels = 0;
};

} // namespace lamina
