#pragma once

#include "platform/media/AVAssetReader.h"
#include "platform/media/AVCaptureTypes.h"
#include "platform/media/capture/CaptureModule_p.h"
#include "platform/media/capture/pipewire/PipeWireHandles_p.h"
#include "platform/media/capture/pipewire/VideoModes_p.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <spa/utils/dict.h>
#include <spa/utils/hook.h>
#include <string>
#include <vector>

namespace lamina {

/// A camera or microphone of the service, what it says of itself, and its modes as they come. On the loop's thread.
class PipeWireNode {
public:
    /// Of a global of the registry; none where it is neither.
    static std::optional<AVTrackMediaType> typeOf(const spa_dict* properties);

    /// `asks` is called when an answer has been asked for, after which what is known will have changed.
    PipeWireNode(pw_registry* registry, std::uint32_t id, AVTrackMediaType type, const spa_dict* properties,
                 std::function<void()> asks);
    ~PipeWireNode();
    PipeWireNode(const PipeWireNode&) = delete;
    PipeWireNode& operator=(const PipeWireNode&) = delete;

    /// One of its ports, which is asked for modes where the node itself tells none.
    void addPort(std::uint32_t port);
    /// By what its frames said of themselves; 0: nothing, which leaves what the node says. Whether that is news.
    bool setRotationOfFrames(int degrees);

    /// As the program hears of it.
    CaptureNode described() const;
    const std::vector<VideoMode>& modes() const { return m_modes; }
    /// Whether it tells modes, and all of them are of a kind that isn't read.
    bool isUnreadable() const { return m_hasAnswered && m_modes.empty(); }
    AVTrackMediaType type() const { return m_type; }
    /// By which streams name it.
    const std::string& serial() const { return m_serial; }
    /// By which defaults name it.
    const std::string& name() const { return m_name; }
    int priority() const { return m_priority; }
    /// Of a microphone; 0: not told.
    int channels() const { return m_channels; }

private:
    static void nodeInfo(void* data, const pw_node_info* info);
    static void portInfo(void* data, const pw_port_info* info);
    static void param(void* data, int sequence, std::uint32_t id, std::uint32_t index, std::uint32_t next,
                      const spa_pod* description);

    int rotation() const { return m_rotationOfFrames != 0 ? m_rotationOfFrames : m_rotation; }
    void read(const spa_dict& properties);
    void askPort();
    void beginModes(int sequence);

    static const pw_node_events kNodeEvents;
    static const pw_port_events kPortEvents;

    std::function<void()> m_asks;
    pw_registry* m_registry;
    std::uint32_t m_id;
    AVTrackMediaType m_type;
    std::string m_serial;
    std::string m_name;
    std::string m_description;
    int m_priority = 0;
    int m_channels = 0;
    AVCaptureDevicePosition m_position = AVCaptureDevicePosition::Unspecified;
    int m_rotation = 0;
    int m_rotationOfFrames = 0;
    std::vector<VideoMode> m_modes;
    int m_sequence = -1;        ///< of the question that is being answered
    bool m_hasAnswered = false; ///< with a mode of whatever kind
    bool m_hasInfo = false;
    bool m_tellsModes = false; ///< itself, not through its port
    std::optional<std::uint32_t> m_port;
    spa_hook m_hook = {};
    spa_hook m_portHook = {};
    PipeWireHandle<pw_proxy> m_portProxy; ///< null: not asked
    PipeWireHandle<pw_proxy> m_proxy;
};

} // namespace lamina
