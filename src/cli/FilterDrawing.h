#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/FilterResults.h"
#include "gpu/core/GPUImageFilterPipeline.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <optional>
#include <string>
#include <vector>

namespace lamina {

/// Why nothing can be drawn, if so. Keeps the log quiet about it: the command tells it.
Outcome drawingIsPossible();

/// What the GPU makes of a picture that is beyond its texture limit: "reduced to W x H: the GPU draws at most N pixels
/// a side". Nothing when it fits.
std::optional<std::string> reductionNote(const UIImage& picture);

/// The pictures in slots 0, 1, ... of the filter, of which there are as many. The error names the filter. `report`:
/// where to put what the filter reports of it; only for one that has results.
Result<UIImage> filteredPicture(const FilterDescription& description, const FilterSettings& settings,
                                const std::vector<UIImage>& pictures, FilterReport* report = nullptr);

/// What a generator draws without a picture. The error names the filter.
Result<UIImage> generatedPicture(const FilterDescription& description, const FilterSettings& settings, IntSize size);

/// What is wrong with a chain that can be told without making its filters: a name that is not known, a filter that
/// needs more than one picture.
Outcome checkPipeline(const PipelineConfiguration& configuration);

/// The picture through a checked chain; the picture itself when the chain is empty. The error names a filter.
Result<UIImage> pictureThroughChain(const PipelineConfiguration& configuration, const UIImage& picture);

} // namespace lamina
