#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilterGroup.h"
#include "gpu/sources/GPUImagePicture.h"

#include <memory>

namespace lamina {

/// A cool look: blue-teal shadows under a slightly blue light, with warm skin; by the table "lookup_miss_etikate.png". Alpha stays.
class GPUImageMissEtikateFilter : public GPUImageFilterGroup {
public:
    GPUImageMissEtikateFilter();
    static FilterDescription describe();

private:
    std::shared_ptr<GPUImagePicture> m_lookupImageSource;
};

} // namespace lamina
