#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilterGroup.h"
#include "gpu/sources/GPUImagePicture.h"

#include <memory>

namespace lamina {

/// The look of a warm film: amber lights, faintly green shadows, lifted black; by the table "lookup_amatorka.png". Alpha stays.
class GPUImageAmatorkaFilter : public GPUImageFilterGroup {
public:
    GPUImageAmatorkaFilter();
    static FilterDescription describe();

private:
    std::shared_ptr<GPUImagePicture> m_lookupImageSource;
};

} // namespace lamina
