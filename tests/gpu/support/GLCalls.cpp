#include "GLCalls.h"

#include "platform/gl/GLHeaders.h"

#include <dlfcn.h>

namespace lamina::test {

namespace {

GLCalls calls;

/// The driver's function of the same name.
template <class Function>
Function driver(Function, const char* name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

} // namespace

GLCalls glCallsSoFar()
{
    return calls;
}

} // namespace lamina::test

using lamina::test::calls;
using lamina::test::driver;

extern "C" {

void glGenTextures(GLsizei n, GLuint* textures)
{
    static const auto real = driver(&glGenTextures, "glGenTextures");
    calls.objects += n;
    real(n, textures);
}

void glGenFramebuffers(GLsizei n, GLuint* framebuffers)
{
    static const auto real = driver(&glGenFramebuffers, "glGenFramebuffers");
    calls.objects += n;
    real(n, framebuffers);
}

void glGenRenderbuffers(GLsizei n, GLuint* renderbuffers)
{
    static const auto real = driver(&glGenRenderbuffers, "glGenRenderbuffers");
    calls.objects += n;
    real(n, renderbuffers);
}

GLuint glCreateShader(GLenum type)
{
    static const auto real = driver(&glCreateShader, "glCreateShader");
    ++calls.objects;
    return real(type);
}

GLuint glCreateProgram(void)
{
    static const auto real = driver(&glCreateProgram, "glCreateProgram");
    ++calls.objects;
    ++calls.programs;
    return real();
}

void glTexImage2D(GLenum target, GLint level, GLint internalFormat, GLsizei width, GLsizei height, GLint border,
                  GLenum format, GLenum type, const void* pixels)
{
    static const auto real = driver(&glTexImage2D, "glTexImage2D");
    ++calls.uploads;
    real(target, level, internalFormat, width, height, border, format, type, pixels);
}

void glTexSubImage2D(GLenum target, GLint level, GLint x, GLint y, GLsizei width, GLsizei height, GLenum format,
                     GLenum type, const void* pixels)
{
    static const auto real = driver(&glTexSubImage2D, "glTexSubImage2D");
    ++calls.fills;
    real(target, level, x, y, width, height, format, type, pixels);
}

} // extern "C"
