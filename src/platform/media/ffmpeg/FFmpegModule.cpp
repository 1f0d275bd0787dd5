#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/media/ClipDetails.h"
#include "platform/media/MediaModule_p.h"
#include "platform/media/MovieWriting_p.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"
#include "platform/media/ffmpeg/FilmWriting_p.h"
#include "platform/media/ffmpeg/FrameReading_p.h"
#include "platform/media/ffmpeg/PlainNumbers_p.h"
#include "platform/media/ffmpeg/TrackReading_p.h"

#include <cstddef>
#include <memory>
#include <new>
#include <string>

extern "C" {
#include <libavutil/log.h>
#include <libavutil/mem.h>
}

namespace lamina {

namespace {

/// Nothing is thrown at the program, which may have been built otherwise.
template <auto function, class Result, class... Arguments>
Result guarded(Arguments... arguments)
{
    const PlainNumbers plain;
    try {
        return function(arguments...);
    } catch (const std::bad_alloc&) {
        return Error{{}, cause::kNoMemory};
    }
}

/// Damaged clips claim blocks of any size, and an index is held twice. The largest frame that is read fits.
constexpr std::size_t kLargestBlock = std::size_t{288} << 20;

const MediaModule kModule{
    LAMINA_VERSION,
    guarded<readDetails, Result<ClipDetails>, const ClipFile&>,
    guarded<readFrame, Result<double>, const ClipFile&, double, ClipDetails&, const MediaModule::Allocate&>,
    guarded<writeStill, Outcome, const StillFilm&, const FilmSettings&>,
    guarded<convertClip, Outcome, const ClipFile&, const MediaModule::SizeRule&, const FilmSettings&>,
    guarded<writeMovie, Result<std::unique_ptr<MovieWriting>>, const char*>,
    guarded<rewriteMovie, Outcome, const std::string&, const FilmSettings&>,
    guarded<readAsset, Result<AssetDetails>, const ClipFile&>,
    guarded<readTrack, Result<std::unique_ptr<TrackReading>>, const ClipFile&, const TrackRequest&>,
};

} // namespace

} // namespace lamina

extern "C" __attribute__((visibility("default"))) const lamina::MediaModule* laminaMediaModule()
{
    av_log_set_level(AV_LOG_QUIET); // what matters comes back as a value
    av_max_alloc(lamina::kLargestBlock);
    return &lamina::kModule;
}
