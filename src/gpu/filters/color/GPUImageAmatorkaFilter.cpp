#include "gpu/filters/color/GPUImageAmatorkaFilter.h"

namespace lamina {

GPUImageAmatorkaFilter::GPUImageAmatorkaFilter()
    : SingleLookupLook("lookup_amatorka.png")
{
}

FilterDescription GPUImageAmatorkaFilter::describe()
{
    return filterDescription<GPUImageAmatorkaFilter>("GPUImageAmatorkaFilter", "editor", 1,
                                                     "Warm film: amber lights, olive greens");
}

} // namespace lamina
