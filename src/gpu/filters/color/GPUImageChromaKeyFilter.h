#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/filters/color/ChromaKeying.h"

namespace lamina {

/// Cuts a colour out of a picture, as of a green screen: what has it becomes transparent.
///
///   out.a = share in.a,   out.rgb = in.rgb
///
/// with the share that is told at `kChromaKeyFunctions`. Colours are straight, as stored: brightness does not count,
/// shadows on the screen go too.
class GPUImageChromaKeyFilter : public ChromaKeying<GPUImageFilter> {
public:
    GPUImageChromaKeyFilter();
    static FilterDescription describe();
};

} // namespace lamina
