#include "platform/media/capture/pipewire/PipeWireConnection_p.h"

#include "platform/base/Result.h"
#include "platform/media/capture/pipewire/PipeWireStream_p.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <pipewire/extensions/metadata.h>
#include <string_view>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace lamina {

namespace {

constexpr std::size_t kMostNodes = 64;

constexpr const char* kDefaultVideo = "default.video.source";
constexpr const char* kDefaultAudio = "default.audio.source";

const char* lookUp(const spa_dict* properties, const char* key)
{
    const char* const text = properties ? spa_dict_lookup(properties, key) : nullptr;
    return text ? text : "";
}

} // namespace

Result<std::unique_ptr<CaptureConnection>> PipeWireConnection::connect(int descriptor,
                                                                       CaptureConnectionHandlers handlers)
{
    std::unique_ptr<PipeWireConnection> connection(new PipeWireConnection(std::move(handlers)));
    const Outcome begun = connection->begin(descriptor);
    if (!begun)
        return begun.error();
    return std::unique_ptr<CaptureConnection>(std::move(connection));
}

PipeWireConnection::PipeWireConnection(CaptureConnectionHandlers handlers)
    : m_handlers(std::move(handlers))
{
}

Outcome PipeWireConnection::begin(int descriptor)
{
    static const pw_core_events coreEvents{.version = PW_VERSION_CORE_EVENTS, .done = done, .error = failed};
    static const pw_registry_events registryEvents{
        .version = PW_VERSION_REGISTRY_EVENTS, .global = added, .global_remove = removed};
    const Error notStarted{{}, "support for cameras can't be started"};
    m_loop.reset(pw_thread_loop_new("capture", nullptr));
    if (m_loop)
        m_context.reset(pw_context_new(pw_thread_loop_get_loop(m_loop.get()), nullptr, 0));
    if (!m_context) {
        if (descriptor >= 0)
            ::close(descriptor);
        return notStarted;
    }
    pw_properties* const properties = pw_properties_new(PW_KEY_APP_NAME, "Lamina", nullptr);
    m_core.reset(descriptor >= 0 ? pw_context_connect_fd(m_context.get(), descriptor, properties, 0)
                                 : pw_context_connect(m_context.get(), properties, 0));
    if (!m_core)
        return Error{{}, "PipeWire isn’t running"};
    pw_core_add_listener(m_core.get(), &m_coreHook, &coreEvents, this);
    m_registry.reset(pw_core_get_registry(m_core.get(), PW_VERSION_REGISTRY, 0));
    if (!m_registry)
        return notStarted;
    pw_registry_add_listener(m_registry.get(), &m_registryHook, &registryEvents, this);
    askWhenDone();
    if (pw_thread_loop_start(m_loop.get()) < 0)
        return notStarted;
    return success();
}

PipeWireConnection::~PipeWireConnection()
{
    if (m_loop)
        pw_thread_loop_stop(m_loop.get());
    if (m_metadata)
        spa_hook_remove(&m_metadataHook);
    if (m_registry)
        spa_hook_remove(&m_registryHook);
    if (m_core)
        spa_hook_remove(&m_coreHook);
    m_nodes.clear();
}

std::unique_ptr<CaptureStream> PipeWireConnection::open(const CaptureStreamRequest& request,
                                                        CaptureStreamHandlers handlers)
{
    const LoopLock lock(m_loop.get());
    auto stream = std::make_unique<PipeWireStream>(*this, request, std::move(handlers));
    stream->connect();
    return stream;
}

PipeWireNode* PipeWireConnection::node(std::uint32_t id) const
{
    const auto found = m_nodes.find(id);
    return found == m_nodes.end() ? nullptr : found->second.get();
}

void PipeWireConnection::setRotationOfFrames(std::uint32_t id, int degrees)
{
    if (PipeWireNode* const of = node(id); of && of->setRotationOfFrames(degrees))
        tell();
}

/// All that was asked for so far has been answered once the service comes to this.
void PipeWireConnection::askWhenDone()
{
    m_lastQuestion = pw_core_sync(m_core.get(), PW_ID_CORE, 0);
}

void PipeWireConnection::done(void* data, std::uint32_t id, int sequence)
{
    auto& self = *static_cast<PipeWireConnection*>(data);
    if (id == PW_ID_CORE && sequence == self.m_lastQuestion)
        self.tell();
}

void PipeWireConnection::failed(void* data, std::uint32_t id, int, int result, const char*)
{
    auto& self = *static_cast<PipeWireConnection*>(data);
    if (id != PW_ID_CORE || result != -EPIPE || std::exchange(self.m_isLost, true))
        return;
    for (PipeWireStream* const stream : std::vector(self.m_streams))
        stream->end("the camera service stopped");
    self.m_handlers.lost();
}

void PipeWireConnection::added(void* data, std::uint32_t id, std::uint32_t, const char* type, std::uint32_t,
                               const spa_dict* properties)
{
    auto& self = *static_cast<PipeWireConnection*>(data);
    const std::string_view kind = type ? type : "";
    if (kind == PW_TYPE_INTERFACE_Node)
        self.addNode(id, properties);
    else if (kind == PW_TYPE_INTERFACE_Port)
        self.addPort(id, properties);
    else if (kind == PW_TYPE_INTERFACE_Metadata)
        self.addMetadata(id, properties);
}

void PipeWireConnection::addNode(std::uint32_t id, const spa_dict* properties)
{
    const auto type = PipeWireNode::typeOf(properties);
    if (type && m_nodes.size() < kMostNodes)
        m_nodes[id] =
            std::make_unique<PipeWireNode>(m_registry.get(), id, *type, properties, [this] { askWhenDone(); });
}

void PipeWireConnection::addPort(std::uint32_t id, const spa_dict* properties)
{
    std::uint32_t of = SPA_ID_INVALID;
    spa_atou32(lookUp(properties, PW_KEY_NODE_ID), &of, 10);
    if (PipeWireNode* const owner = node(of);
        owner && lookUp(properties, PW_KEY_PORT_DIRECTION) == std::string_view("out"))
        owner->addPort(id);
}

void PipeWireConnection::addMetadata(std::uint32_t id, const spa_dict* properties)
{
    static const pw_metadata_events events{.version = PW_VERSION_METADATA_EVENTS, .property = defaultChanged};
    if (m_metadata || lookUp(properties, PW_KEY_METADATA_NAME) != std::string_view("default"))
        return;
    m_metadata.reset(static_cast<pw_proxy*>(
        pw_registry_bind(m_registry.get(), id, PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA, 0)));
    if (!m_metadata)
        return;
    m_metadataID = id;
    pw_proxy_add_object_listener(m_metadata.get(), &m_metadataHook, &events, this);
    askWhenDone();
}

/// The session's choices: {"name": "..."}; without a key, or a value, there are none any more.
int PipeWireConnection::defaultChanged(void* data, std::uint32_t subject, const char* key, const char*,
                                       const char* value)
{
    auto& self = *static_cast<PipeWireConnection*>(data);
    if (subject != PW_ID_CORE)
        return 0;
    if (!key) {
        self.m_defaults.clear();
    } else if (key == std::string_view(kDefaultVideo) || key == std::string_view(kDefaultAudio)) {
        const auto told = nlohmann::json::parse(value ? value : "", nullptr, false);
        const auto name = told.is_object() ? told.find("name") : told.end();
        if (told.is_object() && name != told.end() && name->is_string())
            self.m_defaults[key] = name->get<std::string>();
        else
            self.m_defaults.erase(key);
    }
    self.askWhenDone();
    return 0;
}

void PipeWireConnection::removed(void* data, std::uint32_t id)
{
    auto& self = *static_cast<PipeWireConnection*>(data);
    if (self.m_metadata && id == self.m_metadataID) {
        spa_hook_remove(&self.m_metadataHook);
        self.m_metadata.reset();
        self.m_defaults.clear();
    }
    const PipeWireNode* const gone = self.node(id);
    if (!gone)
        return;
    const bool isCamera = gone->type() == AVTrackMediaType::Video;
    for (PipeWireStream* const stream : std::vector(self.m_streams)) {
        if (stream->nodeID() == id)
            stream->end(isCamera ? "the camera was unplugged" : "the microphone was unplugged");
    }
    self.m_nodes.erase(id);
    self.askWhenDone();
}

std::vector<CaptureNode> PipeWireConnection::described() const
{
    std::vector<const PipeWireNode*> all;
    for (const auto& [id, node] : m_nodes)
        all.push_back(node.get());
    const auto isDefault = [this](const PipeWireNode& node) {
        const auto chosen = m_defaults.find(node.type() == AVTrackMediaType::Video ? kDefaultVideo : kDefaultAudio);
        return chosen != m_defaults.end() && chosen->second == node.name();
    };
    std::ranges::stable_sort(
        all, {}, [&](const PipeWireNode* node) { return std::tuple(!isDefault(*node), -node->priority()); });
    std::vector<CaptureNode> nodes;
    for (const PipeWireNode* const node : all)
        nodes.push_back(node->described());
    return nodes;
}

void PipeWireConnection::tell()
{
    std::vector<CaptureNode> nodes = described();
    if (m_told == nodes)
        return;
    m_told = nodes;
    m_handlers.nodes(std::move(nodes));
}

} // namespace lamina
