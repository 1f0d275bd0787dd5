#include "cli/movie/MovieReport.h"

#include "cli/common/JsonText.h"
#include "cli/common/PictureOutput.h"
#include "gpu/core/TypedValue.h"

#include <cmath>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <system_error>
#include <utility>

namespace lamina {

Result<MovieReport> reportOn(const std::string& input, const std::string& output, std::vector<std::string> filters,
                             int frames)
{
    const Result<std::shared_ptr<const AVURLAsset>> written = AVURLAsset::make(output);
    if (!written)
        return written.error();
    const AVURLAsset& movie = **written;
    if (movie.videoTracks().empty())
        return Error{output, "the movie holds no picture"};
    MovieReport report{.input = input,
                       .output = output,
                       .filters = std::move(filters),
                       .frames = frames,
                       .seconds = movie.duration().seconds(),
                       .picture = movie.videoTracks().front()};
    report.size = uprightSize(report.picture);
    if (!movie.audioTracks().empty())
        report.sound = movie.audioTracks().front();
    std::error_code unreadable;
    report.bytes = std::filesystem::file_size(output, unreadable);
    return report;
}

std::string asLine(const MovieReport& report)
{
    constexpr double kTenths = 10;
    const auto seconds = static_cast<float>(std::round(report.seconds * kTenths) / kTenths);
    return report.output + ": " + std::to_string(report.frames) + (report.frames == 1 ? " frame, " : " frames, ") +
           formatValue(seconds) + " s, " + sizeInPixels(report.size) +
           (report.dropped.value_or(0) > 0 ? ", " + std::to_string(*report.dropped) + " dropped" : "");
}

std::string asJson(const MovieReport& report)
{
    constexpr int kQuarter = 90;
    nlohmann::ordered_json json{{"input", report.input},
                                {"output", report.output},
                                {"filters", report.filters},
                                {"frames", report.frames},
                                {"seconds", report.seconds},
                                {"width", report.size.width},
                                {"height", report.size.height},
                                {"rotation", kQuarter * report.picture.preferredTransform.quarters},
                                {"frameRate", report.picture.nominalFrameRate},
                                {"codec", report.picture.codec},
                                {"sound", nullptr},
                                {"bytes", report.bytes}};
    if (report.sound) {
        json["sound"] = {{"codec", report.sound->codec},
                         {"sampleRate", report.sound->sampleRate},
                         {"channels", report.sound->channels}};
    }
    if (report.dropped)
        json["dropped"] = *report.dropped;
    return jsonText(json);
}

} // namespace lamina
