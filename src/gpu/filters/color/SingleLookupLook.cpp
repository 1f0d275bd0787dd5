#include "gpu/filters/color/SingleLookupLook.h"

#include "gpu/filters/color/LookupStage.h"

namespace lamina {

SingleLookupLook::SingleLookupLook(std::string_view tableFileName)
{
    const LookupStage look = LookupStage::make(tableFileName);
    m_lookupImageSource = look.lookupImageSource;
    addFilter(look.filter);
    setInitialFilters({look.filter});
    setTerminalFilter(look.filter);
}

} // namespace lamina
