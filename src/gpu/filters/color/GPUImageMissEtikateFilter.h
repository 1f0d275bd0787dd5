#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/SingleLookupLook.h"

namespace lamina {

/// A cool look: blue-teal shadows under a slightly blue light, with warm skin; by the table "lookup_miss_etikate.png".
/// Alpha stays.
class GPUImageMissEtikateFilter : public SingleLookupLook {
public:
    GPUImageMissEtikateFilter();
    static FilterDescription describe();
};

} // namespace lamina
