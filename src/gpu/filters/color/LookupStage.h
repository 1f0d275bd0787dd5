#pragma once

#include "gpu/filters/color/GPUImageLookupFilter.h"
#include "gpu/sources/GPUImagePicture.h"

#include <memory>
#include <string_view>

namespace lamina {

/// A look-up filter with one of the built-in tables in slot 1, at intensity 1: what the looks are made of. Slot 0 is
/// free and takes any number of frames, still or streaming, since the table comes once and is not waited for again. The
/// table's picture must live as long as the filter is used.
struct LookupStage {
    std::shared_ptr<GPUImagePicture> lookupImageSource;
    std::shared_ptr<GPUImageLookupFilter> filter;

    /// `tableFileName`: as of `lookupTable`. An unknown one leaves an empty picture in the slot.
    static LookupStage make(std::string_view tableFileName);
};

} // namespace lamina
