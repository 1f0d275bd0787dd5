#include "export/functions/ClipThumbnail.h"

#include "platform/files/FileURL.h"
#include "platform/media/Clip.h"

#include <string>
#include <utility>

namespace lamina {

Result<UIImage> thumbnailOfVideo(std::string_view clip, const CMTime& time, const std::atomic<bool>* cancelled)
{
    const Result<std::string> path = clip.starts_with("file:") ? pathOfFileURL(clip) : std::string(clip);
    if (!path)
        return path.error();
    Result<ClipFrame> frame = loadClipFrame(*path, time, {.cancelled = cancelled});
    if (!frame)
        return frame.error();
    return std::move(frame->picture);
}

} // namespace lamina
