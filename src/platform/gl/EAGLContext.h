#pragma once

#include "platform/base/Result.h"
#include "platform/gl/GLHeaders.h"

#include <functional>
#include <memory>
#include <utility>

namespace lamina {

/// Contexts of one group see each other's textures, buffers and programs.
class EAGLSharegroup;

/// What a context speaks. There is one dialect here.
enum class EAGLRenderingAPI { OpenGLES2 = 2 };

/// An OpenGL ES context without a window. A context is current on one thread at a time; all GL calls of a thread go to
/// its current one. Making and making current may happen on any thread.
class EAGLContext {
public:
    /// A context of the display's device, in `sharegroup` (null: a group of its own). The error tells why there is
    /// none.
    static Result<std::shared_ptr<EAGLContext>> make(EAGLRenderingAPI api,
                                                     std::shared_ptr<EAGLSharegroup> sharegroup = nullptr);
    /// Must not be current on a thread other than the one that drops it.
    ~EAGLContext();
    EAGLContext(const EAGLContext&) = delete;
    EAGLContext& operator=(const EAGLContext&) = delete;

    /// The calling thread's context; null where none is.
    static EAGLContext* currentContext();
    /// Null lets the present one go. False when the driver refuses: the context is current elsewhere.
    static bool setCurrentContext(EAGLContext* context);

    /// To be given to `make`. Never null.
    const std::shared_ptr<EAGLSharegroup>& sharegroup() const { return m_sharegroup; }

    /// Shows what was drawn into the bound renderbuffer. False when nobody shows this context's pictures.
    bool presentRenderbuffer(GLenum target);
    /// Whoever shows the renderbuffer, called on the thread that presents; empty: nobody.
    using Presenter = std::function<bool(GLenum target)>;
    void setPresenter(Presenter presenter) { m_presenter = std::move(presenter); }

private:
    EAGLContext(void* context, void* surface, std::shared_ptr<EAGLSharegroup> sharegroup);

    void* m_context;
    void* m_surface; // only where a context can't be current without one
    std::shared_ptr<EAGLSharegroup> m_sharegroup;
    Presenter m_presenter;
};

} // namespace lamina
