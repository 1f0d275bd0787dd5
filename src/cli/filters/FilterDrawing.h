#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/FilterResults.h"
#include "gpu/core/GPUImageFilterPipeline.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

/// Why nothing can be drawn, if so. Keeps the log quiet about it: the command tells it.
Outcome drawingIsPossible();

/// Of a filter that the driver refuses.
Error shadersDontBuild(const std::string& className);

/// What the GPU makes of a picture that is beyond its texture limit: "reduced to W x H: the GPU draws at most N pixels
/// a side". Nothing when it fits.
std::optional<std::string> reductionNote(const UIImage& picture);

/// Bytes that one drawing takes at most, with all that the process holds meanwhile, textures included where the
/// processor draws; a picture that would take more is refused before anything is drawn.
inline constexpr std::size_t kDrawingMemory = 1'600'000'000;

/// The pictures in slots 0, 1, ... of the filter, of which there are as many; each is let go as soon as it is up.
/// Waits for all of the drawing, of which there is one at a time. The error names the filter. `report`: where to put
/// what the filter reports of it; only for one that has results.
Result<UIImage> filteredPicture(const FilterDescription& description, const FilterSettings& settings,
                                std::vector<UIImage> pictures, FilterReport* report = nullptr);

/// What a generator draws without a picture. The error names the filter.
Result<UIImage> generatedPicture(const FilterDescription& description, const FilterSettings& settings, IntSize size);

/// A chain from its file, with all filters known and none that needs more than one picture: what can be told without
/// making them. The error's subject is the path.
Result<PipelineConfiguration> readPipeline(const std::string& path);

/// The picture through a chain that was read, in the same way; the picture itself when the chain is empty.
Result<UIImage> pictureThroughChain(const PipelineConfiguration& configuration, UIImage picture);

} // namespace lamina
