#include "export/functions/MP4Function.h"

#include "export/functions/ExportPlaces.h"
#include "platform/base/Causes.h"
#include "platform/base/Log.h"
#include "platform/files/FileCauses.h"
#include "platform/files/FileURL.h"
#include "platform/media/Clip.h"
#include "platform/media/ClipDetails.h"
#include "platform/photos/PictureFolders.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <optional>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace lamina {

namespace {

constexpr const char* kTarget = "Convert";
constexpr double kStillSeconds = 3;

struct Preset {
    VideoQuality quality;
    std::string_view name;
    int crf;
};

constexpr std::array<Preset, 3> kPresets = {{
    {VideoQuality::Low, kAVAssetExportPresetLowQuality, 30},
    {VideoQuality::Medium, kAVAssetExportPresetMediumQuality, 24},
    {VideoQuality::High, kAVAssetExportPresetHighestQuality, 18},
}};

const Preset* findPreset(std::string_view name)
{
    for (const Preset& preset : kPresets)
        if (preset.name == name)
            return &preset;
    return nullptr;
}

/// Whether a source can be converted with a preset at all; a picture always can.
Outcome makeSession(const VideoSource& source, const Preset* preset, const ExportWatch& watch)
{
    if (!preset)
        return Error{{}, "there is no such quality"};
    const auto* clip = std::get_if<std::string>(&source);
    if (!clip)
        return success();
    const Result<ClipDetails> details = loadClipDetails(*clip, {.cancelled = watch.cancelled});
    return details ? success() : Outcome(details.error());
}

/// Gives the error back, after telling it to the log.
Error failed(const Error& error, std::optional<VideoExportError> code)
{
    if (error.cause == cause::kCancelled)
        code = VideoExportError::Cancelled;
    else if (error.cause.empty())
        code = VideoExportError::Unknown;
    std::string text = "Error converting video: ";
    if (code)
        text += std::string("VideoExportError ") + std::to_string(static_cast<int>(*code)) + ", " +
                localizedDescription(*code) + ": ";
    logDebug(text + error.message());
    return error.cause.empty() ? Error{error.subject, localizedDescription(VideoExportError::Unknown)} : error;
}

Outcome write(const VideoSource& source, const std::string& path, const VideoExportOptions& options)
{
    if (const auto* clip = std::get_if<std::string>(&source))
        return lamina::convertVideo(*clip, path, options);
    return writeStillVideo(std::get<StillVideo>(source), path, options);
}

} // namespace

std::string_view presetName(VideoQuality quality)
{
    for (const Preset& preset : kPresets)
        if (preset.quality == quality)
            return preset.name;
    return kAVAssetExportPresetLowQuality;
}

int rateFactor(VideoQuality quality)
{
    return findPreset(presetName(quality))->crf;
}

const char* localizedDescription(VideoExportError error)
{
    switch (error) {
    case VideoExportError::SessionNotMade:
        return "Cannot create export session";
    case VideoExportError::Cancelled:
        return "Export cancelled";
    case VideoExportError::Unknown:
        break;
    }
    return "Unknown export error";
}

const MP4Function& MP4Function::shared()
{
    static const MP4Function function;
    return function;
}

Result<StillVideo> MP4Function::generateVideo(const UIImage& image, const std::string& audioURL) const
{
    if (!image)
        return Error{{}, "there is no picture"};
    if (audioURL.empty())
        return Error{"Blank Audio.mp3", cause::kNoSuchFile};
    return StillVideo{image, kStillSeconds, audioURL};
}

Result<std::string> MP4Function::convertVideo(const VideoSource& source, std::string_view presetName,
                                              const ExportPlace& place, const ExportWatch& watch) const
{
    const Preset* preset = findPreset(presetName);
    if (const Outcome session = makeSession(source, preset, watch); !session)
        return failed(session.error(), VideoExportError::SessionNotMade);
    const Result<std::string> path =
        exportPath(place, documentsFolder() + "/" + kTarget, std::string(kTarget) + ".mp4");
    if (!path)
        return failed(path.error(), {});
    VideoExportOptions options{.crf = preset->crf, .progress = watch.progress, .cancelled = watch.cancelled};
    const Outcome written = write(source, *path, options);
    return written ? path : failed(written.error(), {});
}

Outcome MP4Function::deleteFile(const std::string& path) const
{
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0 && errno == ENOENT)
        return success();
    if (::unlink(path.c_str()) == 0)
        return success();
    const Error error{path, writingFailure(S_ISDIR(status.st_mode) ? EISDIR : errno)};
    logError("Unable to delete file: " + error.message() + " : deleteFile(_:).");
    return error;
}

Result<ExportedFile> exportMP4(const ExportSource& source, const ExportOptions& options, const ExportPlace& place,
                               const ExportWatch& watch)
{
    const MP4Function& function = MP4Function::shared();
    VideoSource film = source.clip;
    if (source.clip.empty()) {
        Result<StillVideo> still = function.generateVideo(source.picture, blankAudioFile());
        if (!still) {
            logDebug("fail: " + still.error().message());
            return still.error();
        }
        film = std::move(*still);
    }
    const Result<std::string> path = function.convertVideo(film, presetName(options.video), place, watch);
    if (!path)
        return path.error();
    return ExportedFile{source.picture, *path, {}};
}

} // namespace lamina
