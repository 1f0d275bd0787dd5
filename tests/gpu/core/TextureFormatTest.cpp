#include "gpu/core/GLTextureFormat.h"

#include <gtest/gtest.h>

namespace lamina {
namespace {

// A driver has one of the extensions or none, never all: the rules are tried here, whatever this machine has.
TEST(TextureFormat, BlueFirstGoesUpByTheRuleOfTheExtension)
{
    struct Case {
        GLenum format;
        BGRASupport support;
        GLTextureFormat upload;
    };
    for (const Case& c : {
             Case{GL_RGBA, BGRASupport::None, {GL_RGBA, GL_RGBA, false}},
             Case{GL_RGBA, BGRASupport::Extension, {GL_RGBA, GL_RGBA, false}},
             Case{GL_BGRA, BGRASupport::Apple, {GL_RGBA, GL_BGRA, false}},
             Case{GL_BGRA, BGRASupport::Extension, {GL_BGRA, GL_BGRA, false}},
             Case{GL_BGRA, BGRASupport::None, {GL_RGBA, GL_RGBA, true}},
         })
        EXPECT_EQ(uploadFormat(GL_RGBA, c.format, c.support), c.upload)
            << c.format << ' ' << static_cast<int>(c.support);
}

TEST(TextureFormat, WhatIsDrawnIntoIsStoredAsEveryContextCanDraw)
{
    EXPECT_EQ(renderFormat({}), (GLTextureFormat{GL_RGBA, GL_RGBA, false}));
    GPUTextureOptions luminance;
    luminance.internalFormat = GL_LUMINANCE;
    luminance.format = GL_LUMINANCE;
    EXPECT_EQ(renderFormat(luminance), (GLTextureFormat{GL_LUMINANCE, GL_LUMINANCE, false}));
}

} // namespace
} // namespace lamina
