#include "GLCalls.h"
#include "GraphFixture.h"
#include "LogCapture.h"
#include "TestPictures.h"
#include "gpu/core/TextureUpload.h"
#include "gpu/sources/GPUImageRawDataInput.h"
#include "gpu/sources/GPUImageRawDataOutput.h"
#include "platform/base/DispatchSemaphore.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

using Bytes = std::vector<std::uint8_t>;
using testing::HasSubstr;

/// The bytes of an output that takes what the input pushes, in the input's size.
Bytes passedOn(GPUImageRawDataInput& input)
{
    const auto output = std::make_shared<GPUImageRawDataOutput>(input.outputImageSize(), false);
    input.addTarget(output);
    input.processData();
    const std::span<const std::uint8_t> bytes = output->rawBytesForImage();
    return {bytes.begin(), bytes.end()};
}

using RawDataTest = GraphFixture;

TEST_F(RawDataTest, EveryFormArrivesAsItsValues)
{
    struct Case {
        GLenum format;
        GLenum type;
        Bytes bytes;
        Bytes wanted; ///< R G B A
    };
    // A column of three: rows are no multiple of four bytes but where a pixel is. Shorts: least significant byte first.
    const Case cases[] = {
        {GL_BGRA, GL_UNSIGNED_BYTE, {1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 1, 2}, {3, 2, 1, 4, 7, 6, 5, 8, 1, 0, 9, 2}},
        {GL_RGB, GL_UNSIGNED_BYTE, {1, 2, 3, 4, 5, 6, 7, 8, 9}, {1, 2, 3, 255, 4, 5, 6, 255, 7, 8, 9, 255}},
        {GL_LUMINANCE_ALPHA, GL_UNSIGNED_BYTE, {1, 2, 3, 4, 5, 6}, {1, 1, 1, 2, 3, 3, 3, 4, 5, 5, 5, 6}},
        {GL_RGB, GL_UNSIGNED_SHORT_5_6_5, {0, 0xF8, 0xE0, 7, 31, 0}, {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255}},
        {GL_RGBA, GL_UNSIGNED_SHORT_4_4_4_4, {0, 0xF0, 0, 15, 0xF3, 0}, {255, 0, 0, 0, 0, 255, 0, 0, 0, 0, 255, 51}},
    };
    for (const Case& form : cases) {
        GPUImageRawDataInput input(form.bytes, {1, 3}, form.format, form.type);
        EXPECT_EQ(passedOn(input), form.wanted) << form.format << " " << form.type;
    }
}

TEST_F(RawDataTest, WhatIsRefusedIsNamedAndChangesNothing)
{
    GPUImageRawDataInput input(Bytes{1, 2, 3, 4}, {1, 1}, GL_RGBA);
    const auto refusal = [&](std::size_t count, CGSize size, GLenum type = GL_UNSIGNED_BYTE) {
        input.setPixelType(type);
        const Outcome outcome = input.updateDataFromBytes(Bytes(count), size);
        return outcome ? "" : outcome.error().cause;
    };
    EXPECT_THAT(refusal(15, {2, 2}), HasSubstr("2x2 pixels of GL_RGBA and GL_UNSIGNED_BYTE are 16 bytes, not 15"));
    EXPECT_THAT(refusal(17, {2, 2}), HasSubstr("not 17"));
    EXPECT_THAT(refusal(64, {2, 2}, GL_FLOAT), HasSubstr("GL_RGBA and GL_FLOAT"));
    EXPECT_THAT(refusal(8, {1e9, 2}), HasSubstr("size"));
    EXPECT_EQ(passedOn(input), (Bytes{1, 2, 3, 4}));

    LogCapture log;
    GPUImageRawDataInput({}, {2, 2}).processData();
    EXPECT_THAT(log.text(), HasSubstr("raw data: 2x2 pixels of GL_BGRA"));
}

TEST_F(RawDataTest, PushesOneAtATimeAndHandsEveryFrameOver)
{
    const auto input = std::make_shared<GPUImageRawDataInput>(Bytes(16), CGSize{2, 2});
    const auto consumer = consumerOf(*input);
    DispatchSemaphore held;
    runAsynchronouslyOnVideoProcessingQueue([&] { held.wait(); });
    input->processData();
    input->processData();
    held.signal();
    onQueue([] {});
    ASSERT_EQ(consumer->frames().size(), 1U) << "the second came while the first was on its way";
    EXPECT_FALSE(consumer->last().time.isValid());

    const auto pushAll = [&](int times) {
        onQueue([&] {
            for (int time = 0; time < times; ++time) {
                ASSERT_TRUE(input->updateDataFromBytes(Bytes(4), {1, 1}).ok());
                input->processDataForTimestamp(second(time));
                input->processDataForTimestamp(second(time));
                EXPECT_EQ(consumer->last().time, second(time));
                EXPECT_EQ(consumer->last().size, (CGSize{1, 1}));
                EXPECT_EQ(consumer->last().counts, 2U) << "the input's and the target's";
            }
        });
    };
    pushAll(2);
    const GLCalls before = glCallsSoFar();
    pushAll(20);
    EXPECT_EQ((glCallsSoFar() - before).objectsMade(), 0);
}

TEST_F(RawDataTest, AnOutputReadsEachFrameOnceInItsSizeAndOrder)
{
    const auto output = std::make_shared<GPUImageRawDataOutput>(CGSize{2, 2}, true);
    EXPECT_EQ(output->colorAtLocation({0, 0}), (GPUByteColorVector{0, 0, 0, 255})) << "before the first frame";
    m_source->addTarget(output);
    int available = 0;
    output->setNewFrameAvailableBlock([&] { available += output->rawBytesForImage()[0]; }); // blue
    for (int i = 0; i < 2; ++i) {
        m_source->push(
            makePicture(2, 2,
                        [](int x, int y) {
                            return Rgba{static_cast<std::uint8_t>(x * 100), static_cast<std::uint8_t>(y * 100), 7, 200};
                        }),
            second(i));
    }
    EXPECT_EQ(available, 14);
    // y counts from the bottom edge: the top row is y = 2, and y = 0 lies below the bottom one.
    const std::pair<CGPoint, GPUByteColorVector> places[] = {{{1, 2}, {100, 0, 7, 200}},
                                                             {{0, 1}, {0, 100, 7, 200}},
                                                             {{-5, -5}, {0, 100, 7, 200}},
                                                             {{7, 7}, {100, 0, 7, 200}},
                                                             {{std::nan(""), std::nan("")}, {0, 0, 7, 200}}};
    for (const auto& [place, color] : places)
        EXPECT_EQ(output->colorAtLocation(place), color) << place.x << ", " << place.y;

    // A frame that has been read is not drawn again, so nothing comes to be locked.
    output->lockFramebufferForReading();
    output->rawBytesForImage();
    EXPECT_EQ(output->bytesPerRowInOutput(), 0U);
    output->setImageSize({3, 1});
    m_source->push(solidPicture(6, 4, {9, 8, 7, 6}), second(3));
    EXPECT_THAT(output->rawBytesForImage(), testing::ElementsAre(7, 8, 9, 6, 7, 8, 9, 6, 7, 8, 9, 6));
    EXPECT_EQ(output->bytesPerRowInOutput(), 12U);
    const std::size_t idle = idleFramebuffers();
    output->unlockFramebufferAfterReading();
    EXPECT_EQ(idleFramebuffers(), idle + 1);
}

TEST_F(RawDataTest, RowsWithGapsGoUpWithoutThemIntoTheStorageThatIsThere)
{
    onQueue([] {
        const auto framebuffer =
            GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize({3, 2}, {.format = GL_RGBA}, false);
        framebuffer->activateFramebuffer(); // its memory comes with the first use
        const CGImage noise = noisePicture(8, 2, CGImageAlphaInfo::Last);
        framebuffer->texture(); // stands before anything is counted
        const GLCalls before = glCallsSoFar();
        for (const std::size_t bytesPerRow : {12U, 20U, 15U}) { // none, whole pixels, neither
            const std::uint8_t* bytes = noise.bytes().data();
            ASSERT_TRUE(uploadTexture(*framebuffer, {bytes, {3, 2}, GL_RGBA, GL_UNSIGNED_BYTE, bytesPerRow}));
            const CGImage contents = framebuffer->contents();
            const std::span<const std::uint8_t> up = contents.bytes();
            EXPECT_TRUE(std::equal(up.begin(), up.begin() + 12, bytes));
            EXPECT_TRUE(std::equal(up.begin() + 12, up.end(), bytes + bytesPerRow)) << bytesPerRow;
        }
        EXPECT_EQ((glCallsSoFar() - before).uploads, 0);
        framebuffer->unlock();
    });
}

} // namespace
} // namespace lamina::test
