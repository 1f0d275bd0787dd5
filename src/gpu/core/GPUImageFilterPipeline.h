#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageInput.h"
#include "gpu/core/GPUImageOutput.h"
#include "gpu/core/GPUImageStage.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace lamina {

/// A chain of filters as a file tells it. In JSON:
///
///   {"Filters": [{"FilterName": "GPUImageSepiaFilter", "Attributes": {"setIntensity:": "float(0.8)"}}, ...]}
///
/// An attribute's value is "float(V)", "CGPoint(X, Y)" or "NSString(TEXT)", or for setters of several arguments
/// ("setColorRed:green:blue:") an array of such texts.
struct PipelineConfiguration {
    /// A call of a setter.
    struct Attribute {
        std::string selector;
        std::vector<std::string> values;
    };
    /// A filter of the chain, by its class.
    struct Filter {
        std::string filterName;
        std::vector<Attribute> attributes;
    };
    std::vector<Filter> filters;

    /// At most 64 filters and a megabyte, each key once. What is larger, deeper or longer than any chain is refused
    /// before it takes time or memory. The error's subject is `name`.
    static Result<PipelineConfiguration> fromJson(const std::string& text, const std::string& name);
    /// From a text file, or a pipe (see `readSmallInput`); the error's subject is the path.
    static Result<PipelineConfiguration> fromFile(const std::string& path);
};

/// A list of filters kept as a chain between an input and an output: every change of the list connects the stages anew.
/// It holds all of them. One thread at a time; changes of targets hop to the video processing queue.
class GPUImageFilterPipeline {
public:
    using Filters = std::vector<std::shared_ptr<GPUImageStage>>;

    /// Whether every filter, attribute and value is understood; makes nothing, and needs no GL context.
    static Outcome check(const PipelineConfiguration& configuration, const FilterRegistry& registry);

    /// Null `output`: none. The error says which filter, attribute or value is not understood; nothing is connected
    /// then.
    static Result<std::unique_ptr<GPUImageFilterPipeline>>
    makeWithConfiguration(const PipelineConfiguration& configuration, const FilterRegistry& registry,
                          std::shared_ptr<GPUImageOutput> input, std::shared_ptr<GPUImageInput> output);
    /// The configuration as JSON in a file.
    static Result<std::unique_ptr<GPUImageFilterPipeline>>
    makeWithConfigurationFile(const std::string& path, const FilterRegistry& registry,
                              std::shared_ptr<GPUImageOutput> input, std::shared_ptr<GPUImageInput> output);
    GPUImageFilterPipeline(Filters orderedFilters, std::shared_ptr<GPUImageOutput> input,
                           std::shared_ptr<GPUImageInput> output);

    const Filters& filters() const { return m_filters; }
    const std::shared_ptr<GPUImageOutput>& input() const { return m_input; }
    const std::shared_ptr<GPUImageInput>& output() const { return m_output; }

    // Changes of the list. Indices beyond the end, and filters that are not in the list, are ignored.

    /// Last, or before the filter that is at `index` now.
    void addFilter(std::shared_ptr<GPUImageStage> filter);
    void addFilter(std::shared_ptr<GPUImageStage> filter, std::size_t index);
    /// Another filter in the place of one.
    void replaceFilterAtIndex(std::size_t index, std::shared_ptr<GPUImageStage> filter);
    /// Every entry of this filter.
    void removeFilter(const std::shared_ptr<GPUImageStage>& filter);
    /// One entry.
    void removeFilterAtIndex(std::size_t index);
    /// The input goes to the output then.
    void removeAllFilters();
    /// Another list; null entries are left out.
    void replaceAllFilters(Filters filters);

    // What the last filter has kept for a capture; nothing without a filter. As the operations of `GPUImageOutput`.

    /// Tagged by how the device is held.
    UIImage currentFilteredFrame();
    /// With a tag of one's own.
    UIImage currentFilteredFrameWithOrientation(UIImageOrientation orientation);
    /// Without a tag.
    CGImage newCGImageFromCurrentFilteredFrame();

private:
    void refreshFilters();

    Filters m_filters;
    std::shared_ptr<GPUImageOutput> m_input;
    std::shared_ptr<GPUImageInput> m_output;
};

} // namespace lamina
