#include "gpu/filters/edge/GPUImageToonFilter.h"

namespace lamina {

namespace {

constexpr float kThreshold = 0.2F;

} // namespace

GPUImageToonFilter::GPUImageToonFilter()
    : PosterizedEdgesFilter(kThreshold)
{
}

FilterDescription GPUImageToonFilter::describe()
{
    return filterDescription<GPUImageToonFilter>("GPUImageToonFilter", "editor", 1,
                                                 "A cartoon of few shades and black lines", properties(kThreshold));
}

} // namespace lamina
