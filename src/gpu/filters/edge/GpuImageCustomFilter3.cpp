#include "gpu/filters/edge/GpuImageCustomFilter3.h"

namespace lamina {

namespace {

constexpr float kThreshold = 1;

} // namespace

GpuImageCustomFilter3::GpuImageCustomFilter3()
    : PosterizedEdgesFilter(kThreshold)
{
}

FilterDescription GpuImageCustomFilter3::describe()
{
    return filterDescription<GpuImageCustomFilter3>(
        "GpuImageCustomFilter3", "editor", 1, "A poster of few shades, black along hard edges", properties(kThreshold));
}

} // namespace lamina
