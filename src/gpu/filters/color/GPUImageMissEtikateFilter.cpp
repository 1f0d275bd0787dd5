#include "gpu/filters/color/GPUImageMissEtikateFilter.h"

namespace lamina {

GPUImageMissEtikateFilter::GPUImageMissEtikateFilter()
    : SingleLookupLook("lookup_miss_etikate.png")
{
}

FilterDescription GPUImageMissEtikateFilter::describe()
{
    return filterDescription<GPUImageMissEtikateFilter>("GPUImageMissEtikateFilter", "colour", 1,
                                                        "Cool light over blue-teal shadows");
}

} // namespace lamina
