#pragma once

#include "gpu/endpoints/GPUImageMovie.h"
#include "platform/media/AVComposition.h"

#include <memory>
#include <optional>

namespace lamina {

/// Several clips, one after another, as one movie. Its frames are upright and all of one size.
class GPUImageMovieComposition : public GPUImageMovie {
public:
    GPUImageMovieComposition(AVMutableComposition compositon, const AVMutableVideoComposition& videoComposition = {},
                             AVMutableAudioMix audioMix = {});

    const AVMutableComposition& compositon() const { return m_compositon; }
    const AVMutableVideoComposition& videoComposition() const { return m_videoComposition; }
    const AVMutableAudioMix& audioMix() const { return m_audioMix; }

protected:
    std::unique_ptr<AVAssetReader> createAssetReader() override;
    Outcome prepareToRead(const std::atomic<bool>& stopped) override;
    std::optional<GPUImageRotationMode> rotation() const override { return std::nullopt; }
    CMTime duration() const override { return m_compositon.duration(); }

private:
    const AVMutableComposition m_compositon;
    const AVMutableVideoComposition m_videoComposition;
    const AVMutableAudioMix m_audioMix;
};

} // namespace lamina
