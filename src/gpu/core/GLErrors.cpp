#include "gpu/core/GLErrors.h"

#include "platform/base/Log.h"
#include "platform/gl/GLHeaders.h"

#include <string>

namespace lamina {

void checkGL(const char* work)
{
    // A lost context would go on complaining for ever.
    constexpr int kMostMessages = 8;
    for (int i = 0; i < kMostMessages; ++i) {
        const GLenum error = glGetError();
        if (error == GL_NO_ERROR)
            return;
        logError("GL error " + std::to_string(error) + " after " + work);
    }
}

} // namespace lamina
