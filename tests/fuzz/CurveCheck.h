#pragma once

#include "gpu/filters/color/GPUImageACVFile.h"
#include "gpu/filters/color/GPUImageToneCurveFilter.h"
#include "platform/base/Result.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>

namespace lamina {

inline constexpr GPUImageACVFile::Curve kAllCurves[] = {GPUImageACVFile::RGBComposite, GPUImageACVFile::Red,
                                                        GPUImageACVFile::Green, GPUImageACVFile::Blue};

/// What is wrong with the outcome of reading a curve file of `size` bytes, whatever the file was; empty when nothing
/// is: a failure must name its cause, points must have stood in the file, and curves through them be numbers that a
/// table can be made of.
inline std::string faultOf(const Result<GPUImageACVFile>& file, std::size_t size)
{
    if (!file)
        return file.error().cause.empty() ? "a failure without a cause" : "";
    std::size_t numbers = 2;
    for (const auto curve : kAllCurves) {
        numbers += 1 + 2 * file->points(curve).size();
        const auto offsets = GPUImageToneCurveFilter::getPreparedSplineCurve(file->points(curve));
        if (offsets.empty() != file->points(curve).empty() || (!offsets.empty() && offsets.size() < 256))
            return "a curve without its entries";
        if (!std::ranges::all_of(offsets, [](float offset) { return std::abs(offset) <= 255; }))
            return "a curve that leaves its square";
    }
    return 2 * numbers > size ? "more points than the file has" : "";
}

} // namespace lamina
