#include "FrameSource.h"

#include "gpu/core/GPUImageContext.h"

namespace lamina::test {

namespace {

/// Bytes as they are, whatever the storage's usual order.
constexpr GPUTextureOptions kRgbaOptions{.format = GL_RGBA};

std::shared_ptr<GPUImageFramebuffer> uploaded(const CGImage& picture)
{
    const CGSize size{static_cast<double>(picture.width()), static_cast<double>(picture.height())};
    auto framebuffer = GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize(size, kRgbaOptions, false);
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_2D, framebuffer->texture());
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, picture.width(), picture.height(), GL_RGBA, GL_UNSIGNED_BYTE,
                    picture.bytes().data());
    return framebuffer;
}

} // namespace

void FrameSource::push(IntSize size, Rgba color, const CMTime& time)
{
    push(plainPicture(size.width, size.height, color), time);
}

void FrameSource::push(const CGImage& picture, const CMTime& time)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        const auto framebuffer = uploaded(picture);
        m_outputFramebuffer = framebuffer;
        for (const Target& target : targetList()) {
            target.input->setInputRotation(m_rotation, target.textureIndex);
            target.input->setInputSize(framebuffer->size(), target.textureIndex);
            target.input->setInputFramebuffer(framebuffer, target.textureIndex);
        }
        framebuffer->unlock();
        m_outputFramebuffer.reset();
        for (const Target& target : targetList())
            target.input->newFrameReadyAtTime(time, target.textureIndex);
    });
}

void FrameSource::pushStill(const CGImage& picture)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_still = uploaded(picture);
        m_still->disableReferenceCounting();
        for (const Target& target : targetList()) {
            target.input->setInputSize(m_still->size(), target.textureIndex);
            target.input->setInputFramebuffer(m_still, target.textureIndex);
            target.input->newFrameReadyAtTime(kCMTimeIndefinite, target.textureIndex);
        }
    });
}

CGImage plainPicture(int width, int height, Rgba color)
{
    return makePicture(
        width, height, [&](int, int) { return color; }, true);
}

CGImage distinctPicture(int width, int height)
{
    return makePicture(
        width, height,
        [&](int x, int y) {
            const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
            return Rgba{byte(17 + 13 * x), byte(29 + 11 * y), byte(7 * x + 3 * y), byte(255 - x - 5 * y)};
        },
        true);
}

CGImage rearranged(const CGImage& source, IntSize size, const std::function<IntSize(int x, int y)>& from)
{
    return makePicture(
        size.width, size.height,
        [&](int x, int y) {
            const IntSize place = from(x, y);
            return pixelAt(source, place.width, place.height);
        },
        true);
}

testing::AssertionResult samePixels(const CGImage& got, const CGImage& wanted, int step)
{
    if (!got)
        return testing::AssertionFailure() << "there is no picture";
    if (got.size() != wanted.size()) {
        return testing::AssertionFailure() << got.width() << "x" << got.height() << " pixels instead of "
                                           << wanted.width() << "x" << wanted.height();
    }
    int worst = -1;
    IntSize place;
    for (int y = 0; y < got.height(); ++y) {
        for (int x = 0; x < got.width(); ++x) {
            const int off = difference(pixelAt(got, x, y), pixelAt(wanted, x, y));
            if (off > worst) {
                worst = off;
                place = {x, y};
            }
        }
    }
    if (worst <= step)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "off by " << worst << " at (" << place.width << ", " << place.height
                                       << "): got " << testing::PrintToString(pixelAt(got, place.width, place.height))
                                       << ", wanted "
                                       << testing::PrintToString(pixelAt(wanted, place.width, place.height));
}

std::size_t idleFramebuffers()
{
    return valueFromVideoProcessingQueue([] { return GPUImageContext::sharedFramebufferCache().idleCount(); });
}

void emptyPool()
{
    runSynchronouslyOnVideoProcessingQueue(
        [] { GPUImageContext::sharedFramebufferCache().purgeAllUnassignedFramebuffers(); });
}

} // namespace lamina::test
