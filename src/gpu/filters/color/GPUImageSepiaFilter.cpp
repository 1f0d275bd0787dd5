// The rows are the luma of ITU-R BT.601, 0.299 R + 0.587 G + 0.114 B, times 1.2, 1 and 0.8.

#include "gpu/filters/color/GPUImageSepiaFilter.h"

#include "gpu/core/GPUVectors.h"

namespace lamina {

namespace {

constexpr GPUMatrix4x4 kSepia{
    {0.3588F, 0.7044F, 0.1368F, 0}, {0.2990F, 0.5870F, 0.1140F, 0}, {0.2392F, 0.4696F, 0.0912F, 0}, {0, 0, 0, 1}};

} // namespace

GPUImageSepiaFilter::GPUImageSepiaFilter()
{
    setIntensity(1);
    setColorMatrix(kSepia);
}

FilterDescription GPUImageSepiaFilter::describe()
{
    using Self = GPUImageSepiaFilter;
    return filterDescription<Self>(
        "GPUImageSepiaFilter", "editor", 1, "Brown tones, as of an old print",
        {filterProperty("intensity", &Self::setIntensity, 1.0F, {0, 1}, "", "Share of the brown tone"),
         filterProperty("colorMatrix", &Self::setColorMatrix, kSepia, {-2, 2}, "",
                        "A row of weights for each of red, green, blue and alpha")});
}

} // namespace lamina
