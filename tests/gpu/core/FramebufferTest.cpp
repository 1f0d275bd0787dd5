#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/FramebufferKind.h"
#include "gpu/core/GLTextureFormat.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUImageFramebufferCache.h"
#include "gpu/core/GPUTextureOptions.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/MemoryWarning.h"
#include "platform/base/NotificationCenter.h"
#include "platform/image/pixels/CGImage.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <thread>
#include <tuple>
#include <utility>

namespace lamina::test {
namespace {

using Framebuffer = std::shared_ptr<GPUImageFramebuffer>;

class FramebufferTest : public GraphFixture {
protected:
    static GPUImageFramebufferCache& cache() { return GPUImageContext::sharedFramebufferCache(); }
    static Framebuffer fetch(CGSize size, bool onlyTexture = false)
    {
        return cache().fetchFramebufferForSize(size, onlyTexture);
    }
};

TEST_F(FramebufferTest, KindsAreToldBySizeToATenthAndByEveryOption)
{
    const GPUTextureOptions plain;
    EXPECT_EQ(GPUImageFramebufferCache::hashForSize({100, 100}, plain, false),
              "100.0x100.0-9729:9729:33071:33071:6408:32993:5121");
    using Kind = std::tuple<CGSize, GPUTextureOptions, bool>;
    std::vector<Kind> kinds{{{100, 100}, plain, true}, {{100, 100.04}, plain, false}, {{100, 21.15}, plain, false}};
    // Printing rounds the exact value: 21.15 is a little less than it says, 0.25 a tie that goes to the even digit.
    for (const double side : {100.0, 100.04, 100.06, 21.15, 21.1, 21.2, 0.25, 0.2, 0.35, 0.4, -0.04, 0.0, -4.0, 1e300,
                              std::nan(""), std::nan("7")})
        kinds.push_back({{side, 100}, plain, false});
    using Option = std::uint32_t GPUTextureOptions::*;
    for (const Option option : {&GPUTextureOptions::minFilter, &GPUTextureOptions::magFilter, &GPUTextureOptions::wrapS,
                                &GPUTextureOptions::wrapT, &GPUTextureOptions::internalFormat,
                                &GPUTextureOptions::format, &GPUTextureOptions::type}) {
        GPUTextureOptions other;
        other.*option = 1;
        kinds.push_back({{100, 100}, other, false});
    }
    const auto text = [](const Kind& kind) { return std::apply(&GPUImageFramebufferCache::hashForSize, kind); };
    for (const Kind& x : kinds) {
        for (const Kind& y : kinds) {
            const auto one = std::make_from_tuple<FramebufferKind>(x);
            const auto other = std::make_from_tuple<FramebufferKind>(y);
            EXPECT_EQ(one == other, text(x) == text(y)) << text(x) << " and " << text(y);
            EXPECT_TRUE(one != other || one.hash() == other.hash()) << text(x);
        }
    }
}

TEST_F(FramebufferTest, TheLastReturnedIsFetchedFirst)
{
    onQueue([] {
        const Framebuffer first = fetch({20, 10});
        const Framebuffer second = fetch({20, 10});
        EXPECT_NE(first, second);
        second->unlock();
        first->unlock();
        EXPECT_EQ(fetch({20, 10}), first);
        EXPECT_EQ(fetch({20, 10}), second);
        EXPECT_EQ(fetch({20, 10})->framebufferReferenceCount(), 1U) << "a new one";
    });
}

TEST_F(FramebufferTest, ReturnsOnTheLastUnlockUnlessCountingIsOff)
{
    onQueue([] {
        const Framebuffer framebuffer = fetch({8, 8});
        framebuffer->disableReferenceCounting();
        framebuffer->unlock();
        framebuffer->unlock();
        framebuffer->lock();
        EXPECT_EQ(framebuffer->framebufferReferenceCount(), 1U);
        EXPECT_EQ(cache().idleCount(), 0U);
        framebuffer->enableReferenceCounting();
        framebuffer->unlock();
        EXPECT_EQ(cache().idleCount(), 1U);
    });
}

TEST_F(FramebufferTest, MemoryWarningsDropIdleOnesAlone)
{
    const Framebuffer inUse = fetch({8, 8});
    onQueue([] { fetch({8, 8})->unlock(); });
    EXPECT_EQ(idleFramebuffers(), 1U);
    const std::size_t living = GPUImageFramebufferCache::livingCount();
    NotificationCenter::defaultCenter().post(UIApplicationDidReceiveMemoryWarningNotification);
    EXPECT_EQ(idleFramebuffers(), 0U);
    EXPECT_EQ(GPUImageFramebufferCache::livingCount(), living - 1);
    onQueue([&] {
        inUse->unlock();
        EXPECT_EQ(fetch({8, 8}), inUse) << "it comes back to the pool all the same";
    });
}

TEST_F(FramebufferTest, IdleBytesAreBounded)
{
    // Sixteen megabytes each, far more together than may lie idle.
    const std::size_t each = std::size_t{2048} * 2048 * 4;
    const std::size_t fit = GPUImageFramebufferCache::kIdleByteLimit / each;
    onQueue([&] {
        std::vector<Framebuffer> used;
        for (std::size_t i = 0; i < fit + 3; ++i)
            used.push_back(fetch({2048, 2048}));
        const Framebuffer small = fetch({8, 8});
        small->unlock();
        std::vector<std::weak_ptr<GPUImageFramebuffer>> returned(used.begin(), used.end());
        for (Framebuffer& framebuffer : used) {
            framebuffer->unlock();
            framebuffer.reset();
        }
        EXPECT_EQ(cache().idleCount(), fit);
        EXPECT_TRUE(returned.front().expired()) << "the longest unused goes first";
        EXPECT_EQ(fetch({2048, 2048}), returned.back().lock());
        EXPECT_NE(fetch({8, 8}), small) << "it was returned before all others";
    });
}

TEST_F(FramebufferTest, OnesOfOthersTexturesAreNeverCountedNorDeleted)
{
    onQueue([] {
        GLuint texture = 0;
        glGenTextures(1, &texture);
        glBindTexture(GL_TEXTURE_2D, texture);
        auto wrapper = std::make_shared<GPUImageFramebuffer>(CGSize{4, 4}, texture);
        wrapper->enableReferenceCounting();
        wrapper->lock();
        EXPECT_EQ(wrapper->framebufferReferenceCount(), 0U);
        wrapper.reset();
        EXPECT_TRUE(glIsTexture(texture));
        glDeleteTextures(1, &texture);
    });
}

TEST_F(FramebufferTest, TheLastReferenceMayBeDroppedAnywhere)
{
    Framebuffer framebuffer = fetch({8, 8});
    const GLuint texture = framebuffer->texture();
    onQueue([&] { EXPECT_TRUE(glIsTexture(texture)); });
    std::thread([&] { framebuffer.reset(); }).join();
    onQueue([&] { EXPECT_FALSE(glIsTexture(texture)); });
}

TEST_F(FramebufferTest, HopelessSizesGiveNoPicture)
{
    for (const CGSize size :
         {CGSize{0, 0}, CGSize{-4, 4}, CGSize{1e9, 1e9}, CGSize{1 << 20, 1}, CGSize{std::nan(""), 4}})
        EXPECT_FALSE(fetch(size)->newCGImageFromFramebufferContents());
    onQueue([] {
        while (glGetError() != GL_NO_ERROR) {
        }
    });
}

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
} // namespace lamina::test
