#include "GraphFixture.h"
#include "LogCapture.h"
#include "TestPictures.h"
#include "gpu/core/GPUImageTwoPassFilter.h"

namespace lamina::test {
namespace {

using TwoPassTest = GraphFixture;

TEST_F(TwoPassTest, ClearsToTheBackgroundFirstAndToOpaqueBlackThen)
{
    const auto filter = std::make_shared<GPUImageTwoPassFilter>(
        R"(varying highp vec2 textureCoordinate;
           void main() { if (textureCoordinate.x < 0.5) discard; gl_FragColor = vec4(0.0, 1.0, 0.0, 0.4); })",
        R"(varying highp vec2 textureCoordinate; uniform sampler2D inputImageTexture;
           void main() { if (textureCoordinate.y < 0.5) discard;
                         gl_FragColor = texture2D(inputImageTexture, textureCoordinate); })");
    filter->setBackgroundColorRed(1, 0, 0, 0.2F);
    EXPECT_TRUE(
        imagesMatch(filter->newCGImageByFilteringCGImage(solidPicture(2, 2, {})), makePicture(2, 2, [](int x, int y) {
                        if (y == 0)
                            return Rgba{0, 0, 0, 255};
                        return x == 0 ? Rgba{255, 0, 0, 51} : Rgba{0, 255, 0, 102};
                    })));
}

TEST_F(TwoPassTest, ValuesOfEqualLocationsStayWithTheirPass)
{
    /// The same uniform, and so the same location, in both programs.
    struct TwoFactors : GPUImageTwoPassFilter {
        TwoFactors(const std::string& first, const std::string& second)
            : GPUImageTwoPassFilter(first, second)
        {
            setFloat(0.5F, secondUniformIndex("factor"), m_secondFilterProgram);
            setFloat(0.8F, uniformIndex("factor"), m_filterProgram);
        }
    };
    const auto shader = [](const char* channel) {
        return std::string(
                   "precision highp float; varying vec2 textureCoordinate; uniform sampler2D inputImageTexture;"
                   "uniform float factor; void main() { vec4 c = texture2D(inputImageTexture, textureCoordinate);") +
               "c." + channel + " *= factor; gl_FragColor = c; }";
    };
    const auto filter = std::make_shared<TwoFactors>(shader("r"), shader("g"));
    m_source->addTarget(filter);
    const auto consumer = consumerOf(*filter);
    for (int i = 0; i < 2; ++i) {
        m_source->push({2, 2}, {100, 100, 100, 255}, second(i));
        EXPECT_TRUE(imagesMatch(consumer->last().pixels, solidPicture(2, 2, {80, 50, 100, 255})));
    }
}

TEST_F(TwoPassTest, EitherShaderFailingLeavesNoPicture)
{
    const LogCapture log;
    for (const bool firstFails : {true, false}) {
        const std::string shaders[] = {"void main() { gl_FragColor = nonsense; }",
                                       kGPUImagePassthroughFragmentShaderString};
        const auto filter = std::make_shared<GPUImageTwoPassFilter>(shaders[firstFails ? 0 : 1], shaders[firstFails]);
        EXPECT_FALSE(filter->newCGImageByFilteringCGImage(solidPicture(2, 2, {})));
        m_source->addTarget(filter);
        m_source->push({2, 2}, {}, second(1));
        m_source->removeAllTargets();
    }
    EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount()) << "counts are given back all the same";
}

} // namespace
} // namespace lamina::test
