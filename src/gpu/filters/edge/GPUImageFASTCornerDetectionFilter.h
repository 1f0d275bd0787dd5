#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilterGroup.h"

#include <memory>

namespace lamina {

class FASTSegmentTestFilter;

/// What a corner is.
enum GPUImageFASTDetectorVariant {
    kGPUImageFAST12Contiguous, ///< every pixel with twelve points in a row around that are all brighter or darker
    kGPUImageFAST12ContiguousNonMaximumSuppressed, ///< the strongest of those among its neighbours
};

/// Corners on black, the stronger the brighter; opaque.
///
/// In line: `GPUImageGrayscaleFilter`, `FASTSegmentTestFilter` and, by its variant,
/// `GPUImageNonMaximumSuppressionFilter`.
class GPUImageFASTCornerDetectionFilter : public GPUImageFilterGroup {
public:
    static FilterDescription describe();

    explicit GPUImageFASTCornerDetectionFilter(
        GPUImageFASTDetectorVariant variant = kGPUImageFAST12ContiguousNonMaximumSuppressed);

    /// By how much the points around differ at least, in shares of the way from black to white: 0.1 at first.
    float threshold() const;
    void setThreshold(float threshold);

private:
    std::shared_ptr<FASTSegmentTestFilter> m_test;
};

} // namespace lamina
