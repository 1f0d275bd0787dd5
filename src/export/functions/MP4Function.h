#pragma once

#include "export/functions/ExportWork.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/media/VideoExport.h"

#include <string>
#include <string_view>
#include <variant>

namespace lamina {

/// The qualities of a film: the encoder's constant rate factors 30, 24 and 18.
inline constexpr std::string_view kAVAssetExportPresetLowQuality = "AVAssetExportPresetLowQuality";
inline constexpr std::string_view kAVAssetExportPresetMediumQuality = "AVAssetExportPresetMediumQuality";
inline constexpr std::string_view kAVAssetExportPresetHighestQuality = "AVAssetExportPresetHighestQuality";

/// The name of the preset for a choice.
std::string_view presetName(VideoQuality quality);

/// The constant rate factor of a choice.
int rateFactor(VideoQuality quality);

/// What a conversion's own failures are called in the log, in the domain "VideoExportError". What the file system or
/// the encoder has said is handed on as it is and has no code.
enum class VideoExportError {
    SessionNotMade = -1, ///< the clip can't be read, or there is no such preset
    Unknown = -2,        ///< it failed without a cause
    Cancelled = -3,
};

/// The code's text: "Cannot create export session", "Unknown export error", "Export cancelled".
const char* localizedDescription(VideoExportError error);

/// What a film is made of: a clip's path, or a picture and how long it stands.
using VideoSource = std::variant<std::string, StillVideo>;

/// Films of pictures and of clips. Stateless; all of it blocks its caller and is usable from any thread.
class MP4Function {
public:
    /// The one instance.
    static const MP4Function& shared();

    /// The film that a picture is to become: three seconds with the silent sound, which must be there. Nothing is
    /// encoded yet: one frame and its length are handed on, so that the picture is encoded once.
    Result<StillVideo> generateVideo(const UIImage& image, const std::string& audioURL) const;

    /// Writes the film and gives its path: "Convert.mp4" in the folder "Convert", which is made, of the folder for
    /// documents, unless another place is named. An earlier film keeps its place until the new one stands whole, and is
    /// replaced then; so of two that are made at once, each stands whole for its time. Where anything but a folder
    /// bears the name "Convert" it stays, and is the error's subject.
    ///
    /// The error names what stood in the way, with the file concerned as its subject, and "cancelled" as its cause when
    /// the watch says so; the log tells it at its level for debugging, with the code that it has.
    Result<std::string> convertVideo(const VideoSource& source, std::string_view presetName,
                                     const ExportPlace& place = {}, const ExportWatch& watch = {}) const;

    /// Removes a file, where there is one. A folder is none. What can't be removed is told to the log too.
    Outcome deleteFile(const std::string& path) const;
};

/// The work of saving as MP4: of a clip the clip, otherwise of the picture. What the share screen shows is the source's
/// picture.
Result<ExportedFile> exportMP4(const ExportSource& source, const ExportOptions& options, const ExportPlace& place,
                               const ExportWatch& watch);

} // namespace lamina
