#pragma once

// OpenGL ES 2.0 with the extensions that are asked for at run time. Everything that calls GL includes this one header.
#include <GLES2/gl2.h>
#include <GLES2/gl2ext.h>

/// Blue, green, red, alpha: the same value in every extension that brings it.
#ifndef GL_BGRA
inline constexpr GLenum GL_BGRA = 0x80E1;
#endif
