#include "gpu/endpoints/DisplayDrawable.h"

#include "gpu/core/DrawingFailures.h"
#include "gpu/core/GLErrors.h"
#include "gpu/core/GPUImageContext.h"
#include "platform/gl/EAGLContext.h"

#include <map>
#include <utility>

namespace lamina {

namespace {

/// Those there are, by the names of their renderbuffers.
std::map<GLuint, DisplayDrawable*>& drawables()
{
    static auto* const all = new std::map<GLuint, DisplayDrawable*>;
    return *all;
}

} // namespace

DisplayDrawable::DisplayDrawable(IntSize size)
    : m_size(size)
{
    glGenFramebuffers(1, &m_displayFramebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_displayFramebuffer);
    glGenRenderbuffers(1, &m_displayRenderbuffer);
    glBindRenderbuffer(GL_RENDERBUFFER, m_displayRenderbuffer);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8_OES, size.width, size.height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, m_displayRenderbuffer);
    m_isComplete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    if (!m_isComplete) {
        DrawingFailures::note("the device has no framebuffer", size);
        forgetGLErrors(); // of a size that is none
    }
    drawables()[m_displayRenderbuffer] = this;
    GPUImageContext::sharedImageProcessingContext().context()->setPresenter(&DisplayDrawable::presentBound);
}

DisplayDrawable::~DisplayDrawable()
{
    drawables().erase(m_displayRenderbuffer);
    glDeleteFramebuffers(1, &m_displayFramebuffer);
    glDeleteRenderbuffers(1, &m_displayRenderbuffer);
}

bool DisplayDrawable::activate()
{
    if (!m_isComplete)
        return false;
    glBindFramebuffer(GL_FRAMEBUFFER, m_displayFramebuffer);
    glViewport(0, 0, m_size.width, m_size.height);
    return true;
}

bool DisplayDrawable::present(std::uint8_t* pixels)
{
    m_destination = pixels;
    glBindRenderbuffer(GL_RENDERBUFFER, m_displayRenderbuffer);
    GPUImageContext::sharedImageProcessingContext().presentBufferForDisplay();
    return !std::exchange(m_destination, nullptr);
}

bool DisplayDrawable::presentBound(GLenum target)
{
    GLint name = 0;
    glGetIntegerv(GL_RENDERBUFFER_BINDING, &name);
    const auto found = drawables().find(static_cast<GLuint>(name));
    if (target != GL_RENDERBUFFER || found == drawables().end() || !found->second->m_destination)
        return false;
    found->second->read();
    return true;
}

void DisplayDrawable::read()
{
    glBindFramebuffer(GL_FRAMEBUFFER, m_displayFramebuffer);
    glReadPixels(0, 0, m_size.width, m_size.height, GL_RGBA, GL_UNSIGNED_BYTE, m_destination);
    checkDraw("reading a view's picture");
    m_destination = nullptr;
}

} // namespace lamina
