#include "gpu/filters/edge/GPUImageFASTCornerDetectionFilter.h"

#include "gpu/core/GPUImageStage.h"
#include "gpu/core/TypedValue.h"
#include "gpu/filters/color/GPUImageGrayscaleFilter.h"
#include "gpu/filters/edge/FASTSegmentTestFilter.h"
#include "gpu/filters/edge/GPUImageNonMaximumSuppressionFilter.h"

#include <vector>

namespace lamina {

namespace {

constexpr ValueKind kVariants{ValueType::Choice, "choice", "all|strongest", "all or strongest", {}};

} // namespace

GPUImageFASTCornerDetectionFilter::GPUImageFASTCornerDetectionFilter(GPUImageFASTDetectorVariant variant)
    : m_test(std::make_shared<FASTSegmentTestFilter>())
{
    std::vector<std::shared_ptr<GPUImageStage>> line{std::make_shared<GPUImageGrayscaleFilter>(), m_test};
    if (variant == kGPUImageFAST12ContiguousNonMaximumSuppressed)
        line.push_back(std::make_shared<GPUImageNonMaximumSuppressionFilter>());
    addFiltersInLine(line);
}

float GPUImageFASTCornerDetectionFilter::threshold() const
{
    return m_test->threshold();
}

void GPUImageFASTCornerDetectionFilter::setThreshold(float threshold)
{
    m_test->setThreshold(threshold);
}

FilterDescription GPUImageFASTCornerDetectionFilter::describe()
{
    using Self = GPUImageFASTCornerDetectionFilter;
    return filterDescriptionWithArguments<Self, GPUImageFASTDetectorVariant>(
        "GPUImageFASTCornerDetectionFilter", "detection", 1, "Corners on black, the stronger the brighter",
        {argumentProperty("FASTDetectorVariant", kVariants, kGPUImageFAST12ContiguousNonMaximumSuppressed,
                          "Whether of corners side by side only the strongest shows")},
        {filterProperty("threshold", &Self::setThreshold, FASTSegmentTestFilter::kStart, {0.01, 1}, "",
                        "By how much a corner differs from what is around")});
}

} // namespace lamina
