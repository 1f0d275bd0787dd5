#include "gpu/filters/color/GpuImageCustomFilter1.h"

#include "gpu/core/GPUVectors.h"

namespace lamina {

namespace {

constexpr float kIntensity = 5;
constexpr GPUVector4 kColor{0.23F, 0.35F, 0.1F, 3};

} // namespace

GpuImageCustomFilter1::GpuImageCustomFilter1()
    : LuminanceTintFilter(ColorOrder::GreenRedBlue, kIntensity, kColor)
{
}

FilterDescription GpuImageCustomFilter1::describe()
{
    return describeTint<GpuImageCustomFilter1>("GpuImageCustomFilter1", "A harsh look far past warm shades", kIntensity,
                                               kColor);
}

} // namespace lamina
