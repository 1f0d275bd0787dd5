#include "platform/gl/EAGLContext.h"

#include "platform/gl/GLDisplay.h"

#include <EGL/egl.h>
#include <array>
#include <string>
#include <utility>

namespace lamina {

/// Lives as long as a context of the group; EGL itself groups contexts by naming one of them.
class EAGLSharegroup {
public:
    ~EAGLSharegroup()
    {
        if (anchor != EGL_NO_CONTEXT)
            eglDestroyContext(GLDisplay::shared()->eglDisplay(), anchor);
    }
    /// A context that is never current, so that the group outlives each of its members.
    EGLContext anchor = EGL_NO_CONTEXT;
};

namespace {

thread_local EAGLContext* t_current = nullptr;

EGLContext makeEGLContext(const GLDisplay& display, EGLContext shared)
{
    eglBindAPI(EGL_OPENGL_ES_API); // per thread
    const std::array<EGLint, 3> attributes{EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
    return eglCreateContext(display.eglDisplay(), display.eglConfig(), shared, attributes.data());
}

EGLSurface makeSmallSurface(const GLDisplay& display)
{
    const std::array<EGLint, 5> attributes{EGL_WIDTH, 1, EGL_HEIGHT, 1, EGL_NONE};
    return eglCreatePbufferSurface(display.eglDisplay(), display.eglConfig(), attributes.data());
}

std::string lastEGLError()
{
    constexpr const char* kDigits = "0123456789abcdef";
    const auto code = static_cast<unsigned>(eglGetError());
    std::string text = "0x";
    for (int shift = 12; shift >= 0; shift -= 4)
        text += kDigits[(code >> shift) & 15u];
    return text;
}

} // namespace

Result<std::shared_ptr<EAGLContext>> EAGLContext::make(EAGLRenderingAPI, std::shared_ptr<EAGLSharegroup> sharegroup)
{
    const Result<GLDisplay>& display = GLDisplay::shared();
    if (!display)
        return display.error();
    const auto refused = [] {
        return Error{"OpenGL ES", "the driver makes no context (EGL error " + lastEGLError() + ")"};
    };
    if (!sharegroup) {
        sharegroup = std::make_shared<EAGLSharegroup>();
        sharegroup->anchor = makeEGLContext(*display, EGL_NO_CONTEXT);
        if (sharegroup->anchor == EGL_NO_CONTEXT)
            return refused();
    }
    EGLContext context = makeEGLContext(*display, sharegroup->anchor);
    if (context == EGL_NO_CONTEXT)
        return refused();
    EGLSurface surface = EGL_NO_SURFACE;
    if (!display->supportsSurfaceless()) {
        surface = makeSmallSurface(*display);
        if (surface == EGL_NO_SURFACE) {
            Error error = refused();
            eglDestroyContext(display->eglDisplay(), context);
            return error;
        }
    }
    return std::shared_ptr<EAGLContext>(new EAGLContext(context, surface, std::move(sharegroup)));
}

EAGLContext::EAGLContext(void* context, void* surface, std::shared_ptr<EAGLSharegroup> sharegroup)
    : m_context(context)
    , m_surface(surface)
    , m_sharegroup(std::move(sharegroup))
{
}

EAGLContext::~EAGLContext()
{
    if (t_current == this)
        setCurrentContext(nullptr);
    EGLDisplay display = GLDisplay::shared()->eglDisplay();
    eglDestroyContext(display, m_context);
    if (m_surface != EGL_NO_SURFACE)
        eglDestroySurface(display, m_surface);
}

EAGLContext* EAGLContext::currentContext()
{
    return t_current;
}

bool EAGLContext::setCurrentContext(EAGLContext* context)
{
    const Result<GLDisplay>& display = GLDisplay::shared();
    if (!display)
        return context == nullptr;
    eglBindAPI(EGL_OPENGL_ES_API);
    const EGLSurface surface = context ? context->m_surface : EGL_NO_SURFACE;
    if (!eglMakeCurrent(display->eglDisplay(), surface, surface, context ? context->m_context : EGL_NO_CONTEXT))
        return false;
    t_current = context;
    return true;
}

bool EAGLContext::presentRenderbuffer(GLenum target)
{
    return m_presenter && m_presenter(target);
}

} // namespace lamina
