#include "GLCalls.h"
#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/sources/GPUImageRawDataOutput.h"
#include "gpu/sources/GPUImageTextureInput.h"
#include "gpu/sources/GPUImageTextureOutput.h"

namespace lamina::test {
namespace {

/// A texture that no graph has made.
class OwnTexture {
public:
    explicit OwnTexture(const CGImage& picture)
    {
        runSynchronouslyOnVideoProcessingQueue([&] {
            GPUImageContext::useImageProcessingContext();
            glGenTextures(1, &m_name);
            glBindTexture(GL_TEXTURE_2D, m_name);
            for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
                glTexParameteri(GL_TEXTURE_2D, filter, GL_NEAREST);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
            glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, picture.width(), picture.height(), 0, GL_RGBA, GL_UNSIGNED_BYTE,
                         picture.bytes().data());
        });
    }
    ~OwnTexture()
    {
        runSynchronouslyOnVideoProcessingQueue([this] { glDeleteTextures(1, &m_name); });
    }
    OwnTexture(const OwnTexture&) = delete;
    OwnTexture& operator=(const OwnTexture&) = delete;

    GLuint name() const { return m_name; }

private:
    GLuint m_name = 0;
};

/// Keeps what is in each texture that it is told of.
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

using TextureEndsTest = GraphFixture;

TEST_F(TextureEndsTest, ATextureGoesThroughTheGraphIntoAnother)
{
    const CGImage picture = noisePicture(5, 3, CGImageAlphaInfo::Last);
    const OwnTexture texture(picture);
    const auto input = std::make_shared<GPUImageTextureInput>(texture.name(), CGSize{5, 3});
    const auto filter = multiplying(1);
    const auto output = std::make_shared<GPUImageTextureOutput>();
    const auto reader = std::make_shared<Reader>();
    output->setDelegate(reader);
    filter->addTarget(output);
    input->addTarget(filter);
    const auto consumer = consumerOf(*filter);
    input->processTextureWithFrameTime(second(7));
    onQueue([] {});
    EXPECT_EQ(consumer->last().time, second(7));
    EXPECT_EQ(reader->seen, bytesOf(picture));

    const OwnTexture other(noisePicture(5, 3, CGImageAlphaInfo::Last, 2));
    GPUImageTextureInput(other.name(), {5, 3}).addTarget(output);
    EXPECT_EQ(output->texture(), 0U) << "its source has gone, and with it what the name stands for";
}

TEST_F(TextureEndsTest, AnOutputHoldsAFrameUntilDoneOrTheNext)
{
    const auto output = std::make_shared<GPUImageTextureOutput>();
    const auto reader = std::make_shared<Reader>();
    output->setDelegate(reader);
    m_source->setRotation(kGPUImageRotateLeft);
    m_source->addTarget(output);
    m_source->push({4, 2}, {1, 2, 3, 4}, second(0));
    EXPECT_EQ(reader->rotation, kGPUImageRotateLeft);
    const std::size_t idle = idleFramebuffers();
    m_source->push({4, 2}, {5, 6, 7, 8}, second(1));
    EXPECT_NE(output->texture(), 0U);
    EXPECT_EQ(reader->seen[4], 5);
    EXPECT_EQ(idleFramebuffers(), idle + 1) << "of the first frame";
    output->doneWithTexture();
    output->doneWithTexture();
    EXPECT_EQ(idleFramebuffers(), idle + 2);
    EXPECT_EQ(output->texture(), 0U);

    const GLCalls before = glCallsSoFar();
    for (int i = 0; i < 20; ++i) {
        reader->isDoneAtOnce = i % 2 == 0;
        output->setDelegate(i % 3 == 0 ? nullptr : reader);
        m_source->push({4, 2}, {9, 9, 9, 9}, second(i));
    }
    // The reader's own: it makes an end for each frame, out of what the pool and the programs have.
    EXPECT_EQ((glCallsSoFar() - before).objectsMade(), 0);
    EXPECT_EQ(reader->frames, 2 + 13);
}

} // namespace
} // namespace lamina::test
