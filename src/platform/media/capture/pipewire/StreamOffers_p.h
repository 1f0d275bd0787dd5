#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/media/capture/RawFrame.h"
#include "platform/media/capture/pipewire/VideoModes_p.h"

#include <array>
#include <cstdint>
#include <optional>
#include <spa/pod/builder.h>
#include <span>
#include <vector>

namespace lamina {

/// What a stream says of what it would take, in the words of PipeWire, the best first.
class StreamOffers {
public:
    /// Of frames, a second, where any will do.
    explicit StreamOffers(std::uint32_t likedRate = 30);
    StreamOffers(const StreamOffers&) = delete;
    StreamOffers& operator=(const StreamOffers&) = delete;

    /// Frames in such an encoding, of such a size, at such a rate; none: about the size, any rate.
    void addVideo(RawEncoding encoding, IntSize size, bool exactSize, std::optional<spa_fraction> rate);
    /// Frames in any encoding that we read.
    void addAnyVideo(IntSize about);
    /// Numbers of 32 bits, the channels side by side; 0: as many as come.
    void addSound(int channels);
    /// What a stream of frames needs of its buffers.
    void addBuffers();

    /// Null after the last. Valid for as long as this lives.
    std::vector<const spa_pod*>& params() { return m_params; }

private:
    void beginFormat(spa_pod_frame& frame, std::uint32_t type, std::uint32_t subtype);
    void addPlainVideo(std::span<const std::uint32_t> formats, IntSize size, bool exactSize,
                       std::optional<spa_fraction> rate);
    void addSizeAndRate(IntSize size, bool exactSize, std::optional<spa_fraction> rate);
    void end(spa_pod_frame& frame);

    std::uint32_t m_likedRate;
    std::array<std::uint8_t, 8192> m_memory;
    spa_pod_builder m_builder = {};
    std::vector<const spa_pod*> m_params;
};

} // namespace lamina
