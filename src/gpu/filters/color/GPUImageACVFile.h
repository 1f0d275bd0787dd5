#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace lamina {

/// A file of tone curves (".acv"), as photo editors keep them. All numbers are of 16 bits, the higher byte first:
///
///   version, number of curves, and for each curve: number of points, then output and input of each point
///
/// The first four curves are those of all channels together, of red, of green and of blue; what follows them is passed
/// over. A point is (input, output) in shares of 255, computed in single precision; a file may hold values beyond 255,
/// and counts from 0 on. A plain value, usable from any thread.
class GPUImageACVFile {
public:
    /// The order of the curves in a file.
    enum Curve { RGBComposite, Red, Green, Blue };
    static constexpr std::size_t kCurves = 4;

    /// From the bytes of a file. The error has no subject; its cause tells what is wrong with the file.
    static Result<GPUImageACVFile> makeWithACVFileData(std::span<const std::uint8_t> data);
    /// From a regular file. The error's subject is the path.
    static Result<GPUImageACVFile> makeWithContentsOfFile(const std::string& path);

    std::uint16_t version() const { return m_version; }
    /// As the file claims.
    std::uint16_t totalCurves() const { return m_totalCurves; }
    const std::vector<CGPoint>& points(Curve curve) const { return m_points[curve]; }
    const std::vector<CGPoint>& rgbCompositeCurvePoints() const { return points(RGBComposite); }
    const std::vector<CGPoint>& redCurvePoints() const { return points(Red); }
    const std::vector<CGPoint>& greenCurvePoints() const { return points(Green); }
    const std::vector<CGPoint>& blueCurvePoints() const { return points(Blue); }

private:
    GPUImageACVFile() = default;

    std::uint16_t m_version = 0;
    std::uint16_t m_totalCurves = 0;
    std::array<std::vector<CGPoint>, kCurves> m_points;
};

} // namespace lamina
