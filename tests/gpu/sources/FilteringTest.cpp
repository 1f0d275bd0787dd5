#include "GraphFixture.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/sources/GPUImagePicture.h"

#include <chrono>

namespace lamina::test {
namespace {

class FilteringTest : public GraphFixture {
protected:
    std::shared_ptr<GPUImageFilter> m_filter = std::make_shared<GPUImageFilter>();
    template <class Body>
    static double secondsOf(const Body& body)
    {
        const auto start = std::chrono::steady_clock::now();
        body();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }
};

TEST_F(FilteringTest, CarriesScaleAndOrientationAroundTheWork)
{
    const CGImage pixels = distinctPicture(5, 3);
    for (const auto orientation :
         {UIImageOrientation::Up, UIImageOrientation::Right, UIImageOrientation::DownMirrored}) {
        const UIImage out = m_filter->imageByFilteringImage(UIImage(pixels, 2.5, orientation));
        EXPECT_EQ(out.scale(), 2.5);
        EXPECT_EQ(out.imageOrientation(), orientation);
        EXPECT_TRUE(samePixels(out.cgImage(), pixels)) << "the pixels as they are stored";
    }
}

TEST_F(FilteringTest, ChangesNoByteOnTheDirectPath)
{
    for (const auto alpha :
         {CGImageAlphaInfo::Last, CGImageAlphaInfo::NoneSkipLast, CGImageAlphaInfo::PremultipliedLast}) {
        for (const IntSize size : {IntSize{1, 1}, {17, 3}, {64, 64}, {1, 255}}) {
            const CGImage source = distinctPicture(size.width, size.height);
            CGImageLayout layout = source.layout();
            layout.bitmapInfo = bitmapInfo(alpha);
            PixelBuffer bytes = PixelBuffer::allocate(layout.byteCount());
            std::copy(source.bytes().begin(), source.bytes().end(), bytes.data());
            const CGImage out = m_filter->newCGImageByFilteringCGImage(CGImage::make(layout, std::move(bytes)));
            EXPECT_TRUE(samePixels(out, source));
            // Whatever went up is read back as straight alpha.
            EXPECT_EQ(out.alphaInfo(), CGImageAlphaInfo::Last);
        }
    }
}

TEST_F(FilteringTest, WorksOnTheQueueItself)
{
    onQueue([&] {
        EXPECT_TRUE(samePixels(m_filter->newCGImageByFilteringCGImage(distinctPicture(4, 4)), distinctPicture(4, 4)));
    });
}

TEST_F(FilteringTest, NothingComesOfNothing)
{
    EXPECT_LT(secondsOf([&] {
                  EXPECT_FALSE(m_filter->imageByFilteringImage(UIImage()));
                  EXPECT_FALSE(m_filter->newCGImageByFilteringCGImage(CGImage()));
              }),
              1);
    EXPECT_TRUE(m_filter->newCGImageByFilteringCGImage(distinctPicture(2, 2))) << "and the filter goes on";
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
    const auto second = std::make_shared<GPUImagePicture>(plainPicture(2, 2, {0, 0, 77, 255}));
    second->addTarget(both, 1);
    for (const std::uint8_t red : {std::uint8_t{5}, std::uint8_t{6}}) {
        second->processImage();
        EXPECT_TRUE(samePixels(both->newCGImageByFilteringCGImage(plainPicture(3, 2, {red, 9, 8, 255})),
                               plainPicture(3, 2, {red, 9, 77, 255})));
    }
}

} // namespace
} // namespace lamina::test
