#include "gpu/filters/GPUImageAmatorkaFilter.h"

#include "gpu/filters/LookupStage.h"

namespace lamina {

GPUImageAmatorkaFilter::GPUImageAmatorkaFilter()
{
    const LookupStage look = LookupStage::make("lookup_amatorka.png");
    m_lookupImageSource = look.lookupImageSource;
    addFilter(look.filter);
    setInitialFilters({look.filter});
    setTerminalFilter(look.filter);
}

FilterDescription GPUImageAmatorkaFilter::describe()
{
    return filterDescription<GPUImageAmatorkaFilter>("GPUImageAmatorkaFilter", "editor", 1,
                                                     "Warm film: amber lights, olive greens");
}

} // namespace lamina
