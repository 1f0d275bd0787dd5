#include "GLCalls.h"
#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/PictureTexture.h"
#include "gpu/sources/GPUImageRawDataOutput.h"
#include "gpu/sources/GPUImageTextureInput.h"
#include "gpu/sources/GPUImageTextureOutput.h"

namespace lamina::test {
namespace {

/// Reads each texture that it is told of, by way of the other end.
class Reader : public GPUImageTextureOutputDelegate {
public:
    void newFrameReadyFromTextureOutput(GPUImageTextureOutput& output) override
    {
        ++frames;
        rotation = output.inputRotation();
        GPUImageTextureInput again(output.texture(), output.textureSize());
        const auto bytes = std::make_shared<GPUImageRawDataOutput>(output.textureSize(), false);
        again.addTarget(bytes);
        again.processTextureWithFrameTime(second(1));
        const std::span<const std::uint8_t> read = bytes->rawBytesForImage();
        seen.assign(read.begin(), read.end());
        if (isDoneAtOnce)
            output.doneWithTexture();
    }

    int frames = 0;
    GPUImageRotationMode rotation = kGPUImageNoRotation;
    std::vector<std::uint8_t> seen;
    bool isDoneAtOnce = false;
};

class TextureEndsTest : public GraphFixture {
protected:
    TextureEndsTest() { m_output->setDelegate(m_reader); }

    const std::shared_ptr<GPUImageTextureOutput> m_output = std::make_shared<GPUImageTextureOutput>();
    const std::shared_ptr<Reader> m_reader = std::make_shared<Reader>();
};

TEST_F(TextureEndsTest, ATextureGoesThroughTheGraphAndGoesWithItsInput)
{
    const CGImage picture = noisePicture(5, 3, CGImageAlphaInfo::Last);
    const PictureTexture texture(picture);
    auto input = std::make_shared<GPUImageTextureInput>(texture.framebuffer()->texture(), CGSize{5, 3});
    const auto consumer = consumerOf(*input);
    input->addTarget(m_output);
    input->processTextureWithFrameTime(second(7));
    onQueue([] {});
    EXPECT_EQ(consumer->last().time, second(7));
    EXPECT_EQ(m_reader->seen, bytesOf(picture));
    EXPECT_EQ(m_output->texture(), texture.framebuffer()->texture());
    input.reset();
    EXPECT_EQ(m_output->texture(), 0U);
}

TEST_F(TextureEndsTest, AnOutputHoldsAFrameUntilDoneOrTheNext)
{
    m_source->setRotation(kGPUImageRotateLeft);
    m_source->addTarget(m_output);
    m_source->push({4, 2}, {1, 2, 3, 4}, second(0));
    EXPECT_EQ(m_reader->rotation, kGPUImageRotateLeft);
    const std::size_t idle = idleFramebuffers();
    m_source->push({4, 2}, {5, 6, 7, 8}, second(1));
    EXPECT_EQ(m_reader->seen[4], 5);
    EXPECT_EQ(idleFramebuffers(), idle + 1) << "of the first frame";
    m_output->doneWithTexture();
    m_output->doneWithTexture();
    EXPECT_EQ(idleFramebuffers(), idle + 2);

    const GLCalls before = glCallsSoFar();
    for (int i = 0; i < 20; ++i) {
        m_reader->isDoneAtOnce = i % 2 == 0;
        m_source->push({4, 2}, {9, 9, 9, 9}, second(i));
    }
    EXPECT_EQ((glCallsSoFar() - before).objectsMade(), 0);
    EXPECT_EQ(m_reader->frames, 22);
}

} // namespace
} // namespace lamina::test
