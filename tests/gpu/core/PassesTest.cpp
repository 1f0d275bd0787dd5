#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/FilterProgram.h"
#include "gpu/core/GPUImageTwoInputFilter.h"

#include <array>
#include <cstdint>

namespace lamina::test {
namespace {

using PassesTest = GraphFixture;

/// Adds (1 + the pass's number) / 255 to red in each pass, and slot 1's green to green.
class Adding : public GPUImageTwoInputFilter {
public:
    explicit Adding(int passes, CGSize smallest = {})
        : GPUImageTwoInputFilter(R"(precision highp float; varying vec2 textureCoordinate, textureCoordinate2;
            uniform sampler2D inputImageTexture, inputImageTexture2; uniform float amount;
            void main() { vec4 own = texture2D(inputImageTexture, textureCoordinate);
                float green = texture2D(inputImageTexture2, textureCoordinate2).g;
                gl_FragColor = own + vec4(amount, green, 0.0, 0.0); })")
        , m_passes(passes)
        , m_smallest(smallest)
    {
    }
    void setUniformsForProgramAtIndex(int index) override
    {
        GPUImageTwoInputFilter::setUniformsForProgramAtIndex(index);
        glUniform1f(uniformIndex("amount"), static_cast<float>(index + 1) / 255);
    }
    CGSize outputFrameSize() const override { return sizeOfPass(m_passes - 1); }

protected:
    int passCount() const override { return m_passes; }
    bool everyPassReadsInputs() const override { return true; }
    CGSize sizeOfPass(int index) const override
    {
        return m_smallest.width > 0 && index == m_passes - 1 ? m_smallest : sizeOfFBO();
    }

private:
    int m_passes;
    CGSize m_smallest;
};

TEST_F(PassesTest, EachDrawsWhatTheOneBeforeDrewIntoOneOfTwo)
{
    struct Case {
        int passes;
        CGSize smallest;
        Rgba wanted;
        std::size_t living; ///< the two pictures', those that take turns, and the last where it has a size of its own
    };
    for (const Case& one : std::initializer_list<Case>{{0, {}, {11, 20, 30, 255}, 3},
                                                       {1, {}, {11, 20, 30, 255}, 3},
                                                       {5, {}, {25, 60, 30, 255}, 4},
                                                       {4, {2, 1}, {20, 50, 30, 255}, 5}}) {
        SCOPED_TRACE(one.passes);
        emptyPool();
        const auto filter = std::make_shared<Adding>(one.passes, one.smallest);
        FrameSource other;
        m_source->addTarget(filter, 0);
        other.addTarget(filter, 1);
        const auto consumer = consumerOf(*filter);
        for (int frame = 0; frame < 3; ++frame) {
            if (frame == 2)
                filter->useNextFrameForImageCapture();
            other.push({4, 3}, {0, 10, 0, 0}, second(frame));
            m_source->push({4, 3}, {10, 10, 30, 255}, second(frame));
            const int width = one.smallest.width > 0 ? 2 : 4;
            EXPECT_TRUE(imagesMatch(consumer->last().pixels, solidPicture(width, width == 2 ? 1 : 3, one.wanted)));
        }
        EXPECT_EQ(GPUImageFramebufferCache::livingCount(), one.living);
        EXPECT_EQ(idleFramebuffers(), one.living - 1) << "the last is held";
        EXPECT_TRUE(filter->newCGImageFromCurrentlyProcessedOutput());
        EXPECT_EQ(idleFramebuffers(), one.living);
        m_source->removeAllTargets();
    }
}

/// Draws three points, two of them in one place: columns and rows in 127ths of clip space, beside what is passed over.
class Points : public GPUImageFilter {
public:
    explicit Points(bool add)
        : GPUImageFilter("attribute vec4 position; void main() { gl_Position = position; gl_PointSize = 1.0; }",
                         "void main() { gl_FragColor = vec4(0.2, 0.4, 0.0, 1.0); }")
        , m_add(add)
    {
    }
    void renderToTextureWithVertices(const QuadCoordinates&, const QuadCoordinates&) override
    {
        m_outputFramebuffer = beginOutput(m_backgroundColor);
        static const std::array<std::int8_t, 12> kPlaces{-96, -96, 0, 0, -96, -96, 0, 0, 32, 96, 0, 0};
        drawVertices(firstPass(), nullptr, {GL_POINTS, 3, {kPlaces.data(), 2, GL_BYTE, GL_TRUE, 4}, {}, m_add});
        unlockInputs();
    }

private:
    bool m_add;
};

TEST_F(PassesTest, VerticesOfOnesOwnLeaveTheStateAsItWas)
{
    for (const bool add : {false, true}) {
        const auto points = std::make_shared<Points>(add);
        const auto after = multiplying(1);
        m_source->addTarget(points);
        points->addTarget(after);
        const auto consumer = consumerOf(*after);
        m_source->push({4, 4}, {1, 2, 3, 4}, second(1));
        const Rgba twice = add ? Rgba{102, 204, 0, 255} : Rgba{51, 102, 0, 255};
        EXPECT_TRUE(imagesMatch(
            consumer->last().pixels, makePicture(4, 4, [&](int x, int y) {
                return x == 0 && y == 0 ? twice : x == 2 && y == 3 ? Rgba{51, 102, 0, 255} : Rgba{0, 0, 0, 0};
            })));
        m_source->removeAllTargets();
    }
}

} // namespace
} // namespace lamina::test
