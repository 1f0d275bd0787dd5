#pragma once

#include <memory>
#include <pipewire/pipewire.h>

namespace lamina {

/// What PipeWire gives out and wants back.
struct PipeWireDeleter {
    void operator()(pw_thread_loop* loop) const { pw_thread_loop_destroy(loop); }
    void operator()(pw_context* context) const { pw_context_destroy(context); }
    void operator()(pw_core* core) const { pw_core_disconnect(core); }
    void operator()(pw_registry* registry) const { destroyProxy(registry); }
    void operator()(pw_proxy* proxy) const { pw_proxy_destroy(proxy); }
    void operator()(pw_stream* stream) const { pw_stream_destroy(stream); }

private:
    /// Every object of the far side is one.
    static void destroyProxy(void* object) { pw_proxy_destroy(static_cast<pw_proxy*>(object)); }
};

template <class Object>
using PipeWireHandle = std::unique_ptr<Object, PipeWireDeleter>;

/// Holds the thread of a loop up, or, on that thread, does nothing.
class LoopLock {
public:
    explicit LoopLock(pw_thread_loop* loop)
        : m_loop(loop)
    {
        pw_thread_loop_lock(m_loop);
    }
    ~LoopLock() { pw_thread_loop_unlock(m_loop); }
    LoopLock(const LoopLock&) = delete;
    LoopLock& operator=(const LoopLock&) = delete;

private:
    pw_thread_loop* m_loop;
};

} // namespace lamina
