#pragma once

#include "platform/base/CMTime.h"
#include "platform/media/CVPixelBuffer.h"

#include <memory>
#include <vector>

namespace lamina {

/// Sound as numbers: -1 to 1, the channels of a moment side by side.
struct AudioBuffer {
    int sampleRate = 0; ///< moments a second
    int channels = 0;
    std::vector<float> samples; ///< channels × moments

    /// Moments.
    int sampleCount() const { return channels > 0 ? static_cast<int>(samples.size()) / channels : 0; }
};

/// A piece of a movie with its time: a frame, a stretch of sound, or a stored packet that is passed on unopened. A
/// cheap value; its content is shared.
struct CMSampleBuffer {
    CMTime presentationTime;
    CMTime decodeTime; ///< of packets
    CMTime duration;   ///< invalid where nobody told
    std::shared_ptr<CVPixelBuffer> imageBuffer;
    std::shared_ptr<AudioBuffer> audio;
    std::shared_ptr<void> packet; ///< in the form of the module that read it

    /// Whether it has content.
    bool isValid() const { return imageBuffer || audio || packet; }
    /// Lets go of the content, whoever else may have copies of the value.
    void invalidate()
    {
        imageBuffer.reset();
        audio.reset();
        packet.reset();
    }
};

} // namespace lamina
