#include "platform/media/capture/pipewire/PipeWireNode_p.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string_view>
#include <utility>

namespace lamina {

namespace {

constexpr const char* kLocation = "api.libcamera.location";
constexpr const char* kMountRotation = "api.libcamera.rotation";

std::string_view textOf(const spa_dict* properties, const char* key)
{
    const char* const text = properties ? spa_dict_lookup(properties, key) : nullptr;
    return text ? text : "";
}

int numberOf(std::string_view text)
{
    int number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

/// By how many degrees clockwise frames are to be turned: sensors tell it counter-clockwise.
int rotationOfMount(int degrees)
{
    const int clockwise = (360 - degrees % 360) % 360;
    return clockwise % 90 == 0 ? clockwise : 0;
}

AVCaptureDevicePosition positionOf(std::string_view location)
{
    if (location == "front")
        return AVCaptureDevicePosition::Front;
    return location == "back" ? AVCaptureDevicePosition::Back : AVCaptureDevicePosition::Unspecified;
}

/// Whether it can be asked for its modes.
bool tellsFormats(const spa_param_info* params, std::uint32_t count)
{
    return std::any_of(params, params + count, [](const spa_param_info& each) {
        return each.id == SPA_PARAM_EnumFormat && (each.flags & SPA_PARAM_INFO_READ) != 0;
    });
}

constexpr std::uint32_t kMostAnswers = 512;

} // namespace

const pw_node_events PipeWireNode::kNodeEvents{
    .version = PW_VERSION_NODE_EVENTS, .info = PipeWireNode::nodeInfo, .param = PipeWireNode::param};
const pw_port_events PipeWireNode::kPortEvents{
    .version = PW_VERSION_PORT_EVENTS, .info = PipeWireNode::portInfo, .param = PipeWireNode::param};

std::optional<AVTrackMediaType> PipeWireNode::typeOf(const spa_dict* properties)
{
    const std::string_view kind = textOf(properties, PW_KEY_MEDIA_CLASS);
    if (kind.starts_with("Video/Source"))
        return AVTrackMediaType::Video;
    if (kind.starts_with("Audio/Source") || kind == "Audio/Duplex")
        return AVTrackMediaType::Audio;
    return std::nullopt;
}

PipeWireNode::PipeWireNode(pw_registry* registry, std::uint32_t id, AVTrackMediaType type, const spa_dict* properties,
                           std::function<void()> asks)
    : m_asks(std::move(asks))
    , m_registry(registry)
    , m_id(id)
    , m_type(type)
{
    if (properties)
        read(*properties);
    m_proxy.reset(static_cast<pw_proxy*>(pw_registry_bind(registry, id, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE, 0)));
    if (!m_proxy)
        return;
    pw_proxy_add_object_listener(m_proxy.get(), &m_hook, &kNodeEvents, this);
    m_asks();
}

PipeWireNode::~PipeWireNode()
{
    if (m_proxy)
        spa_hook_remove(&m_hook);
    if (m_portProxy)
        spa_hook_remove(&m_portHook);
}

void PipeWireNode::read(const spa_dict& properties)
{
    const auto take = [&](const char* key, auto&& use) {
        if (const std::string_view text = textOf(&properties, key); !text.empty())
            use(text);
    };
    take(PW_KEY_OBJECT_SERIAL, [&](std::string_view text) { m_serial = text; });
    take(PW_KEY_NODE_NAME, [&](std::string_view text) { m_name = text; });
    take(PW_KEY_NODE_NICK, [&](std::string_view text) { m_description = text; });
    take(PW_KEY_NODE_DESCRIPTION, [&](std::string_view text) { m_description = text; });
    take(PW_KEY_PRIORITY_SESSION, [&](std::string_view text) { m_priority = numberOf(text); });
    take(PW_KEY_AUDIO_CHANNELS, [&](std::string_view text) { m_channels = numberOf(text); });
    take(kLocation, [&](std::string_view text) { m_position = positionOf(text); });
    take(kMountRotation, [&](std::string_view text) { m_rotation = rotationOfMount(numberOf(text)); });
}

void PipeWireNode::addPort(std::uint32_t port)
{
    if (m_port || m_type != AVTrackMediaType::Video)
        return;
    m_port = port;
    askPort();
}

/// Where the node has told that it doesn't tell its modes.
void PipeWireNode::askPort()
{
    if (!m_hasInfo || m_tellsModes || !m_port || m_portProxy)
        return;
    m_portProxy.reset(
        static_cast<pw_proxy*>(pw_registry_bind(m_registry, *m_port, PW_TYPE_INTERFACE_Port, PW_VERSION_PORT, 0)));
    if (!m_portProxy)
        return;
    pw_proxy_add_object_listener(m_portProxy.get(), &m_portHook, &kPortEvents, this);
    m_asks();
}

bool PipeWireNode::setRotationOfFrames(int degrees)
{
    const int before = rotation();
    m_rotationOfFrames = degrees;
    return rotation() != before;
}

CaptureNode PipeWireNode::described() const
{
    CaptureNode node{m_id, m_name, m_description, m_type, m_position};
    if (node.uniqueID.empty())
        node.uniqueID = m_serial;
    if (node.name.empty())
        node.name = node.uniqueID;
    node.rotation = rotation();
    for (const VideoMode& mode : m_modes)
        node.formats.push_back(mode.format);
    return node;
}

void PipeWireNode::nodeInfo(void* data, const pw_node_info* info)
{
    auto& self = *static_cast<PipeWireNode*>(data);
    self.m_hasInfo = true;
    if ((info->change_mask & PW_NODE_CHANGE_MASK_PROPS) != 0 && info->props)
        self.read(*info->props);
    if (self.m_type == AVTrackMediaType::Video && (info->change_mask & PW_NODE_CHANGE_MASK_PARAMS) != 0) {
        self.m_tellsModes = tellsFormats(info->params, info->n_params);
        if (self.m_tellsModes) {
            auto* const node = reinterpret_cast<pw_node*>(self.m_proxy.get());
            self.beginModes(pw_node_enum_params(node, 0, SPA_PARAM_EnumFormat, 0, kMostAnswers, nullptr));
        }
    }
    self.askPort();
    self.m_asks();
}

void PipeWireNode::portInfo(void* data, const pw_port_info* info)
{
    auto& self = *static_cast<PipeWireNode*>(data);
    if (self.m_tellsModes || (info->change_mask & PW_PORT_CHANGE_MASK_PARAMS) == 0 ||
        !tellsFormats(info->params, info->n_params))
        return;
    auto* const port = reinterpret_cast<pw_port*>(self.m_portProxy.get());
    self.beginModes(pw_port_enum_params(port, 0, SPA_PARAM_EnumFormat, 0, kMostAnswers, nullptr));
    self.m_asks();
}

void PipeWireNode::beginModes(int sequence)
{
    m_sequence = sequence;
    m_hasAnswered = false;
    m_modes.clear();
}

void PipeWireNode::param(void* data, int sequence, std::uint32_t id, std::uint32_t, std::uint32_t,
                         const spa_pod* description)
{
    auto& self = *static_cast<PipeWireNode*>(data);
    if (sequence != self.m_sequence || id != SPA_PARAM_EnumFormat || !description)
        return;
    self.m_hasAnswered = true;
    addModes(*description, self.m_modes);
    sortModes(self.m_modes);
}

} // namespace lamina
