#pragma once

#include "gpu/core/VideoProcessingQueue.h"
#include "platform/gl/EAGLContext.h"

#include <cassert>

namespace lamina {

/// GL calls belong to a context's queue, where that context is current. Debug builds stop at a call from
/// elsewhere. False: no context, and GL must be left alone.
inline bool mayCallGL()
{
    assert(contextOfCurrentQueue());
    return EAGLContext::currentContext() != nullptr;
}

/// Logs what GL complains of, naming the work that was done. Asking can make the driver wait, so only `checkDraw` in
/// debug builds asks after draws.
void checkGL(const char* work);

/// Lets GL begin anew: what it complains of next is of what is done next.
void forgetGLErrors();

/// `checkGL` in debug builds, nothing in others.
inline void checkDraw([[maybe_unused]] const char* work)
{
#ifndef NDEBUG
    checkGL(work);
#endif
}

} // namespace lamina
