#include "platform/media/AVAsset.h"

#include "platform/media/Clip.h"
#include "platform/media/MediaModule_p.h"

namespace lamina {

Result<std::shared_ptr<const AVURLAsset>> AVURLAsset::make(const std::string& path, const std::atomic<bool>* cancelled)
{
    Result<OpenedFile> file = openFileForReading(path);
    if (!file)
        return file.error();
    const Result<const MediaModule*> module = mediaModule();
    if (!module)
        return Error{path, module.error().cause};
    const ClipLimits limits{.cancelled = cancelled};
    const std::shared_ptr<AVURLAsset> asset(new AVURLAsset(path, std::move(*file)));
    Result<AssetDetails> details =
        (*module)->asset({asset->descriptor(), limits.memoryLimit, {limits.cancelled, limits.seconds}});
    if (!details)
        return Error{path, details.error().cause};
    asset->m_startTime = details->startTime;
    asset->m_duration = details->duration;
    asset->m_video = std::move(details->video);
    asset->m_audio = std::move(details->audio);
    return std::shared_ptr<const AVURLAsset>(asset);
}

} // namespace lamina
