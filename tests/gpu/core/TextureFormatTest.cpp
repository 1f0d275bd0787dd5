#include "gpu/core/GLTextureFormat.h"

#include <gtest/gtest.h>

namespace lamina {
namespace {

// A driver has one of the extensions or none, never all: the rules are tried here, whatever this machine has.
TEST(TextureFormat, BlueFirstGoesUpByTheRuleOfTheExtension)
{
    const auto upload = [](GLenum format, BGRASupport support) { return uploadFormat(GL_RGBA, format, support); };
    EXPECT_EQ(upload(GL_RGBA, BGRASupport::None), (GLTextureFormat{GL_RGBA, GL_RGBA, false}));
    EXPECT_EQ(upload(GL_RGBA, BGRASupport::Extension), (GLTextureFormat{GL_RGBA, GL_RGBA, false}));
    EXPECT_EQ(upload(GL_BGRA, BGRASupport::Apple), (GLTextureFormat{GL_RGBA, GL_BGRA, false}));
    EXPECT_EQ(upload(GL_BGRA, BGRASupport::Extension), (GLTextureFormat{GL_BGRA, GL_BGRA, false}));
    EXPECT_EQ(upload(GL_BGRA, BGRASupport::None), (GLTextureFormat{GL_RGBA, GL_RGBA, true}));
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
