#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/FilterProgram.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/core/ShaderReads.h"
#include "gpu/sources/GPUImagePicture.h"

namespace lamina::test {
namespace {

class SamplingTest : public GraphFixture {
protected:
    /// How the texture that the filter reads from the unit was sampled at the last draw.
    static GLint filterAt(int unit)
    {
        return valueFromVideoProcessingQueue([=] {
            GLint filter = 0;
            glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
            glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, &filter);
            return filter;
        });
    }
};

constexpr int kFirstUnit = 2;

TEST_F(SamplingTest, WhereAProgramReadsIsToldByItsTexts)
{
    using enum ShaderReads;
    const std::string plain = kGPUImageVertexShaderString;
    const std::string head = "varying highp vec2 textureCoordinate; uniform sampler2D inputImageTexture;\n";
    const std::string read = "texture2D(inputImageTexture, textureCoordinate)";
    const auto body = [](const std::string& expression) {
        return "void main() { gl_FragColor = " + expression + "; }";
    };
    const auto moved = [&](const std::string& from, const std::string& to) {
        return std::string(plain).replace(plain.find(from), from.size(), to);
    };
    struct Case {
        std::string vertex;
        std::string fragment;
        ShaderReads reads;
        std::size_t slot = 0;
    };
    const Case cases[] = {
        {plain, kGPUImagePassthroughFragmentShaderString, InPlace},
        {plain, head + body("vec4(textureCoordinate.x * 0.5)"), InPlace},
        {plain, head + "// texture2D(inputImageTexture, else)\n" + body(read), InPlace},
        {plain, head + body("texture2D(inputImageTexture, textureCoordinate * 2.0)"), Anywhere},
        {plain, head + body("texture2D(inputImageTexture, textureCoordinate, 1.0)"), Anywhere},
        {plain, head + body(read + " + texture2D(inputImageTexture, vec2(0.5))"), Anywhere},
        {plain, head + "#define AT textureCoordinate * 2.0\n" + body(read), Anywhere},
        {plain,
         head + "vec4 of(sampler2D s, vec2 p) { return texture2D(s, p); }\n" + body("of(inputImageTexture, vec2(0.1))"),
         Anywhere},
        {plain, head + "vec4 at(vec2 textureCoordinate) { return " + read + "; }\n" + body("at(vec2(0.1))"), Anywhere},
        {plain, head + "varying vec2 left;\n" + body(read + " + texture2D(inputImageTexture, left)"), AtVaryings},
        {moved("inputTextureCoordinate.xy", "inputTextureCoordinate.xy * 2.0"), head + body(read), AtVaryings},
        {moved("= position", "= position * 0.5"), head + body(read), AtVaryings},
        {moved("inputTextureCoordinate.xy;", "inputTextureCoordinate.xy; textureCoordinate += 0.1;"), head + body(read),
         AtVaryings},
        {kGPUImageTwoInputTextureVertexShaderString,
         "varying vec2 textureCoordinate2; uniform sampler2D inputImageTexture2;" +
             body("texture2D(inputImageTexture2, textureCoordinate2)"),
         InPlace, 1},
        {kGPUImageTwoInputTextureVertexShaderString,
         head + "uniform sampler2D inputImageTexture2;" + body("texture2D(inputImageTexture2, textureCoordinate)"),
         Anywhere, 1},
    };
    for (const Case& one : cases)
        EXPECT_EQ(shaderReads(one.vertex, one.fragment, one.slot), one.reads) << one.fragment << one.vertex;
}

TEST_F(SamplingTest, OneTexelIsReadWhereEachPixelHasItsOwn)
{
    const auto filter = multiplying(1);
    m_source->addTarget(filter);
    const auto readsOf = [&](GPUImageRotationMode rotation, CGSize forced) {
        filter->forceProcessingAtSize(forced);
        m_source->setRotation(rotation);
        m_source->push(noisePicture(6, 4, CGImageAlphaInfo::Last), second(1));
        return filterAt(kFirstUnit);
    };
    for (int rotation = kGPUImageNoRotation; rotation <= kGPUImageRotate180; ++rotation)
        EXPECT_EQ(readsOf(static_cast<GPUImageRotationMode>(rotation), {}), GL_NEAREST) << rotation;
    EXPECT_EQ(readsOf(kGPUImageNoRotation, {12, 8}), GL_LINEAR) << "the same texture, drawn larger";
    EXPECT_EQ(readsOf(kGPUImageRotateLeft, {6, 4}), GL_LINEAR);
    EXPECT_EQ(readsOf(kGPUImageNoRotation, {6.25, 4}), GL_LINEAR) << "a step is less than a texel";
}

TEST_F(SamplingTest, EachReaderOfATextureHasItsOwnWay)
{
    const CGImage picture = noisePicture(16, 8, CGImageAlphaInfo::Last);
    for (const bool smooth : {false, true}) {
        const auto alone = [&](bool beside) {
            GPUImagePicture source(picture, {.smoothlyScaleOutput = smooth});
            const auto same = multiplying(1);
            const auto smaller = multiplying(1);
            smaller->forceProcessingAtSize({5, 3});
            if (beside)
                source.addTarget(same);
            source.addTarget(smaller);
            const auto consumer = consumerOf(*smaller);
            for (int push = 0; push < 2; ++push)
                source.processImage();
            onQueue([] {});
            return consumer->last().pixels;
        };
        EXPECT_TRUE(imagesMatch(alone(true), alone(false))) << smooth;
    }
}

TEST_F(SamplingTest, ATableIsInterpolatedHoweverItsSize)
{
    const auto filter = std::make_shared<GPUImageTwoInputFilter>(R"(
        varying highp vec2 textureCoordinate; varying highp vec2 textureCoordinate2;
        uniform sampler2D inputImageTexture; uniform sampler2D inputImageTexture2;
        void main() { gl_FragColor = texture2D(inputImageTexture2, texture2D(inputImageTexture, textureCoordinate).rg); })");
    const auto table = std::make_shared<FrameSource>();
    m_source->addTarget(filter, 0);
    table->addTarget(filter, 1);
    m_source->push({4, 4}, {}, second(1));
    table->push({4, 4}, {}, second(1));
    EXPECT_EQ(filterAt(kFirstUnit), GL_NEAREST);
    EXPECT_EQ(filterAt(kFirstUnit + 1), GL_LINEAR);
}

} // namespace
} // namespace lamina::test
