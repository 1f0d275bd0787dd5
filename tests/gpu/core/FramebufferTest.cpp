#include "GraphFixture.h"
#include "platform/base/MemoryWarning.h"
#include "platform/base/NotificationCenter.h"

#include <thread>

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
    const auto hash = [](CGSize size, const GPUTextureOptions& options, bool onlyTexture) {
        return GPUImageFramebufferCache::hashForSize(size, options, onlyTexture);
    };
    EXPECT_EQ(hash({100, 100}, plain, false), "100.0x100.0-9729:9729:33071:33071:6408:32993:5121");
    EXPECT_EQ(hash({100, 21.15}, plain, true), hash({100, 21.15}, plain, false) + "-NOFB");
    EXPECT_EQ(hash({100, 100.04}, plain, false), hash({100, 100}, plain, false));
    EXPECT_NE(hash({100, 100.06}, plain, false), hash({100, 100}, plain, false));

    using Option = std::uint32_t GPUTextureOptions::*;
    std::vector<std::string> kinds{hash({100, 100}, plain, false)};
    for (const Option option : {&GPUTextureOptions::minFilter, &GPUTextureOptions::magFilter, &GPUTextureOptions::wrapS,
                                &GPUTextureOptions::wrapT, &GPUTextureOptions::internalFormat,
                                &GPUTextureOptions::format, &GPUTextureOptions::type}) {
        GPUTextureOptions other;
        other.*option = 1;
        kinds.push_back(hash({100, 100}, other, false));
        EXPECT_THAT(std::vector(kinds.begin(), kinds.end() - 1), testing::Not(testing::Contains(kinds.back())));
    }
}

TEST_F(FramebufferTest, TheLastReturnedIsFetchedFirst)
{
    onQueue([] {
        const Framebuffer first = fetch({20, 10});
        const Framebuffer second = fetch({20, 10});
        const Framebuffer third = fetch({20, 10});
        EXPECT_NE(first, second);
        EXPECT_EQ(second->framebufferReferenceCount(), 1U);
        first->unlock();
        third->unlock();
        second->unlock();
        EXPECT_EQ(fetch({20, 10}), second);
        EXPECT_EQ(fetch({20, 10}), third);
        third->unlock();
        EXPECT_EQ(fetch({20, 10}), third);
        EXPECT_EQ(fetch({20, 10}), first);
        const Framebuffer fourth = fetch({20, 10});
        EXPECT_THAT((std::vector{first, second, third}), testing::Not(testing::Contains(fourth)));
        EXPECT_EQ(fourth->framebufferReferenceCount(), 1U);
    });
}

TEST_F(FramebufferTest, ReturnsOnTheLastUnlockOnly)
{
    onQueue([] {
        const Framebuffer framebuffer = fetch({8, 8});
        framebuffer->lock();
        framebuffer->unlock();
        EXPECT_EQ(cache().idleCount(), 0U);
        EXPECT_EQ(framebuffer->framebufferReferenceCount(), 1U);
        framebuffer->unlock();
        EXPECT_EQ(cache().idleCount(), 1U);
        EXPECT_EQ(framebuffer->framebufferReferenceCount(), 0U);
    });
}

TEST_F(FramebufferTest, WithoutCountingLocksDoNothing)
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

        framebuffer->disableReferenceCounting();
        framebuffer->clearAllLocks();
        EXPECT_EQ(framebuffer->framebufferReferenceCount(), 0U);
        framebuffer->enableReferenceCounting();
    });
}

TEST_F(FramebufferTest, MemoryWarningsDropIdleOnesAlone)
{
    const std::size_t before = GPUImageFramebufferCache::livingCount();
    Framebuffer inUse = fetch({8, 8});
    onQueue([] {
        const Framebuffer first = fetch({8, 8});
        const Framebuffer second = fetch({8, 8});
        first->unlock();
        second->unlock();
    });
    EXPECT_EQ(idleFramebuffers(), 2U);
    EXPECT_EQ(GPUImageFramebufferCache::livingCount(), before + 3);
    NotificationCenter::defaultCenter().post(UIApplicationDidReceiveMemoryWarningNotification);
    EXPECT_EQ(idleFramebuffers(), 0U);
    EXPECT_EQ(GPUImageFramebufferCache::livingCount(), before + 1);

    // The pool counts from the beginning again for those that come back.
    onQueue([&] {
        const Framebuffer another = fetch({8, 8});
        EXPECT_NE(another, inUse);
        another->unlock();
        inUse->unlock();
        EXPECT_EQ(cache().idleCount(), 2U);
        EXPECT_EQ(fetch({8, 8}), inUse);
        EXPECT_EQ(fetch({8, 8}), another);
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
        EXPECT_GE(cache().idleCount(), fit - 1);
        EXPECT_LE(cache().idleCount(), fit);
        EXPECT_TRUE(returned.front().expired()) << "the longest unused goes first";
        EXPECT_EQ(fetch({2048, 2048}), returned.back().lock());
    });
}

TEST_F(FramebufferTest, OnesOfOthersTexturesAreNeverCountedNorDeleted)
{
    onQueue([] {
        GLuint texture = 0;
        glGenTextures(1, &texture);
        glBindTexture(GL_TEXTURE_2D, texture);
        {
            const auto wrapper = std::make_shared<GPUImageFramebuffer>(CGSize{4, 4}, texture);
            EXPECT_EQ(wrapper->texture(), texture);
            wrapper->enableReferenceCounting();
            wrapper->lock();
            wrapper->unlock();
            EXPECT_EQ(wrapper->framebufferReferenceCount(), 0U);
            EXPECT_EQ(cache().idleCount(), 0U);
        }
        EXPECT_TRUE(glIsTexture(texture));
        glDeleteTextures(1, &texture);
    });
}

TEST_F(FramebufferTest, ReadsBackFromTheTopAndGivesItsCount)
{
    const Framebuffer framebuffer = fetch({3.7, 2.2}); // whole pixels: 3 x 2
    EXPECT_EQ(framebuffer->pixelSize(), (IntSize{3, 2}));
    EXPECT_EQ(framebuffer->bytesPerRow(), 12U);
    onQueue([&] {
        framebuffer->activateFramebuffer();
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT);
        glEnable(GL_SCISSOR_TEST);
        glScissor(0, 0, 2, 1); // texture rows count from 0, which is the top of the picture
        glClearColor(1, 0.2F, 0, 0.6F);
        glClear(GL_COLOR_BUFFER_BIT);
        glDisable(GL_SCISSOR_TEST);
    });
    const CGImage image = framebuffer->newCGImageFromFramebufferContents();
    EXPECT_TRUE(samePixels(image, makePicture(3, 2, [](int x, int y) {
                               return x < 2 && y == 0 ? Rgba{255, 51, 0, 153} : Rgba{0, 0, 0, 0};
                           })));
    EXPECT_EQ(image.alphaInfo(), CGImageAlphaInfo::Last);
    EXPECT_EQ(idleFramebuffers(), 1U);
}

TEST_F(FramebufferTest, TheLastReferenceMayBeDroppedAnywhere)
{
    const std::size_t before = GPUImageFramebufferCache::livingCount();
    GLuint texture = 0;
    Framebuffer framebuffer = fetch({8, 8});
    onQueue([&] {
        texture = framebuffer->texture();
        EXPECT_TRUE(glIsTexture(texture));
    });
    std::thread([&] { framebuffer.reset(); }).join();
    onQueue([&] { EXPECT_FALSE(glIsTexture(texture)); });
    EXPECT_EQ(GPUImageFramebufferCache::livingCount(), before);
}

TEST_F(FramebufferTest, HopelessSizesGiveNoPicture)
{
    for (const CGSize size :
         {CGSize{0, 0}, CGSize{-4, 4}, CGSize{1e9, 1e9}, CGSize{1 << 20, 1}, CGSize{std::nan(""), 4}}) {
        const Framebuffer framebuffer = fetch(size);
        ASSERT_TRUE(framebuffer);
        EXPECT_FALSE(framebuffer->newCGImageFromFramebufferContents());
    }
    onQueue([] {
        while (glGetError() != GL_NO_ERROR) {
        }
    });
}

} // namespace
} // namespace lamina::test
