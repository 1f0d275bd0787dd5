#include "gpu/filters/color/GpuImageCustomFilter.h"

#include "gpu/core/GPUVectors.h"

namespace lamina {

namespace {

constexpr float kIntensity = 1;
constexpr GPUVector4 kColor{0.1F, 0.35F, 0.23F, 8};

} // namespace

GpuImageCustomFilter::GpuImageCustomFilter()
    : LuminanceTintFilter(ColorOrder::GreenRedBlue, kIntensity, kColor)
{
}

FilterDescription GpuImageCustomFilter::describe()
{
    return describeTint<GpuImageCustomFilter>("GpuImageCustomFilter", "A look in warm red shades", kIntensity, kColor);
}

} // namespace lamina
