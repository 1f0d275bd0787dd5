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
    EXPECT_EQ(GPUImageFramebufferCache::hashForSize({100, 100}, plain, false),
              "100.0x100.0-9729:9729:33071:33071:6408:32993:5121");
    struct Kind {
        CGSize size;
        GPUTextureOptions options;
        bool onlyTexture = false;
    };
    std::vector<Kind> kinds{{{100, 100}, plain, true}};
    // Printing rounds the exact value: 21.15 is a little less than it says, 0.25 a tie that goes to the even digit.
    for (const double side : {100.0, 100.04, 100.06, 21.15, 21.1, 21.2, 0.25, 0.2, 0.35, 0.4, -0.04, 0.0, -4.0, 1e300})
        kinds.push_back({{side, 100}, plain});
    kinds.push_back({{100, 100.04}, plain});
    kinds.push_back({{100, 21.15}, plain});
    kinds.push_back({{std::nan(""), 100}, plain});
    kinds.push_back({{std::nan("7"), 100}, plain});
    using Option = std::uint32_t GPUTextureOptions::*;
    for (const Option option : {&GPUTextureOptions::minFilter, &GPUTextureOptions::magFilter, &GPUTextureOptions::wrapS,
                                &GPUTextureOptions::wrapT, &GPUTextureOptions::internalFormat,
                                &GPUTextureOptions::format, &GPUTextureOptions::type}) {
        kinds.push_back({{100, 100}, plain});
        kinds.back().options.*option = 1;
    }
    for (const Kind& x : kinds) {
        const std::string text = GPUImageFramebufferCache::hashForSize(x.size, x.options, x.onlyTexture);
        const FramebufferKind kind(x.size, x.options, x.onlyTexture);
        for (const Kind& y : kinds) {
            const std::string other = GPUImageFramebufferCache::hashForSize(y.size, y.options, y.onlyTexture);
            const FramebufferKind otherKind(y.size, y.options, y.onlyTexture);
            EXPECT_EQ(kind == otherKind, text == other) << text << " and " << other;
            EXPECT_TRUE(kind != otherKind || kind.hash() == otherKind.hash()) << text;
        }
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
        EXPECT_EQ(fetch({20, 10})->framebufferReferenceCount(), 1U) << "a new one";
    });
}

TEST_F(FramebufferTest, ReturnsOnTheLastUnlockUnlessCountingIsOff)
{
    onQueue([] {
        const Framebuffer framebuffer = fetch({8, 8});
        framebuffer->lock();
        framebuffer->unlock();
        framebuffer->disableReferenceCounting();
        framebuffer->unlock();
        framebuffer->unlock();
        framebuffer->lock();
        EXPECT_EQ(framebuffer->framebufferReferenceCount(), 1U);
        EXPECT_EQ(cache().idleCount(), 0U);
        framebuffer->enableReferenceCounting();
        framebuffer->unlock();
        EXPECT_EQ(framebuffer->framebufferReferenceCount(), 0U);
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
        EXPECT_GE(cache().idleCount(), fit - 1);
        EXPECT_LE(cache().idleCount(), fit);
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
        {
            const auto wrapper = std::make_shared<GPUImageFramebuffer>(CGSize{4, 4}, texture);
            EXPECT_EQ(wrapper->texture(), texture);
            wrapper->enableReferenceCounting();
            wrapper->lock();
            EXPECT_EQ(wrapper->framebufferReferenceCount(), 0U);
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
    EXPECT_TRUE(imagesMatch(image, makePicture(3, 2, [](int x, int y) {
                                return x < 2 && y == 0 ? Rgba{255, 51, 0, 153} : Rgba{0, 0, 0, 0};
                            })));
    EXPECT_EQ(image.alphaInfo(), CGImageAlphaInfo::Last);
    EXPECT_EQ(idleFramebuffers(), 1U);
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
