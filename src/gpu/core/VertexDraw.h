#pragma once

#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Values of one attribute, a record of 1 to 4 numbers a vertex, as `glVertexAttribPointer` reads them from memory.
struct VertexArray {
    const void* data = nullptr; ///< null: the attribute has no array
    GLint components = 2;
    GLenum type = GL_FLOAT;
    GLboolean normalized = GL_FALSE; ///< whole numbers stand for 0 to 1
    GLsizei stride = 0;              ///< bytes from record to record; 0 where they lie close together
};

/// What a filter draws in place of the quad that covers its output: points, lines, triangles of its own.
struct VertexDraw {
    GLenum primitive = GL_TRIANGLES;
    GLsizei count = 0;                ///< of vertices
    VertexArray positions;            ///< for the attribute `position`
    VertexArray textureCoordinates{}; ///< for `inputTextureCoordinate`
    bool addsToWhatIsThere = false;   ///< sums channels where things overlap; else the later one stays
};

} // namespace lamina
