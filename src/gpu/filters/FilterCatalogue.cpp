#include "gpu/filters/FilterCatalogue.h"

#include "FilterList.h" // made by the build from the list of filters

namespace lamina {

FilterRegistry& filterCatalogue()
{
    static FilterRegistry& registry = *[] {
        auto* filled = new FilterRegistry; // never destroyed: filters may be asked for until the very end
        for (FilterDescription (*describe)() : kFilterList)
            filled->add(describe());
        return filled;
    }();
    return registry;
}

} // namespace lamina
