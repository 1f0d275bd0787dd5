#pragma once

#include "platform/media/capture/CaptureModule_p.h"
#include "platform/media/capture/pipewire/PipeWireHandles_p.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <spa/param/audio/raw.h>
#include <spa/pod/pod.h>
#include <spa/support/loop.h>
#include <spa/utils/hook.h>
#include <string>

namespace lamina {

class PipeWireConnection;

/// A stream from a node to us: what is agreed on, and the buffers as they come. All of it under the loop's lock; events
/// come on the loop's thread.
class PipeWireStream : public CaptureStream {
public:
    PipeWireStream(PipeWireConnection& connection, const CaptureStreamRequest& request, CaptureStreamHandlers handlers);
    /// Takes the loop's lock.
    ~PipeWireStream() override;

    /// Asks for what is wanted; what stands in the way ends the stream, on the loop's thread.
    void connect();
    /// Nothing comes any more, for this cause. The first call counts; on the loop's thread.
    void end(const char* cause);
    std::uint32_t nodeID() const { return m_request.node; }

private:
    static void stateChanged(void* data, pw_stream_state before, pw_stream_state state, const char* error);
    static void paramChanged(void* data, std::uint32_t id, const spa_pod* param);
    static void process(void* data);
    static void timeOut(void* data, std::uint64_t expirations);

    bool isVideo() const { return m_type == AVTrackMediaType::Video; }
    bool connectToNode();
    void setTimer(double seconds);
    void startAnew();
    void disconnect();
    void agreeOnVideo(const spa_pod& format);
    void agreeOnSound(const spa_pod& format);
    void takeFrames();
    void takeSound();
    void takeFrame(const pw_buffer& buffer);
    void takeSound(const pw_buffer& buffer);

    PipeWireConnection& m_connection;
    CaptureStreamRequest m_request;
    CaptureStreamHandlers m_handlers;
    AVTrackMediaType m_type = AVTrackMediaType::Video;
    std::string m_name;             ///< the node's, for errors
    const char* m_failed = nullptr; ///< why the stream ends with the timer
    bool m_isStartedAnew = false;   ///< and nothing has come since
    int m_starts = 0;               ///< after the first
    bool m_isOver = false;
    bool m_hasCome = false;          ///< something that could be read
    std::optional<RawFrame> m_frame; ///< as agreed on, without its bytes
    spa_audio_info_raw m_sound = {};
    std::int64_t m_soundEnd = 0; ///< nanoseconds; 0: none has come
    PipeWireHandle<pw_stream> m_stream;
    spa_hook m_hook = {};
    spa_source* m_timer = nullptr;
};

} // namespace lamina
