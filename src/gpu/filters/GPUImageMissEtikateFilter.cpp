#include "gpu/filters/GPUImageMissEtikateFilter.h"

#include "gpu/filters/LookupStage.h"

namespace lamina {

GPUImageMissEtikateFilter::GPUImageMissEtikateFilter()
{
    const LookupStage look = LookupStage::make("lookup_miss_etikate.png");
    m_lookupImageSource = look.lookupImageSource;
    addFilter(look.filter);
    setInitialFilters({look.filter});
    setTerminalFilter(look.filter);
}

FilterDescription GPUImageMissEtikateFilter::describe()
{
    return filterDescription<GPUImageMissEtikateFilter>("GPUImageMissEtikateFilter", "colour", 1,
                                                        "Cool light over blue-teal shadows");
}

} // namespace lamina
