#include "gpu/core/GLErrors.h"

#include "platform/base/Log.h"
#include "platform/gl/GLHeaders.h"

#include <string>

namespace lamina {

namespace {

/// Tells `heard` of each error that waits, of a few at most: a lost context would go on complaining for ever.
template <class Heard>
void takeErrors(const Heard& heard)
{
    constexpr int kMostErrors = 8;
    for (int i = 0; i < kMostErrors; ++i) {
        const GLenum error = glGetError();
        if (error == GL_NO_ERROR)
            return;
        heard(error);
    }
}

} // namespace

void checkGL(const char* work)
{
    takeErrors([work](GLenum error) { logError("GL error " + std::to_string(error) + " after " + work); });
}

void forgetGLErrors()
{
    takeErrors([](GLenum) {});
}

} // namespace lamina
