#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/FilterResults.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUImageFilterGroup.h"
#include "gpu/filters/analysis/PeakFinder.h"
#include "gpu/filters/analysis/PeakPairs.h"
#include "gpu/filters/blur/GPUImageGaussianBlurFilter.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace lamina {

/// Finds corners: places where brightness changes in two directions. The picture that comes out is black but for them.
///
///   d = blur(GPUImageXYDerivativeFilter(in)),   z = 2 d.z - 1
///   cornerness = sensitivity (d.x d.y - z^2 - 0.04 (d.x + d.y)^2)
///   out = cornerness, cut to 0 to 1, where it is a peak that reaches `threshold`, else 0
///
/// after Harris and Stephens, A Combined Corner and Edge Detector, 1988. Peaks are those of
/// `GPUImageThresholdedNonMaximumSuppressionFilter`. Passes keep 8 bits each.
class GPUImageHarrisCornerDetectionFilter : public GPUImageFilterGroup {
public:
    GPUImageHarrisCornerDetectionFilter();
    static FilterDescription describe();

    /// In pixels, 2 at first; as of `GPUImageGaussianBlurFilter`. More finds fewer and coarser corners.
    float blurRadiusInPixels() const { return m_blur->blurRadiusInPixels(); }
    void setBlurRadiusInPixels(float radius) { m_blur->setBlurRadiusInPixels(radius); }
    /// Factor of the cornerness before it is held against the threshold.
    float sensitivity() const { return m_sensitivity; }
    void setSensitivity(float sensitivity);
    /// The least cornerness of a corner, 0.2 at first.
    float threshold() const { return m_peaks->threshold(); }
    void setThreshold(float threshold) { m_peaks->setThreshold(threshold); }

    /// Room for the corners that the block is told: x and y of each, in shares of the width and the height.
    static constexpr std::size_t kCornerRoom = PeakPairs::kRoom;
    /// Of more corners, the last takes the place of the one before.
    static constexpr unsigned kMostCorners = PeakPairs::kMost;
    /// Gets what was found in each frame, in the order of the picture's rows, on the video processing queue, before the
    /// targets have the frame: an array of `kCornerRoom` numbers that is good during the call, and how many corners
    /// stand in it. It must not wait for the main queue.
    using CornersDetectedBlock = std::function<void(std::span<const float> cornerArray, unsigned count, CMTime time)>;
    /// From any thread; in force from the next frame.
    void setCornersDetectedBlock(CornersDetectedBlock block);

    /// What stands out of its surroundings in two directions.
    struct Corner {
        CGPoint place;       ///< in shares of the width and the height
        double strength = 0; ///< cornerness, up to 1
    };
    /// Gets all corners of each frame, the strongest first and equally strong ones in the order of rows; as above.
    using CornersBlock = std::function<void(const std::vector<Corner>& corners, CMTime time)>;
    void setCornersBlock(CornersBlock block);

protected:
    /// `cornerness`: a GLSL expression of `vec3 d` and `float z` as above.
    GPUImageHarrisCornerDetectionFilter(const std::string& cornerness, float sensitivity);
    /// The description of a class with this sensitivity at first.
    template <class Filter>
    static FilterDescription cornerDescription(std::string className, std::string help, float sensitivity)
    {
        using Base = GPUImageHarrisCornerDetectionFilter;
        FilterDescription description = filterDescription<Filter>(
            std::move(className), "detection", 1, std::move(help),
            {filterProperty("blurRadiusInPixels", &Base::setBlurRadiusInPixels, 2.0F, {0, 20}, "pixels",
                            "Radius of the blur: more finds fewer and coarser corners"),
             filterProperty("sensitivity", &Base::setSensitivity, sensitivity, {0, 20}, "",
                            "Factor of the cornerness: more finds weaker corners"),
             filterProperty("threshold", &Base::setThreshold, 0.2F, {0, 1}, "", "The least cornerness of a corner")});
        description.reporting = cornerReporting();
        return description;
    }

private:
    static FilterReporting cornerReporting();
    /// Who is told, and of what.
    struct Telling;

    std::shared_ptr<GPUImageGaussianBlurFilter> m_blur;
    std::shared_ptr<GPUImageFilter> m_cornerness;
    std::shared_ptr<PeakFinder> m_peaks;
    float m_sensitivity = 0;
    std::shared_ptr<Telling> m_telling;
};

} // namespace lamina
