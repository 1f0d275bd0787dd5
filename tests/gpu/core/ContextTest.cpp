#include "GLCalls.h"
#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/FilterProgram.h"
#include "gpu/core/GPUImageContext.h"
#include "platform/base/CMTime.h"
#include "platform/base/MemoryWarning.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <sstream>
#include <thread>

namespace lamina::test {
namespace {

const std::string kVertex = kGPUImageVertexShaderString;

std::string paints(const char* color)
{
    return std::string("precision mediump float; void main() { gl_FragColor = vec4(") + color + "); }";
}

class ContextTest : public GraphFixture {};

TEST_F(ContextTest, ReducesSizesToTheTextureLimit)
{
    struct Case {
        CGSize size;
        CGSize fitted;
        double limit = 4096;
    };
    for (const auto& [size, fitted, limit] : std::array{
             Case{{4095, 4095}, {4095, 4095}},
             Case{{5000, 2500}, {4096, 2048}},
             Case{{2500, 5000}, {2048, 4096}},
             Case{{8192, 8192}, {4096, 4096}},
             Case{{4096, 17}, {4096, 17}},
             Case{{4097, 1}, {4096, 4096.0 / 4097}}, // not rounded
             Case{{0, 0}, {0, 0}},
             Case{{5, 4}, {0, 0}, 0},
         })
        EXPECT_EQ(GPUImageContext::sizeThatFits(size, limit), fitted) << size.width << "x" << size.height;
    const int device = GPUImageContext::maximumTextureSizeForThisDevice();
    for (const auto& [limit, wanted] : {std::pair{64, 64}, {device + 1, device}, {0, device}}) {
        GPUImageContext::limitTextureSize(limit);
        EXPECT_EQ(GPUImageContext::maximumTextureSizeForThisDevice(), wanted) << limit;
    }
}

TEST_F(ContextTest, KnowsTheDevice)
{
    // What OpenGL ES 2.0 promises at the least.
    EXPECT_GE(GPUImageContext::maximumTextureSizeForThisDevice(), 64);
    EXPECT_GE(GPUImageContext::maximumTextureUnitsForThisDevice(), 8);
    EXPECT_GE(GPUImageContext::maximumVaryingVectorsForThisDevice(), 8);

    onQueue([] {
        GPUImageContext::useImageProcessingContext();
        std::istringstream names(reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS)));
        for (std::string name; names >> name;)
            EXPECT_TRUE(GPUImageContext::deviceSupportsOpenGLESExtension(name)) << name;
    });
    EXPECT_FALSE(GPUImageContext::deviceSupportsOpenGLESExtension("GL_EXT_text")) << "a part of a name";
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
        EXPECT_EQ(programsMadeFor(kVertex, paints("0.125")), 0);
        EXPECT_EQ(programsMadeFor(kVertex, paints("0.125 ")), 1);
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

TEST_F(ContextTest, AttributesStandInTheOrderOfAddingAndAProgramIsBoundOnlyWhenAnotherIs)
{
    onQueue([] {
        const auto program =
            std::make_shared<GLProgram>("attribute vec4 a; attribute vec4 b; uniform float unused; uniform float used;"
                                        "void main() { gl_Position = a + b * used; }",
                                        paints("1.0"));
        for (const char* name : {"b", "a", "b"})
            program->addAttribute(name);
        EXPECT_EQ(program->attributeIndex("a"), 1U);
        EXPECT_EQ(program->attributeIndex("c"), GLProgram::kNotFound);
        EXPECT_FALSE(program->initialized());
        ASSERT_TRUE(program->link());
        EXPECT_TRUE(program->initialized());
        EXPECT_GE(program->uniformIndex("used"), 0);
        EXPECT_EQ(program->uniformIndex("unused"), -1);

        const GLCalls before = glCallsSoFar();
        for (const auto& next : {program, std::shared_ptr<GLProgram>(), program})
            GPUImageContext::setActiveShaderProgram(next);
        EXPECT_EQ((glCallsSoFar() - before).programChanges, 1);
        EXPECT_EQ(GPUImageContext::sharedImageProcessingContext().currentShaderProgram(), program);
        GLint name = 0;
        glGetIntegerv(GL_CURRENT_PROGRAM, &name);
        EXPECT_EQ(glGetAttribLocation(static_cast<GLuint>(name), "a"), 1) << "GL agrees";
    });
}

TEST_F(ContextTest, AShaderThatDoesNotCompileLeavesThreeLinesAndNoPicture)
{
    struct Case {
        const char* vertex;
        const char* fragment;
        const char* failure;
    };
    for (const auto& [vertex, fragment, failure] : std::array{
             Case{kGPUImageVertexShaderString, "void main() { gl_FragColor = nonsense; }",
                  "Failed to compile fragment shader"},
             Case{"void main() { gl_Position = nonsense; }", kGPUImagePassthroughFragmentShaderString,
                  "Failed to compile vertex shader"},
             // Each compiles; together they don't link.
             Case{kGPUImageVertexShaderString,
                  "precision mediump float; varying vec3 lost; void main() { gl_FragColor = vec4(lost, 1.0); }",
                  "Program link log: "},
         }) {
        SCOPED_TRACE(fragment);
        LogCapture log;
        const auto filter = std::make_shared<GPUImageFilter>(vertex, fragment);
        EXPECT_FALSE(filter->canRender());
        EXPECT_THAT(log.text(), testing::HasSubstr(failure));
        EXPECT_THAT(log.text(), testing::ContainsRegex("Program link log: .*\nFragment shader compile log: "));
        EXPECT_THAT(log.text(), testing::HasSubstr("Vertex shader compile log: "));
        EXPECT_FALSE(filter->newCGImageByFilteringCGImage(chartPicture(4, 3)));
        FrameSource source;
        source.addTarget(filter);
        filter->useNextFrameForImageCapture();
        source.push({4, 3}, {}, kCMTimeZero);
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
    const auto filter = GPUImageFilter::makeWithFragmentShaderFromFile(folder.path("Green"));
    EXPECT_TRUE(
        imagesMatch(filter->newCGImageByFilteringCGImage(chartPicture(3, 2)), solidPicture(3, 2, {0, 255, 0, 255})));
    onQueue([&] {
        EXPECT_TRUE(GLProgram::makeWithVertexShaderFilename(folder.path("Corners"), folder.path("Green"))->link());
        EXPECT_TRUE(GLProgram::makeWithVertexShaderString(kVertex, folder.path("Green"))->link());
    });
    LogCapture log;
    EXPECT_FALSE(GPUImageFilter::makeWithFragmentShaderFromFile(folder.path("Missing"))->canRender());
    EXPECT_THAT(log.text(), testing::HasSubstr("Missing"));
}

TEST_F(ContextTest, BlocksRunInlineOnTheQueueAndInOrderElsewhere)
{
    EXPECT_FALSE(isOnVideoProcessingQueue());
    std::vector<int> order;
    runAsynchronouslyOnVideoProcessingQueue([&] {
        EXPECT_TRUE(isOnVideoProcessingQueue());
        runAsynchronouslyOnVideoProcessingQueue([&] { order.push_back(1); });
        order.push_back(2);
        runSynchronouslyOnVideoProcessingQueue([&] { order.push_back(3); });
    });
    runAsynchronouslyOnContextQueue(GPUImageContext::sharedImageProcessingContext(), [&] { order.push_back(4); });
    EXPECT_EQ(valueFromVideoProcessingQueue([&] { return order; }), (std::vector{1, 2, 3, 4}));
}

TEST_F(ContextTest, AContextOfOnesOwnHasItsOwnQueue)
{
    GPUImageContext own;
    runSynchronouslyOnContextQueue(own, [&] {
        EXPECT_TRUE(isOnVideoProcessingQueue() && own.useAsCurrentContext());
        EXPECT_EQ(EAGLContext::currentContext(), own.context());
    });
    onQueue([&] {
        EXPECT_TRUE(GPUImageContext::useImageProcessingContext());
        EXPECT_NE(EAGLContext::currentContext(), own.context());
    });
}

} // namespace
} // namespace lamina::test
