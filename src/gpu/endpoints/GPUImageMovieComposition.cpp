#include "gpu/endpoints/GPUImageMovieComposition.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/media/AVAssetReader.h"

#include <atomic>
#include <utility>

namespace lamina {

GPUImageMovieComposition::GPUImageMovieComposition(AVMutableComposition compositon,
                                                   const AVMutableVideoComposition& videoComposition,
                                                   AVMutableAudioMix audioMix)
    : m_compositon(std::move(compositon))
    , m_videoComposition(videoComposition)
    , m_audioMix(std::move(audioMix))
{
}

Outcome GPUImageMovieComposition::prepareToRead(const std::atomic<bool>&)
{
    if (m_compositon.clips().empty())
        return Error{{}, "there is no clip in the composition"};
    const bool hasSize = !(m_videoComposition.renderSize == IntSize{});
    return checkDevice(hasSize ? m_videoComposition.renderSize : m_compositon.naturalSize(), "composition");
}

std::unique_ptr<AVAssetReader> GPUImageMovieComposition::createAssetReader()
{
    // Filters are given every pixel: a smaller scale is for previews that nobody reads.
    const AVMutableVideoComposition fullSize{.renderSize = m_videoComposition.renderSize, .renderScale = 1};
    std::unique_ptr<AVAssetReader> reader = readerOfComposition(m_compositon, fullSize, m_audioMix);
    reader->addVideoOutput(CVPixelFormat::BGRA);
    if (audioEncodingTarget())
        reader->addAudioOutput(false);
    return reader;
}

} // namespace lamina
