#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// White balance: makes a picture warmer or cooler, and greener or more magenta.
///
///   tinted = in.rgb + (Q' - Q) (0.6210, -0.6474, 1.7046), cut to 0 to 1
///       Q = 0.211456 red - 0.522591 green + 0.31135 blue
///       Q' = Q + 0.1 * 0.5226 tint, cut to -0.5226 to 0.5226
///   warm = 2 tinted f                          for a channel below 0.5
///   warm = 1 - 2 (1 - tinted) (1 - f)          elsewhere
///   out.rgb = tinted + t (warm - tinted),   t = 0.25 (200 - 10^6 / temperature) / 112,   out.a = in.a
///
/// Q is the green to magenta axis of NTSC's colour differences (FCC, 1953), whose largest value is 0.5226; Y and I
/// stay. Warmth is the blend mode Overlay (ISO 32000-1, section 11.3.5) with the colour f of a Wratten 85 warming gel,
/// 236, 138, 0 of 255. That gel shifts the colour temperature by 112 mired, which are millions by kelvins, and equal
/// steps of mired look equal: so at 5000 K, 200 mired, nothing changes, at 112 mired less the gel lies on the picture
/// with the quarter of full density at which photo editors start it, and above 200 mired, below 5000 K, the picture
/// goes the other way, towards blue. `temperature` is that of the light which the picture was taken in, as cameras put
/// it: the higher, the warmer the result. All on straight values as stored; the result is cut to 0 to 1.
class GPUImageWhiteBalanceFilter : public GPUImageFilter {
public:
    GPUImageWhiteBalanceFilter();
    static FilterDescription describe();

    /// In kelvins; below 1000 it is taken for 1000. Default 5000.
    float temperature() const { return m_temperature; }
    void setTemperature(float kelvins);
    /// Below 0 greener, above 0 more magenta; 10 is the whole way. Default 0.
    float tint() const { return m_tint; }
    void setTint(float tint);

private:
    GLint m_temperatureUniform;
    GLint m_tintUniform;
    float m_temperature = 0;
    float m_tint = 0;
};

} // namespace lamina
