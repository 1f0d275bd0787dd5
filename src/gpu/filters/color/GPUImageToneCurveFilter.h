#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/PictureTexture.h"
#include "gpu/filters/color/GPUImageACVFile.h"
#include "gpu/kernels/ColorKernels.h"
#include "gpu/kernels/KernelFrame.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/gl/GLHeaders.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace lamina {

/// Tone curves: one for each of red, green and blue, and one for all three that acts after them.
///
///   out.red = all(r(in.red)),   out.green = all(g(in.green)),   out.blue = all(b(in.blue)),   out.a = in.a
///
/// On straight values as stored. A curve goes through control points (input, output), both from 0 to 1 (beyond, they
/// are taken for the nearer end), as a natural cubic spline (W. H. Press et al., Numerical Recipes, section 3.3): no
/// bend at the ends. Left of the first point a curve is 0, right of the last one 1. Of points at the same input the one
/// given last counts. Curves are tables of 256 entries, cut to whole numbers of 255, in a texture that is read at its
/// texels' centres: every stored value has an entry of its own.
///
/// Where a curve has no points, or so few that they give no 256 entries, the curves in force stay until it has.
/// Default: (0, 0), (0.5, 0.5), (1, 1) for all four, the picture as it is. Setters wait for the video processing queue.
class GPUImageToneCurveFilter : public GPUImageFilter {
public:
    using Points = std::vector<CGPoint>;

    GPUImageToneCurveFilter();
    static FilterDescription describe();

    /// With the curves of a file's bytes. The error is that of the file.
    static Result<std::shared_ptr<GPUImageToneCurveFilter>> makeWithACVData(std::span<const std::uint8_t> data);
    /// With those of the file `name`.acv.
    static Result<std::shared_ptr<GPUImageToneCurveFilter>> makeWithACV(const std::string& name);
    /// With those of the file of this path, which is the error's subject.
    static Result<std::shared_ptr<GPUImageToneCurveFilter>> makeWithACVURL(const std::string& path);

    /// All four curves of the file `name`.acv. An error changes nothing: a file that can't be read, or one with a curve
    /// that has no points.
    Outcome setPointsWithACV(const std::string& name);
    /// The same of the file of this path.
    Outcome setPointsWithACVURL(const std::string& path);

    const Points& rgbCompositeControlPoints() const { return m_points[GPUImageACVFile::RGBComposite]; }
    /// The curve that acts after the other three.
    void setRgbCompositeControlPoints(const Points& points);
    const Points& redControlPoints() const { return m_points[GPUImageACVFile::Red]; }
    /// The curve of red.
    void setRedControlPoints(const Points& points);
    const Points& greenControlPoints() const { return m_points[GPUImageACVFile::Green]; }
    /// The curve of green.
    void setGreenControlPoints(const Points& points);
    const Points& blueControlPoints() const { return m_points[GPUImageACVFile::Blue]; }
    /// The curve of blue.
    void setBlueControlPoints(const Points& points);

    /// The curve through these points of the unit square, in any order, as what it adds to each of the numbers 0 to
    /// 255; empty without points. Where the curve does not begin at 0, the number at which it does has two entries.
    static std::vector<float> getPreparedSplineCurve(const Points& points);
    /// The spline through points in rising order of x, at every whole number from the first, which is cut to one, up to
    /// the last point, which comes as it is. Outputs are cut to 0 to 255.
    static Points splineCurve(const Points& points);
    /// Of the natural spline at each of its points, whose x rises; empty for fewer than two.
    static std::vector<double> secondDerivative(const Points& points);

    /// Uploads the curves in force, if all four have their 256 entries; into the same texture every time.
    void updateToneCurveTexture();

protected:
    FilterKernel kernel() const override;

    void bindFurtherInputs() override;

private:
    using Curves = std::array<std::vector<float>, GPUImageACVFile::kCurves>;

    Outcome setPoints(const Result<GPUImageACVFile>& file, const std::string& path);
    void prepare(GPUImageACVFile::Curve curve, const Points& points);
    void setControlPoints(GPUImageACVFile::Curve curve, const Points& points);

    GLint m_toneCurveTextureUniform;
    std::array<Points, GPUImageACVFile::kCurves> m_points;
    Curves m_curves;
    std::unique_ptr<PictureTexture> m_toneCurveTexture;
    std::array<kernels::ChannelTable, 3> m_tables{}; ///< what the texture holds
};

} // namespace lamina
