#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/SingleLookupLook.h"

namespace lamina {

/// The look of a warm film: amber lights, faintly green shadows, lifted black; by the table "lookup_amatorka.png".
/// Alpha stays.
class GPUImageAmatorkaFilter : public SingleLookupLook {
public:
    GPUImageAmatorkaFilter();
    static FilterDescription describe();
};

} // namespace lamina
