#pragma once

#include "gpu/core/GPUImageStage.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

/// Something that a filter tells in numbers of every frame, beside its picture.
struct FilterResult {
    std::string name;                     ///< "corners"
    std::vector<std::string> fields = {}; ///< the numbers of an entry by name, "x", "y"; empty where it is one number
    bool isList = false;                  ///< any number of entries, else exactly one
    std::string unit;                     ///< "share of the width and height", "pixels" ...; empty where there is none
    std::string help;                     ///< one line, without a full stop
};

/// What one result says of a frame: entry after entry, the fields of each in their order. NaN stands for what there is
/// none of.
using FilterResultValues = std::vector<double>;

/// What a filter says of a frame: one for each of its description's results, in their order.
using FilterReport = std::vector<FilterResultValues>;

/// Gets the report of each frame, on the video processing queue, before the frame is captured. It must not wait for the
/// main queue.
using FilterReportBlock = std::function<void(FilterReport report)>;

/// What a filter reports, and how it is listened to.
struct FilterReporting {
    std::vector<FilterResult> results; ///< empty for most filters
    /// Has every frame from the next one on reported to `block`, in the place of who was told so far. Empty where there
    /// are no results.
    std::function<void(GPUImageStage& filter, FilterReportBlock block)> listen;
};

/// Results of a filter whose `listen` sets the block of its own that tells them:
///
///   filterReporting<Average>({{"mean", {}, false, "", "Mean"}}, [](Average& filter, FilterReportBlock block) {
///       filter.setBlock([block](double mean) { block({{mean}}); });
///   })
template <class Filter, class Listen>
FilterReporting filterReporting(std::vector<FilterResult> results, Listen listen)
{
    return {std::move(results), [listen](GPUImageStage& stage, FilterReportBlock block) {
                listen(dynamic_cast<Filter&>(stage), std::move(block));
            }};
}

} // namespace lamina
