#include "GLCalls.h"
#include "GraphFixture.h"
#include "LogCapture.h"
#include "TestPictures.h"
#include "gpu/core/TextureUpload.h"
#include "gpu/sources/GPUImageRawDataInput.h"
#include "gpu/sources/GPUImageRawDataOutput.h"
#include "platform/base/DispatchSemaphore.h"

#include <limits>
#include <numeric>
#include <vector>

namespace lamina::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// The bytes of an output that takes what the input pushes, in the input's size.
Bytes passedOn(GPUImageRawDataInput& input, bool asBGRA = false)
{
    const auto output = std::make_shared<GPUImageRawDataOutput>(input.outputImageSize(), asBGRA);
    input.addTarget(output);
    input.processData();
    const std::span<const std::uint8_t> bytes = output->rawBytesForImage();
    return {bytes.begin(), bytes.end()};
}

using RawDataTest = GraphFixture;

TEST_F(RawDataTest, EveryFormArrivesAsItsValues)
{
    struct Case {
        const char* name;
        GLenum format;
        GLenum type;
        Bytes bytes;
        Bytes wanted; ///< R G B A
    };
    // Three pixels wide: rows are no multiple of four bytes but where a pixel is.
    const Case cases[] = {
        {"BGRA", GL_BGRA, GL_UNSIGNED_BYTE, {1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 1, 2}, {3, 2, 1, 4, 7, 6, 5, 8, 1, 0, 9, 2}},
        {"RGBA", GL_RGBA, GL_UNSIGNED_BYTE, {1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 1, 2}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 1, 2}},
        {"RGB", GL_RGB, GL_UNSIGNED_BYTE, {1, 2, 3, 4, 5, 6, 7, 8, 9}, {1, 2, 3, 255, 4, 5, 6, 255, 7, 8, 9, 255}},
        {"LA", GL_LUMINANCE_ALPHA, GL_UNSIGNED_BYTE, {1, 2, 3, 4, 5, 6}, {1, 1, 1, 2, 3, 3, 3, 4, 5, 5, 5, 6}},
        {"L", GL_LUMINANCE, GL_UNSIGNED_BYTE, {7, 8, 9}, {7, 7, 7, 255, 8, 8, 8, 255, 9, 9, 9, 255}},
        {"A", GL_ALPHA, GL_UNSIGNED_BYTE, {7, 8, 9}, {0, 0, 0, 7, 0, 0, 0, 8, 0, 0, 0, 9}},
        // Shorts, least significant byte first: all of red, all of green, all of blue.
        {"565",
         GL_RGB,
         GL_UNSIGNED_SHORT_5_6_5,
         {0x00, 0xF8, 0xE0, 0x07, 0x1F, 0x00},
         {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255}},
        {"4444",
         GL_RGBA,
         GL_UNSIGNED_SHORT_4_4_4_4,
         {0x00, 0xF0, 0x00, 0x0F, 0xF3, 0x00},
         {255, 0, 0, 0, 0, 255, 0, 0, 0, 0, 255, 51}},
        {"5551",
         GL_RGBA,
         GL_UNSIGNED_SHORT_5_5_5_1,
         {0x00, 0xF8, 0xC1, 0x07, 0x3E, 0x00},
         {255, 0, 0, 0, 0, 255, 0, 255, 0, 0, 255, 0}},
    };
    for (const Case& form : cases) {
        // Two rows of the same.
        Bytes twice = form.bytes;
        twice.insert(twice.end(), form.bytes.begin(), form.bytes.end());
        Bytes wanted = form.wanted;
        wanted.insert(wanted.end(), form.wanted.begin(), form.wanted.end());
        GPUImageRawDataInput input(twice, {3, 2}, form.format, form.type);
        EXPECT_EQ(passedOn(input), wanted) << form.name;
    }
}

TEST_F(RawDataTest, WhatIsRefusedIsNamedAndChangesNothing)
{
    GPUImageRawDataInput input(Bytes{1, 2, 3, 4}, {1, 1}, GL_RGBA);
    const Bytes bytes(24);
    const auto refusal = [&](std::size_t count, CGSize size, GLenum format = GL_RGBA, GLenum type = GL_UNSIGNED_BYTE) {
        input.setPixelFormat(format);
        input.setPixelType(type);
        const Outcome outcome = input.updateDataFromBytes(std::span(bytes).first(count), size);
        return outcome ? "" : outcome.error().cause;
    };
    using testing::HasSubstr;
    EXPECT_THAT(refusal(15, {2, 2}), HasSubstr("2x2 pixels of GL_RGBA and GL_UNSIGNED_BYTE are 16 bytes, not 15"));
    EXPECT_THAT(refusal(17, {2, 2}), HasSubstr("16 bytes"));
    EXPECT_THAT(refusal(24, {2, 3}, GL_RGBA, GL_FLOAT), HasSubstr("GL_RGBA and GL_FLOAT"));
    EXPECT_THAT(refusal(4, {2, 2}, 0x1903), HasSubstr("0x1903"));
    EXPECT_THAT(refusal(0, {0, 0}), HasSubstr("size"));
    EXPECT_THAT(refusal(8, {1e9, 2}), HasSubstr("size"));
    EXPECT_EQ(passedOn(input), (Bytes{1, 2, 3, 4}));

    LogCapture log;
    GPUImageRawDataInput none({}, {2, 2});
    EXPECT_THAT(log.text(), HasSubstr("raw data: 2x2 pixels of GL_BGRA"));
    const auto consumer = consumerOf(none);
    none.processData();
    onQueue([] {});
    EXPECT_TRUE(consumer->frames().empty());
}

TEST_F(RawDataTest, PushesOneAtATimeAndHandsTimesWithoutTheFramebuffer)
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
    EXPECT_EQ(consumer->last().size, (CGSize{2, 2}));
    EXPECT_EQ(consumer->last().counts, 2U) << "the input's own and the target's";

    ASSERT_TRUE(input->updateDataFromBytes(Bytes(4), {1, 1}).ok());
    onQueue([&] {
        input->processDataForTimestamp(second(5));
        EXPECT_EQ(consumer->last().time, second(5));
        EXPECT_EQ(consumer->last().size, (CGSize{1, 1}));
        EXPECT_TRUE(consumer->last().framebuffer.lock()) << "since the bytes came";
        input->processDataForTimestamp(second(6));
        EXPECT_FALSE(consumer->last().framebuffer.lock()) << "it was given back";
    });
}

TEST_F(RawDataTest, AnOutputReadsEachFrameOnceInItsSizeAndOrder)
{
    const auto output = std::make_shared<GPUImageRawDataOutput>(CGSize{2, 2}, true);
    EXPECT_EQ(output->colorAtLocation({0, 0}), (GPUByteColorVector{0, 0, 0, 255})) << "before the first frame";
    m_source->addTarget(output);
    const CGImage corners = makePicture(2, 2, [](int x, int y) {
        return Rgba{std::uint8_t(x * 100), std::uint8_t(y * 100), 7, 200};
    });
    int available = 0;
    output->setNewFrameAvailableBlock([&] {
        ++available;
        EXPECT_EQ(output->rawBytesForImage()[0], 7) << "blue first, at once";
    });
    m_source->push(corners, second(1));
    m_source->push(corners, second(2));
    EXPECT_EQ(available, 2);

    // y counts from the bottom edge; the top row is y = 2, and y = 0 is below the bottom one.
    struct Place {
        CGPoint at;
        int column;
        int row;
    };
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    for (const auto& [at, column, row] : {Place{{0, 2}, 0, 0},
                                          {{1, 2}, 1, 0},
                                          {{0, 1}, 0, 1},
                                          {{-5, -5}, 0, 1},
                                          {{7, 7}, 1, 0},
                                          {{kNaN, kNaN}, 0, 0}}) {
        EXPECT_EQ(output->colorAtLocation(at),
                  (GPUByteColorVector{std::uint8_t(column * 100), std::uint8_t(row * 100), 7, 200}))
            << at.x << ", " << at.y;
    }

    // A frame that has been read is not drawn again, so nothing comes to be locked.
    output->lockFramebufferForReading();
    output->rawBytesForImage();
    EXPECT_EQ(output->bytesPerRowInOutput(), 0U);
    output->setNewFrameAvailableBlock(nullptr);
    output->setImageSize({3, 1});
    m_source->push(solidPicture(6, 4, {9, 8, 7, 6}), second(3));
    EXPECT_THAT(output->rawBytesForImage(), testing::ElementsAre(7, 8, 9, 6, 7, 8, 9, 6, 7, 8, 9, 6));
    EXPECT_EQ(output->bytesPerRowInOutput(), 12U);
    const std::size_t idle = idleFramebuffers();
    output->unlockFramebufferAfterReading();
    EXPECT_EQ(idleFramebuffers(), idle + 1);
    EXPECT_EQ(output->bytesPerRowInOutput(), 0U);
}

TEST_F(RawDataTest, FramesTakeNothingOnceWarm)
{
    std::size_t made = 0;
    {
        const auto input = std::make_shared<GPUImageRawDataInput>(Bytes(64), CGSize{4, 4});
        const auto filter = multiplying(0.5F);
        const auto output = std::make_shared<GPUImageRawDataOutput>(CGSize{3, 5}, false);
        input->addTarget(filter);
        filter->addTarget(output);
        const auto run = [&](int frames) {
            for (int i = 0; i < frames; ++i) {
                ASSERT_TRUE(input->uploadBytes(Bytes(64, static_cast<std::uint8_t>(i))).ok());
                input->processData();
                if (i % 3 == 0)
                    continue; // a frame that nobody reads
                ASSERT_NEAR(output->rawBytesForImage()[0], static_cast<std::uint8_t>(i) / 2.0, 0.5);
            }
        };
        run(10);
        const GLCalls warm = valueFromVideoProcessingQueue(glCallsSoFar);
        made = GPUImageFramebufferCache::livingCount();
        run(10000);
        EXPECT_EQ((valueFromVideoProcessingQueue(glCallsSoFar) - warm).objectsMade(), 0);
        EXPECT_EQ(GPUImageFramebufferCache::livingCount(), made);
    }
    EXPECT_EQ(idleFramebuffers(), made) << "all counts have been given back";
}

TEST_F(RawDataTest, RowsWithGapsGoUpWithoutThem)
{
    onQueue([] {
        const auto framebuffer =
            GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize({3, 2}, {.format = GL_RGBA}, false);
        Bytes bytes(64);
        std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
        const GLCalls before = glCallsSoFar();
        for (const std::size_t bytesPerRow : {12U, 20U, 15U}) { // none, whole pixels, neither
            ASSERT_TRUE(uploadTexture(*framebuffer, {bytes.data(), {3, 2}, GL_RGBA, GL_UNSIGNED_BYTE, bytesPerRow}));
            const CGImage wanted = makePicture(3, 2, [&](int x, int y) {
                const std::uint8_t* pixel = &bytes[std::size_t(y) * bytesPerRow + 4 * std::size_t(x)];
                return Rgba{pixel[0], pixel[1], pixel[2], pixel[3]};
            });
            EXPECT_TRUE(imagesMatch(framebuffer->contents(), wanted)) << bytesPerRow;
        }
        EXPECT_EQ((glCallsSoFar() - before).uploads, 0) << "into the storage that was there";
        framebuffer->unlock();
    });
}

} // namespace
} // namespace lamina::test
