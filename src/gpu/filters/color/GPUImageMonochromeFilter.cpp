#include "gpu/filters/color/GPUImageMonochromeFilter.h"

#include "gpu/core/GPUVectors.h"

namespace lamina {

namespace {

constexpr float kIntensity = 1;
constexpr GPUVector4 kColor{0.6F, 0.45F, 0.3F, 1};

} // namespace

GPUImageMonochromeFilter::GPUImageMonochromeFilter()
    : LuminanceTintFilter(ColorOrder::RedGreenBlue, kIntensity, kColor)
{
}

FilterDescription GPUImageMonochromeFilter::describe()
{
    return describeTint<GPUImageMonochromeFilter>("GPUImageMonochromeFilter", "A picture in the shades of one colour",
                                                  kIntensity, kColor);
}

} // namespace lamina
