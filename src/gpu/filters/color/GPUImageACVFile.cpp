#include "gpu/filters/color/GPUImageACVFile.h"

#include "platform/base/Log.h"
#include "platform/files/FileCauses.h"
#include "platform/files/FileReading.h"

#include <filesystem>
#include <limits>
#include <optional>
#include <system_error>
#include <utility>

namespace lamina {

namespace {

/// Four curves of as many points as can be counted, and as much again for what may follow.
constexpr std::size_t kMostBytes =
    2 * GPUImageACVFile::kCurves * 4 * (std::size_t{1} + std::numeric_limits<std::uint16_t>::max());

constexpr float kShare = 0.003921569F;

const Error kCutOff{{}, "the curve file ends too early"};

/// Takes numbers from the front of the bytes.
class BigEndianReader {
public:
    explicit BigEndianReader(std::span<const std::uint8_t> bytes)
        : m_bytes(bytes)
    {
    }

    std::optional<std::uint16_t> next()
    {
        if (m_bytes.size() < 2)
            return std::nullopt;
        const auto number = static_cast<std::uint16_t>(m_bytes[0] << 8 | m_bytes[1]);
        m_bytes = m_bytes.subspan(2);
        return number;
    }
    std::size_t left() const { return m_bytes.size(); }

private:
    std::span<const std::uint8_t> m_bytes;
};

/// Nothing where the bytes end before the curve does.
std::optional<std::vector<CGPoint>> readCurve(BigEndianReader& reader)
{
    const std::optional<std::uint16_t> count = reader.next();
    if (!count || reader.left() < 4 * std::size_t{*count})
        return std::nullopt;
    std::vector<CGPoint> points(*count);
    for (CGPoint& point : points) {
        point.y = static_cast<float>(*reader.next()) * kShare;
        point.x = static_cast<float>(*reader.next()) * kShare;
    }
    return points;
}

} // namespace

Result<GPUImageACVFile> GPUImageACVFile::makeWithACVFileData(std::span<const std::uint8_t> data)
{
    if (data.empty()) {
        logError("failed to init ACVFile with data:<>");
        return Error{{}, "the file is empty"};
    }
    BigEndianReader reader(data);
    const std::optional<std::uint16_t> version = reader.next();
    const std::optional<std::uint16_t> total = reader.next();
    if (!version || !total)
        return kCutOff;
    if (*total < kCurves)
        return Error{{}, "the curve file has fewer than four curves"};
    GPUImageACVFile file;
    file.m_version = *version;
    file.m_totalCurves = *total;
    for (std::vector<CGPoint>& points : file.m_points) {
        std::optional<std::vector<CGPoint>> curve = readCurve(reader);
        if (!curve)
            return kCutOff;
        points = std::move(*curve);
    }
    return file;
}

Result<GPUImageACVFile> GPUImageACVFile::makeWithContentsOfFile(const std::string& path)
{
    std::error_code unknown;
    const auto status = std::filesystem::status(path, unknown);
    if (std::filesystem::exists(status) && !std::filesystem::is_directory(status) &&
        !std::filesystem::is_regular_file(status))
        return Error{path, cause::kNotRegular};
    const Result<std::vector<std::uint8_t>> bytes = readSmallInput(path, kMostBytes);
    if (!bytes)
        return bytes.error();
    Result<GPUImageACVFile> file = makeWithACVFileData(*bytes);
    if (!file)
        return Error{path, file.error().cause};
    return file;
}

} // namespace lamina
