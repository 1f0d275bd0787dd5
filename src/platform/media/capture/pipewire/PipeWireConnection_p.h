#pragma once

#include "platform/media/capture/CaptureModule_p.h"
#include "platform/media/capture/pipewire/PipeWireHandles_p.h"
#include "platform/media/capture/pipewire/PipeWireNode_p.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <spa/utils/dict.h>
#include <spa/utils/hook.h>
#include <string>
#include <vector>

namespace lamina {

class PipeWireStream;

/// A connection to PipeWire: its loop, and what the registry tells of cameras and microphones.
class PipeWireConnection : public CaptureConnection {
public:
    static Result<std::unique_ptr<CaptureConnection>> connect(int descriptor, CaptureConnectionHandlers handlers);
    ~PipeWireConnection() override;

    std::unique_ptr<CaptureStream> open(const CaptureStreamRequest& request, CaptureStreamHandlers handlers) override;

    // For streams, under the loop's lock.
    pw_thread_loop* loop() const { return m_loop.get(); }
    pw_core* core() const { return m_core.get(); }
    /// Null: it is gone.
    PipeWireNode* node(std::uint32_t id) const;
    bool isLost() const { return m_isLost; }
    void add(PipeWireStream& stream) { m_streams.push_back(&stream); }
    void remove(PipeWireStream& stream) { std::erase(m_streams, &stream); }
    /// What a frame says of how it is to be turned.
    void setRotationOfFrames(std::uint32_t node, int degrees);

private:
    explicit PipeWireConnection(CaptureConnectionHandlers handlers);
    Outcome begin(int descriptor);

    static void done(void* data, std::uint32_t id, int sequence);
    static void failed(void* data, std::uint32_t id, int sequence, int result, const char* message);
    static void added(void* data, std::uint32_t id, std::uint32_t permissions, const char* type, std::uint32_t version,
                      const spa_dict* properties);
    static void removed(void* data, std::uint32_t id);
    static int defaultChanged(void* data, std::uint32_t subject, const char* key, const char* type, const char* value);

    void addNode(std::uint32_t id, const spa_dict* properties);
    void addPort(std::uint32_t id, const spa_dict* properties);
    void addMetadata(std::uint32_t id, const spa_dict* properties);
    void askWhenDone();
    void tell();
    std::vector<CaptureNode> described() const;

    CaptureConnectionHandlers m_handlers;
    PipeWireHandle<pw_thread_loop> m_loop;
    PipeWireHandle<pw_context> m_context;
    PipeWireHandle<pw_core> m_core;
    PipeWireHandle<pw_registry> m_registry;
    PipeWireHandle<pw_proxy> m_metadata;
    std::uint32_t m_metadataID = SPA_ID_INVALID;
    spa_hook m_coreHook = {};
    spa_hook m_registryHook = {};
    spa_hook m_metadataHook = {};
    std::map<std::uint32_t, std::unique_ptr<PipeWireNode>> m_nodes;
    std::map<std::string, std::string> m_defaults; ///< by metadata's keys
    std::vector<PipeWireStream*> m_streams;
    int m_lastQuestion = -1; ///< when that is answered, all is known
    std::optional<std::vector<CaptureNode>> m_told;
    bool m_isLost = false;
};

} // namespace lamina
