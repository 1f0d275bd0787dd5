#pragma once

#include "gpu/core/GPUImageFilterGroup.h"
#include "gpu/sources/GPUImagePicture.h"

#include <memory>
#include <string_view>

namespace lamina {

/// The base of looks that are one of the built-in look-up tables at full strength. Alpha stays.
class SingleLookupLook : public GPUImageFilterGroup {
protected:
    /// `tableFileName`: as of `lookupTable`.
    explicit SingleLookupLook(std::string_view tableFileName);

private:
    std::shared_ptr<GPUImagePicture> m_lookupImageSource;
};

} // namespace lamina
