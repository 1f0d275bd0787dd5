#pragma once

#include "gpu/filters/effect/GPUImageSphereRefractionFilter.h"

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageRotationMode.h"

namespace lamina {

/// A shining ball of glass in which the picture stands upright: as in `GPUImageSphereRefractionFilter`, but with twice
/// the refraction and turned round, and with light upon it.
///
///   out.rgb = s + (1 - s) R + 0.8 H,   s = in((1 - 2 v.xy) / 2).rgb,   out.a that of in there
///   R = R0 + (1 - R0) (1 - n.z)^5,   R0 = ((1 - refractiveIndex) / (1 + refractiveIndex))^2,   H = max(n . h, 0)^100
///
/// R is what the rim mirrors of white surroundings (C. Schlick, An Inexpensive BRDF Model for Physically-based
/// Rendering, 1994), H the gleam of a lamp to the upper left (J. F. Blinn, Models of Light Reflection, 1977), h halfway
/// between the lamp's direction (-1, -1, 1) and the viewer's.
class GPUImageGlassSphereFilter : public GPUImageSphereRefractionFilter {
public:
    GPUImageGlassSphereFilter();
    static FilterDescription describe();

    void setInputRotation(GPUImageRotationMode rotation, int textureIndex) override;

private:
    void tellLamp();

    GLint m_lampUniform;
};

} // namespace lamina
