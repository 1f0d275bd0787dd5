#include "GLCalls.h"
#include "GraphFixture.h"
#include "gpu/core/FilterProgram.h"
#include "gpu/core/GPUImageContext.h"

#include <array>
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
    };
    constexpr double kLimit = 4096;
    for (const auto& [size, fitted] : std::array{
             Case{{4095, 4095}, {4095, 4095}},
             Case{{5000, 2500}, {4096, 2048}},
             Case{{2500, 5000}, {2048, 4096}},
             Case{{8192, 8192}, {4096, 4096}},
             Case{{4096, 17}, {4096, 17}},
             Case{{17, 4096}, {17, 4096}},
             Case{{4097, 1}, {4096, 4096.0 / 4097}}, // not rounded
             Case{{0, 0}, {0, 0}},
         }) {
        const CGSize got = GPUImageContext::sizeThatFits(size, kLimit);
        EXPECT_DOUBLE_EQ(got.width, fitted.width) << size.width << "x" << size.height;
        EXPECT_DOUBLE_EQ(got.height, fitted.height) << size.width << "x" << size.height;
    }
}

TEST_F(ContextTest, NothingFitsWithoutALimit)
{
    for (const CGSize size : {CGSize{0, 0}, CGSize{5, 4}})
        EXPECT_EQ(GPUImageContext::sizeThatFits(size, 0), CGSize{});
}

TEST_F(ContextTest, TheTextureLimitCanBeLowered)
{
    const int device = GPUImageContext::maximumTextureSizeForThisDevice();
    GPUImageContext::limitTextureSize(64);
    EXPECT_EQ(GPUImageContext::maximumTextureSizeForThisDevice(), 64);
    EXPECT_EQ(GPUImageContext::sizeThatFitsWithinATextureForSize({128, 32}), (CGSize{64, 16}));
    GPUImageContext::limitTextureSize(0);
    EXPECT_EQ(GPUImageContext::maximumTextureSizeForThisDevice(), device);
    GPUImageContext::limitTextureSize(device + 1);
    EXPECT_EQ(GPUImageContext::maximumTextureSizeForThisDevice(), device) << "no limit is above the device's own";
    GPUImageContext::limitTextureSize(0);
}

TEST_F(ContextTest, KnowsTheDevice)
{
    ASSERT_TRUE(GPUImageContext::availability().ok());
    // What OpenGL ES 2.0 promises at the least.
    EXPECT_GE(GPUImageContext::maximumTextureSizeForThisDevice(), 64);
    EXPECT_GE(GPUImageContext::maximumTextureUnitsForThisDevice(), 8);
    EXPECT_GE(GPUImageContext::maximumVaryingVectorsForThisDevice(), 8);

    std::string all;
    onQueue([&] {
        GPUImageContext::useImageProcessingContext();
        all = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    });
    std::istringstream list(all);
    std::string name;
    while (list >> name)
        EXPECT_TRUE(GPUImageContext::deviceSupportsOpenGLESExtension(name)) << name;
    EXPECT_FALSE(GPUImageContext::deviceSupportsOpenGLESExtension("GL_EXT_text")) << "a part of a name";
    EXPECT_FALSE(GPUImageContext::deviceSupportsOpenGLESExtension(""));
    EXPECT_EQ(GPUImageContext::deviceSupportsRedTextures(), all.find("GL_EXT_texture_rg") != std::string::npos);
}

TEST_F(ContextTest, ProgramsAreMadeOncePerText)
{
    onQueue([&] {
        GPUImageContext& context = GPUImageContext::sharedImageProcessingContext();
        const auto first = context.programForVertexShaderString(kVertex, paints("0.125"));
        const GLCalls before = glCallsSoFar();
        EXPECT_EQ(context.programForVertexShaderString(kVertex, paints("0.125")), first);
        EXPECT_EQ((glCallsSoFar() - before).objectsMade(), 0);
        EXPECT_NE(context.programForVertexShaderString(kVertex, paints("0.125 ")), first);
        EXPECT_NE(context.programForVertexShaderString(kVertex + " ", paints("0.125")), first);
    });
}

TEST_F(ContextTest, AProgramIsBoundOnlyWhenAnotherIs)
{
    onQueue([&] {
        const auto red = linkedProgram(kVertex, paints("0.25"), {"position", "inputTextureCoordinate"});
        const auto blue = linkedProgram(kVertex, paints("0.5"), {"position", "inputTextureCoordinate"});
        ASSERT_TRUE(red && blue);
        GPUImageContext::setActiveShaderProgram(red);
        const GLCalls before = glCallsSoFar();
        GPUImageContext::setActiveShaderProgram(red);
        GPUImageContext::setActiveShaderProgram(nullptr);
        EXPECT_EQ((glCallsSoFar() - before).programChanges, 0);
        EXPECT_EQ(GPUImageContext::sharedImageProcessingContext().currentShaderProgram(), red);
        GPUImageContext::setActiveShaderProgram(blue);
        GPUImageContext::setActiveShaderProgram(red);
        EXPECT_EQ((glCallsSoFar() - before).programChanges, 2);
    });
}

TEST_F(ContextTest, AttributesStandInTheOrderOfAdding)
{
    onQueue([&] {
        GLProgram program("attribute vec4 a; attribute vec4 b; uniform float unused; uniform float used;"
                          "void main() { gl_Position = a + b * used; }",
                          paints("1.0"));
        EXPECT_FALSE(program.initialized());
        program.addAttribute("b");
        program.addAttribute("a");
        program.addAttribute("b");
        EXPECT_EQ(program.attributeIndex("b"), 0U);
        EXPECT_EQ(program.attributeIndex("a"), 1U);
        EXPECT_EQ(program.attributeIndex("c"), GLProgram::kNotFound);
        ASSERT_TRUE(program.link());
        EXPECT_TRUE(program.initialized());
        EXPECT_GE(program.uniformIndex("used"), 0);
        EXPECT_EQ(program.uniformIndex("unused"), -1);
        EXPECT_EQ(program.uniformIndex("missing"), -1);

        // GL agrees on the locations.
        program.use();
        GLint name = 0;
        glGetIntegerv(GL_CURRENT_PROGRAM, &name);
        EXPECT_EQ(glGetAttribLocation(static_cast<GLuint>(name), "b"), 0);
        EXPECT_EQ(glGetAttribLocation(static_cast<GLuint>(name), "a"), 1);
        program.validate();
        glUseProgram(0);
        GPUImageContext::sharedImageProcessingContext().setCurrentShaderProgram(nullptr);
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
                  "precision mediump float; varying vec3 nobodyWritesIt; void main() { gl_FragColor = "
                  "vec4(nobodyWritesIt, 1.0); }",
                  ""},
         }) {
        SCOPED_TRACE(fragment);
        LogCapture log;
        const auto filter = std::make_shared<GPUImageFilter>(vertex, fragment);
        EXPECT_FALSE(filter->canRender());
        const auto lines = log.lines();
        ASSERT_GE(lines.size(), 3U);
        EXPECT_THAT(lines[lines.size() - 3], testing::StartsWith("Program link log: "));
        EXPECT_THAT(lines[lines.size() - 2], testing::StartsWith("Fragment shader compile log: "));
        EXPECT_THAT(lines[lines.size() - 1], testing::StartsWith("Vertex shader compile log: "));
        if (*failure != 0) {
            EXPECT_THAT(lines, testing::Contains(failure));
        }

        const auto asked = std::chrono::steady_clock::now();
        EXPECT_FALSE(filter->newCGImageByFilteringCGImage(distinctPicture(4, 3)));
        EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::seconds(1))
            << "nobody waits for what can't come";
        filter->setFloat(0.5F, "intensity");
    }
}

TEST_F(ContextTest, ShaderTextComesFromFiles)
{
    const TemporaryFolder folder;
    writeFile(folder.path("Green.fsh"), paints("0.0, 1.0, 0.0, 1.0"));
    const auto filter = GPUImageFilter::makeWithFragmentShaderFromFile(folder.path("Green"));
    ASSERT_TRUE(filter);
    EXPECT_TRUE(
        samePixels(filter->newCGImageByFilteringCGImage(distinctPicture(3, 2)), plainPicture(3, 2, {0, 255, 0, 255})));

    LogCapture log;
    const auto missing = GPUImageFilter::makeWithFragmentShaderFromFile(folder.path("Missing"));
    ASSERT_TRUE(missing);
    EXPECT_FALSE(missing->canRender());
    EXPECT_THAT(log.text(), testing::HasSubstr("Missing"));

    writeFile(folder.path("Corners.vsh"), kVertex);
    onQueue([&] {
        EXPECT_TRUE(GLProgram::makeWithVertexShaderFilename(folder.path("Corners"), folder.path("Green"))->link());
        EXPECT_TRUE(GLProgram::makeWithVertexShaderString(kVertex, folder.path("Green"))->link());
        EXPECT_FALSE(GLProgram::makeWithVertexShaderFilename(folder.path("Missing"), folder.path("Green"))->link());
    });
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
    bool ran = false;
    runSynchronouslyOnContextQueue(own, [&] {
        ran = isOnVideoProcessingQueue() && own.useAsCurrentContext();
        EXPECT_EQ(EAGLContext::currentContext(), own.context());
    });
    EXPECT_TRUE(ran);
    onQueue([&] {
        EXPECT_TRUE(GPUImageContext::useImageProcessingContext());
        EXPECT_EQ(EAGLContext::currentContext(), GPUImageContext::sharedImageProcessingContext().context());
    });
}

} // namespace
} // namespace lamina::test
