#include "GLCalls.h"
#include "GraphFixture.h"
#include "LogCapture.h"
#include "TestPictures.h"
#include "gpu/core/FilterProgram.h"
#include "gpu/core/GPUImageContext.h"
#include "platform/base/CMTime.h"
#include "platform/base/MemoryWarning.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace lamina::test {
namespace {

const std::string kVertex = kGPUImageVertexShaderString;

std::string paints(const char* color)
{
    return std::string("precision mediump float; void main() { gl_FragColor = vec4(") + color + "); }";
}

using ContextTest = GraphFixture;

TEST_F(ContextTest, KnowsTheDevice)
{
    const int device = GPUImageContext::maximumTextureSizeForThisDevice();
    EXPECT_GE(device, 64) << "what OpenGL ES 2.0 promises at the least";
    GPUImageContext::limitTextureSize(device + 1);
    EXPECT_EQ(GPUImageContext::maximumTextureSizeForThisDevice(), device);
    GPUImageContext::limitTextureSize(0);
    EXPECT_EQ(GPUImageContext::sizeThatFits({5, 4}, 0), CGSize{}) << "where there is no device";
    onQueue([] {
        std::istringstream names(reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS)));
        for (std::string name; names >> name;)
            EXPECT_TRUE(GPUImageContext::deviceSupportsOpenGLESExtension(name)) << name;
    });
    EXPECT_FALSE(GPUImageContext::deviceSupportsOpenGLESExtension("GL_EXT_text")) << "a part of a name";
}

TEST_F(ContextTest, TellsDriversThatDrawOnTheProcessor)
{
    for (const char* renderer : {"llvmpipe (LLVM 15.0.6, 256 bits)", "softpipe", "zink Vulkan 1.3(llvmpipe)",
                                 "Google SwiftShader", "Software Rasterizer"})
        EXPECT_TRUE(GPUImageContext::drawsOnProcessor(renderer)) << renderer;
    for (const char* renderer : {"", "Mali400", "Adreno (TM) 630", "NVIDIA H100 80GB HBM3/PCIe/SSE2"})
        EXPECT_FALSE(GPUImageContext::drawsOnProcessor(renderer)) << renderer;
}

TEST_F(ContextTest, ProgramsAreSharedByTextAndKeptUpToABound)
{
    onQueue([] {
        GPUImageContext& context = GPUImageContext::sharedImageProcessingContext();
        const auto programsMadeFor = [&](const std::string& vertexShader, const std::string& fragmentShader) {
            const GLCalls before = glCallsSoFar();
            EXPECT_TRUE(context.programForVertexShaderString(vertexShader, fragmentShader));
            return (glCallsSoFar() - before).programs;
        };
        const auto held = context.programForVertexShaderString(kVertex, paints("0.125"));
        EXPECT_EQ(programsMadeFor(kVertex + " ", paints("0.125")), 1);

        constexpr std::size_t kMost = GLProgramCache::kIdleLimit;
        const auto numbered = [](std::size_t number) { return paints((std::to_string(number) + ".5").c_str()); };
        for (std::size_t i = 0; i <= kMost + 1; ++i) // the newest is not idle yet
            EXPECT_EQ(programsMadeFor(kVertex, numbered(i)), 1) << i;
        const std::size_t kept = context.programCache().count();
        EXPECT_EQ(programsMadeFor(kVertex, numbered(1)), 0) << "still there, and asked for most recently now";
        EXPECT_EQ(programsMadeFor(kVertex, numbered(0)), 1) << "the least recently used had gone";
        EXPECT_EQ(programsMadeFor(kVertex, numbered(1)), 0);
        EXPECT_EQ(context.programCache().count(), kept);
        EXPECT_EQ(programsMadeFor(kVertex, paints("0.125")), 0) << "one in use stays";
    });
    // A memory warning drops all that nobody holds.
    const auto filter = std::make_shared<GPUImageFilter>(paints("0.375"));
    NotificationCenter::defaultCenter().post(UIApplicationDidReceiveMemoryWarningNotification);
    onQueue([] { EXPECT_LE(GPUImageContext::sharedImageProcessingContext().programCache().count(), 2U); });
    EXPECT_TRUE(filter->newCGImageByFilteringCGImage(chartPicture(2, 1)));
}

TEST_F(ContextTest, AttributesStandInTheOrderOfAdding)
{
    onQueue([] {
        const auto program = std::make_shared<GLProgram>(
            "attribute vec4 a; attribute vec4 b; void main() { gl_Position = a + b; }", paints("1.0"));
        for (const char* name : {"b", "a", "b"})
            program->addAttribute(name);
        ASSERT_TRUE(program->link());
        EXPECT_EQ(program->attributeIndex("a"), 1U);
        EXPECT_EQ(program->attributeIndex("c"), GLProgram::kNotFound);
        GPUImageContext::setActiveShaderProgram(program);
        GLint name = 0;
        glGetIntegerv(GL_CURRENT_PROGRAM, &name);
        EXPECT_EQ(glGetAttribLocation(static_cast<GLuint>(name), "a"), 1) << "GL agrees";
    });
}

TEST_F(ContextTest, AShaderThatDoesNotCompileLeavesThreeLinesAndNoPicture)
{
    const std::string vertexFails = "void main() { gl_Position = nonsense; }";
    const std::string fragmentFails = "void main() { gl_FragColor = nonsense; }";
    // Compiles, as the vertex shader does; together they don't link.
    const std::string linkFails =
        "precision mediump float; varying vec3 lost; void main() { gl_FragColor = vec4(lost, 1.0); }";
    for (const auto& [vertex, fragment, failure] :
         {std::array{kVertex, fragmentFails, std::string("Failed to compile fragment shader")},
          {vertexFails, paints("1.0"), "Failed to compile vertex shader"},
          {kVertex, linkFails, "Program link log: "}}) {
        LogCapture log;
        const auto filter = std::make_shared<GPUImageFilter>(vertex, fragment);
        EXPECT_FALSE(filter->canRender());
        EXPECT_THAT(log.text(), testing::HasSubstr(failure));
        EXPECT_THAT(log.text(), testing::ContainsRegex("Program link log: .*\nFragment shader compile log: "));
        EXPECT_THAT(log.text(), testing::HasSubstr("Vertex shader compile log: "));
        m_source->addTarget(filter);
        filter->useNextFrameForImageCapture();
        m_source->push({4, 3}, {}, kCMTimeZero);
        const auto asked = std::chrono::steady_clock::now();
        EXPECT_FALSE(filter->newCGImageFromCurrentlyProcessedOutput());
        EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::seconds(2)) << "what can't come";
    }
}

TEST_F(ContextTest, ShaderTextComesFromFiles)
{
    const TemporaryFolder folder;
    writeFile(folder.path("Green.fsh"), paints("0.0, 1.0, 0.0, 1.0"));
    writeFile(folder.path("Corners.vsh"), kVertex);
    EXPECT_TRUE(GPUImageFilter::makeWithFragmentShaderFromFile(folder.path("Green"))->canRender());
    onQueue([&] {
        EXPECT_TRUE(GLProgram::makeWithVertexShaderFilename(folder.path("Corners"), folder.path("Green"))->link());
    });
    LogCapture log;
    EXPECT_FALSE(GPUImageFilter::makeWithFragmentShaderFromFile(folder.path("Missing"))->canRender());
    EXPECT_THAT(log.text(), testing::HasSubstr("Missing"));
}

TEST_F(ContextTest, BlocksRunInlineOnTheQueueAndInOrderElsewhere)
{
    std::vector<int> order;
    runAsynchronouslyOnVideoProcessingQueue([&] {
        runAsynchronouslyOnVideoProcessingQueue([&] { order.push_back(1); });
        order.push_back(2);
        runSynchronouslyOnVideoProcessingQueue([&] { order.push_back(3); });
    });
    runAsynchronouslyOnContextQueue(GPUImageContext::sharedImageProcessingContext(), [&] { order.push_back(4); });
    EXPECT_EQ(valueFromVideoProcessingQueue([&] { return order; }), (std::vector{1, 2, 3, 4}));
}

TEST_F(ContextTest, ASecondContextDrawsBesideTheGraphAndSeesItsTextures)
{
    const auto kept = std::make_shared<GPUImageFilter>(paints("1.0"));
    kept->useNextFrameForImageCapture();
    m_source->addTarget(kept);
    m_source->push({1, 1}, {}, second(1));
    GPUImageContext own;
    onQueue([&] {
        glFinish();
        own.useSharegroup(GPUImageContext::sharedImageProcessingContext().context()->sharegroup());
    });
    const auto draw = [&](const char* color) {
        EXPECT_TRUE(contextOfCurrentQueue() == &own && !isOnVideoProcessingQueue());
        own.setContextShaderProgram(linkedProgram(own, kVertex, paints(color), {"position", "inputTextureCoordinate"}));
        GLuint framebuffer = 0;
        glGenFramebuffers(1, &framebuffer);
        glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
        const GLuint texture = kept->framebufferForOutput()->texture();
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture, 0);
        glViewport(0, 0, 1, 1);
        glEnableVertexAttribArray(0);
        glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, kGPUImageQuadVertices.data());
        glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
        glFinish();
        glDeleteFramebuffers(1, &framebuffer);
    };
    std::thread beside([&] {
        for (int i = 0; i < 50; ++i)
            runSynchronouslyOnContextQueue(own, [&] { draw(i < 49 ? "1.0" : "0.0, 1.0, 0.0, 1.0"); });
    });
    for (int i = 0; i < 50; ++i) {
        EXPECT_TRUE(imagesMatch(std::make_shared<GPUImageFilter>()->newCGImageByFilteringCGImage(chartPicture(9, 5)),
                                chartPicture(9, 5)));
    }
    beside.join();
    EXPECT_EQ(pixelAt(kept->newCGImageFromCurrentlyProcessedOutput(), 0, 0), (Rgba{0, 255, 0, 255}));
}

TEST_F(ContextTest, QueuesThatCallEachOtherRunAtOnceOnTheirOwnThreads)
{
    GPUImageContext own;
    std::vector<const GPUImageContext*> order;
    const auto note = [&] { order.push_back(contextOfCurrentQueue()); };
    runSynchronouslyOnContextQueue(own, [&] {
        onQueue([&] {
            note();
            runSynchronouslyOnContextQueue(own, [&] {
                note();
                onQueue(note);
            });
            runSynchronouslyOnContextQueue(own, note);
        });
        // Framebuffers are the shared context's, wherever they are asked for.
        EXPECT_TRUE(GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize({2, 2}, false)->texture() != 0);
        EXPECT_THROW(onQueue([] { throw std::runtime_error("from there"); }), std::runtime_error);
    });
    const GPUImageContext* const shared = &GPUImageContext::sharedImageProcessingContext();
    EXPECT_THAT(order, testing::ElementsAre(shared, &own, shared, &own));
}

} // namespace
} // namespace lamina::test
