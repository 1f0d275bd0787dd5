#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/sources/GPUImagePicture.h"

namespace lamina::test {
namespace {

class FilteringTest : public GraphFixture {
protected:
    std::shared_ptr<GPUImageFilter> m_filter = std::make_shared<GPUImageFilter>();
};

TEST_F(FilteringTest, CarriesScaleOrientationAndEveryByteAroundTheWork)
{
    for (const auto alpha :
         {CGImageAlphaInfo::Last, CGImageAlphaInfo::NoneSkipLast, CGImageAlphaInfo::PremultipliedLast}) {
        for (const IntSize size : {IntSize{1, 1}, {17, 3}, {64, 64}, {1, 255}}) {
            const CGImage pixels = noisePicture(size.width, size.height, alpha);
            const UIImage out = m_filter->imageByFilteringImage(UIImage(pixels, 2.5, UIImageOrientation::Right));
            EXPECT_TRUE(imagesMatch(out.cgImage(), pixels));
            EXPECT_EQ(out.cgImage().alphaInfo(), CGImageAlphaInfo::Last) << "whatever went up";
            EXPECT_EQ(out.scale(), 2.5);
            EXPECT_EQ(out.imageOrientation(), UIImageOrientation::Right);
        }
    }
}

TEST_F(FilteringTest, WorksOnTheQueueItselfAndNothingComesOfNothing)
{
    onQueue([&] {
        EXPECT_TRUE(imagesMatch(m_filter->newCGImageByFilteringCGImage(chartPicture(4, 4)), chartPicture(4, 4)));
    });
    EXPECT_FALSE(m_filter->imageByFilteringImage(UIImage()));
    EXPECT_TRUE(m_filter->newCGImageByFilteringCGImage(chartPicture(2, 2))) << "and the filter goes on";
    EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount());
}

TEST_F(FilteringTest, AStillInTheSecondSlotServesManyPictures)
{
    const auto both = std::make_shared<GPUImageTwoInputFilter>(R"(
        varying highp vec2 textureCoordinate; varying highp vec2 textureCoordinate2;
        uniform sampler2D inputImageTexture; uniform sampler2D inputImageTexture2;
        void main() {
            gl_FragColor = vec4(texture2D(inputImageTexture, textureCoordinate).rg,
                                texture2D(inputImageTexture2, textureCoordinate2).b, 1.0);
        })");
    const auto second = std::make_shared<GPUImagePicture>(solidPicture(2, 2, {0, 0, 77, 255}));
    second->addTarget(both, 1);
    for (const std::uint8_t red : {std::uint8_t{5}, std::uint8_t{6}}) {
        second->processImage();
        EXPECT_TRUE(imagesMatch(both->newCGImageByFilteringCGImage(solidPicture(3, 2, {red, 9, 8, 255})),
                                solidPicture(3, 2, {red, 9, 77, 255})));
    }
}

} // namespace
} // namespace lamina::test
