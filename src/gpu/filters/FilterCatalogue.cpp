#include "gpu/filters/FilterCatalogue.h"

#include "FilterList.h" // made by the build from the list of filters
#include "gpu/filters/FilterSamples.h"

#include <utility>

namespace lamina {

FilterRegistry& filterCatalogue()
{
    static FilterRegistry& registry = *[] {
        auto* filled = new FilterRegistry; // never destroyed: filters may be asked for until the very end
        for (FilterDescription (*describe)() : kFilterList) {
            FilterDescription description = describe();
            description.sample = sampleSettings(description.className);
            filled->add(std::move(description));
        }
        return filled;
    }();
    return registry;
}

} // namespace lamina
