#include "platform/gl/EAGLContext.h"
#include "platform/gl/GLDisplay.h"

#include <array>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iostream>
#include <thread>

namespace lamina {
namespace {

std::shared_ptr<EAGLContext> makeContext(std::shared_ptr<EAGLSharegroup> group = nullptr)
{
    const auto context = EAGLContext::make(EAGLRenderingAPI::OpenGLES2, std::move(group));
    EXPECT_TRUE(context.ok());
    return context ? *context : nullptr;
}

using Pixel = std::array<GLubyte, 4>;

GLuint textureOf(const Pixel& pixel)
{
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
    glFinish();
    return texture;
}

Pixel readBack(GLuint texture)
{
    GLuint framebuffer = 0;
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture, 0);
    Pixel pixel{};
    glReadPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
    glDeleteFramebuffers(1, &framebuffer);
    return pixel;
}

class EAGLContextTest : public testing::Test {
protected:
    ~EAGLContextTest() override { EAGLContext::setCurrentContext(nullptr); }
};

TEST_F(EAGLContextTest, ContextsOfAGroupShareTexturesThatOutliveTheOneTheyWereMadeIn)
{
    auto first = makeContext();
    const auto second = makeContext(first->sharegroup());
    const auto stranger = makeContext();
    EXPECT_EQ(EAGLContext::currentContext(), nullptr) << "making a context does not make it current";
    ASSERT_TRUE(EAGLContext::setCurrentContext(first.get()));
    EXPECT_THAT(reinterpret_cast<const char*>(glGetString(GL_VERSION)), testing::StartsWith("OpenGL ES "));
    const GLuint texture = textureOf({9, 8, 7, 6});
    ASSERT_TRUE(EAGLContext::setCurrentContext(stranger.get()));
    EXPECT_FALSE(glIsTexture(texture));
    ASSERT_TRUE(EAGLContext::setCurrentContext(first.get()));
    const auto group = first->sharegroup();
    first.reset();
    EXPECT_EQ(EAGLContext::currentContext(), nullptr) << "a dropped context is no longer current";
    for (const auto& context : {second, makeContext(group)}) {
        ASSERT_TRUE(EAGLContext::setCurrentContext(context.get()));
        EXPECT_EQ(readBack(texture), (Pixel{9, 8, 7, 6}));
    }
}

TEST_F(EAGLContextTest, IsCurrentOnOneThreadAtATime)
{
    const auto context = makeContext();
    const auto other = makeContext();
    ASSERT_TRUE(EAGLContext::setCurrentContext(context.get()));
    std::thread([&] {
        EXPECT_EQ(EAGLContext::currentContext(), nullptr) << "the current context is each thread's own";
        EXPECT_TRUE(EAGLContext::setCurrentContext(other.get()));
        EXPECT_FALSE(EAGLContext::setCurrentContext(context.get()));
        EXPECT_EQ(EAGLContext::currentContext(), other.get()) << "a refusal changes nothing";
        EAGLContext::setCurrentContext(nullptr);
    }).join();
}

/// The display is opened once in a process, so these run in processes of their own.
[[noreturn]] void exitWithWhatDraws(const char* device)
{
    ::setenv("LAMINA_EGL_DEVICE", device, 1);
    const auto context = EAGLContext::make(EAGLRenderingAPI::OpenGLES2);
    if (context)
        std::cerr << (GLDisplay::shared()->device().software ? "software" : "hardware");
    else
        std::cerr << context.error().cause;
    std::exit(context ? 0 : 1);
}

TEST(GLDisplayDeathTest, FollowsTheWishForADevice)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(exitWithWhatDraws("software"), testing::ExitedWithCode(0), "software");
    EXPECT_EXIT(exitWithWhatDraws("/dev/dri/card77"), testing::ExitedWithCode(1), "/dev/dri/card77");
}

} // namespace
} // namespace lamina
