#pragma once

namespace lamina::test {

/// Calls of GL that make objects, counted for the whole program. Made in between by this program's own
/// functions of GL's names, which the linker prefers.
struct GLCalls {
    int objects = 0; ///< textures, framebuffers, renderbuffers, shaders and programs
    int programs = 0;
    int uploads = 0; ///< glTexImage2D
    int fills = 0;   ///< glTexSubImage2D, which makes nothing

    int objectsMade() const { return objects + uploads; }
    friend GLCalls operator-(const GLCalls& x, const GLCalls& y)
    {
        return {x.objects - y.objects, x.programs - y.programs, x.uploads - y.uploads, x.fills - y.fills};
    }
};

/// Since the program's start. On the video processing queue, or while nothing runs there.
GLCalls glCallsSoFar();

} // namespace lamina::test
