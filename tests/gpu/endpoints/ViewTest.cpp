#include "GLCalls.h"
#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/endpoints/GPUImageView.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/CanvasRenderer.h"
#include "platform/view/UIView.h"

#include <cstddef>
#include <thread>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

constexpr Rgba kRed{255, 0, 0, 255};
constexpr Rgba kGreen{0, 255, 0, 255};
constexpr Rgba kBlue{0, 0, 255, 255};
constexpr Rgba kWhite{255, 255, 255, 255};
constexpr Rgba kBlack{0, 0, 0, 255};

/// A window with a view in it, by both ways of drawing.
class ViewTest : public GraphFixture, public testing::WithParamInterface<bool> {
protected:
    void SetUp() override
    {
        GraphFixture::SetUp();
        GPUImageContext::setUsesKernels(GetParam());
        Clock::setShared(m_clock);
    }
    void TearDown() override
    {
        m_source->removeAllTargets();
        show(nullptr, 1);
        DispatchQueue::main().drain();
        Clock::setShared(nullptr);
        GPUImageContext::setUsesKernels(true);
        GraphFixture::TearDown();
    }

    /// At the end of the source, and seen.
    std::shared_ptr<GPUImageView> openView(const CGRect& frame, double scale = 1)
    {
        auto view = GPUImageView::make(frame);
        m_source->addTarget(view);
        show(view, scale);
        return view;
    }
    void show(std::shared_ptr<UIView> view, double scale)
    {
        m_window.reset();
        if (!view)
            return;
        m_window = std::make_unique<CanvasRenderer>(std::move(view), scale);
        m_window->render();
    }
    /// After all that comes by itself has come.
    CGImage seen()
    {
        do {
            onQueue([] {});
            DispatchQueue::main().drain();
        } while (!m_window->render().isEmpty());
        return m_window->image();
    }
    CGImage seenOf(const CGImage& frame)
    {
        m_source->push(frame, second(0));
        return seen();
    }

    const std::shared_ptr<ManualClock> m_clock = std::make_shared<ManualClock>();
    std::unique_ptr<CanvasRenderer> m_window;
};

INSTANTIATE_TEST_SUITE_P(Roads, ViewTest, testing::Bool(), [](const auto& kernels) {
    return kernels.param ? std::string("Processor") : std::string("GL");
});

TEST_P(ViewTest, EveryRotationIsUprightInTheWindow)
{
    constexpr std::array kAsOrientations{UIImageOrientation::Up,
                                         UIImageOrientation::Left,
                                         UIImageOrientation::Right,
                                         UIImageOrientation::DownMirrored,
                                         UIImageOrientation::UpMirrored,
                                         UIImageOrientation::LeftMirrored,
                                         UIImageOrientation::RightMirrored,
                                         UIImageOrientation::Down};
    const CGImage chart = chartPicture(4, 3, CGImageAlphaInfo::NoneSkipLast);
    const auto view = openView({0, 0, 4, 3});
    for (int mode = 0; mode < 8; ++mode) {
        const CGImage upright =
            UIImage(chart, 1, kAsOrientations.at(static_cast<std::size_t>(mode))).upright().cgImage();
        view->setFrame({0, 0, double(upright.width()), double(upright.height())});
        m_clock->advance(1);
        m_source->setRotation(static_cast<GPUImageRotationMode>(mode));
        EXPECT_TRUE(imagesMatch(seenOf(chart), upright, 1)) << mode;
    }
    EXPECT_EQ(view->textureCoordinatesForRotation(kGPUImageNoRotation), (QuadCoordinates{0, 1, 1, 1, 0, 0, 1, 0}));
}

TEST_P(ViewTest, FramesFillTheViewByItsMode)
{
    struct Case {
        GPUImageFillMode mode;
        const char* top; ///< in words of eight pixels' first letters
        const char* middle;
    };
    const std::vector<Case> cases{{GPUImageFillMode::PreserveAspectRatio, "wwwwwwww", "rrbbggkk"},
                                  {GPUImageFillMode::PreserveAspectRatioAndFill, "bbbbgggg", "bbbbgggg"},
                                  {GPUImageFillMode::Stretch, "rrbbggkk", "rrbbggkk"}};
    const CGImage bands = makePicture(8, 4, [](int x, int) {
        return std::array{kRed, kBlue, kGreen, kBlack}.at(std::size_t(x) / 2);
    });
    const auto rowOf = [](const CGImage& picture, int y) {
        std::string row;
        for (int x = 0; x < picture.width(); ++x) {
            for (const auto& [letter, color] :
                 {std::pair{'r', kRed}, {'g', kGreen}, {'b', kBlue}, {'w', kWhite}, {'k', kBlack}})
                row += difference(pixelAt(picture, x, y), color) < 100 ? std::string(1, letter) : std::string();
        }
        return row;
    };
    const auto view = openView({0, 0, 8, 8});
    view->setBackgroundColorRed(1, 1, 1, 1);
    EXPECT_EQ(rowOf(seen(), 4), "wwwwwwww") << "before the first frame";
    for (const Case& wanted : cases) {
        view->setFillMode(wanted.mode);
        const CGImage picture = seenOf(bands);
        EXPECT_EQ(rowOf(picture, 1), wanted.top);
        EXPECT_EQ(rowOf(picture, 4), wanted.middle);
    }
}

TEST_P(ViewTest, BothRoadsScaleAlike)
{
    for (const auto& [frame, scale] : {std::pair{IntSize{13, 7}, 3.0}, std::pair{IntSize{61, 83}, 0.5}}) {
        for (const auto mode : {GPUImageFillMode::Stretch, GPUImageFillMode::PreserveAspectRatio,
                                GPUImageFillMode::PreserveAspectRatioAndFill}) {
            std::vector<CGImage> pictures;
            for (const bool kernels : {GetParam(), !GetParam()}) {
                GPUImageContext::setUsesKernels(kernels);
                emptyPool();
                m_source->removeAllTargets();
                openView({0, 0, 31, 22}, scale)->setFillMode(mode);
                pictures.push_back(seenOf(noisePicture(frame.width, frame.height, CGImageAlphaInfo::NoneSkipLast)));
            }
            EXPECT_TRUE(imagesMatch(pictures[0], pictures[1], 2)) << frame.width << ' ' << int(mode);
        }
    }
}

TEST_P(ViewTest, OneDrawableForASettledSizeAndNoneWithoutArea)
{
    const auto view = openView({0, 0, 8, 4});
    EXPECT_EQ(view->sizeInPixels(), view->maximumOutputSize());
    const CGImage frame = makePicture(8, 4, [](int x, int) { return x < 4 ? kRed : kBlue; });
    seenOf(frame);
    for (int width = 7; width > 2; --width) {
        view->setFrame({0, 0, 2.0 * width, double(width)});
        m_clock->advance(0.1);
        const CGImage picture = seenOf(frame);
        EXPECT_EQ(view->sizeInPixels(), (CGSize{8, 4})) << "still moving";
        EXPECT_TRUE(pixelMatches(picture, width - 2, 1, kRed, 8));
        EXPECT_TRUE(pixelMatches(picture, width + 1, 1, kBlue, 8));
    }
    m_clock->advance(0.5);
    seenOf(frame);
    EXPECT_EQ(view->sizeInPixels(), (CGSize{6, 3}));
    view->setFrame({0, 0, 0, 3});
    m_source->push(frame, second(1));
    seen();
    EXPECT_EQ(view->sizeInPixels(), (CGSize{0, 3}));
    EXPECT_EQ(view->maximumOutputSize(), (CGSize{0, 3}));
}

TEST_P(ViewTest, ASourceThatStandsStillIsSharpInTheNewSizeToo)
{
    const auto view = openView({0, 0, 2, 2});
    const CGImage chart = chartPicture(8, 8, CGImageAlphaInfo::NoneSkipLast);
    seenOf(chart);
    view->setFrame({0, 0, 8, 8});
    EXPECT_FALSE(imagesMatch(seen(), chart, 1)) << "still moving";
    m_clock->advance(0.5);
    EXPECT_TRUE(imagesMatch(seen(), chart, 1));
    m_source->removeAllTargets();
    onQueue([] {});
    EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount()) << "and goes with its source";
}

TEST_P(ViewTest, TheLatestFrameWinsAndNobodyWaits)
{
    const auto view = openView({0, 0, 2, 2});
    const auto pushElsewhere = [&](std::vector<Rgba> colors) {
        std::thread([&] {
            for (const Rgba& color : colors)
                m_source->push({2, 2}, color, second(0));
        }).join(); // while the main thread does nothing else
    };
    std::vector<Rgba> shown;
    const auto lookOn = [&] {
        shown.clear();
        do {
            shown.push_back(pixelAt(m_window->image(), 0, 0));
            onQueue([] {});
            DispatchQueue::main().drain();
        } while (!m_window->render().isEmpty());
    };
    pushElsewhere({kRed, kGreen, kWhite, kBlue});
    lookOn();
    EXPECT_EQ(shown, (std::vector{kBlack, kRed, kBlue})) << "those between are not drawn";

    view->setHidden(true);
    seen();
    pushElsewhere({kGreen, kWhite, kRed});
    m_source->removeAllTargets();
    lookOn();
    view->setHidden(false);
    m_window->render();
    lookOn();
    EXPECT_EQ(shown, (std::vector{kGreen, kRed})) << "one was on its way, and nothing was drawn while nobody looked";
    EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount()) << "what waited has gone back";
}

TEST_P(ViewTest, EndsOnTheMainThreadWhoeverLetsGoLast)
{
    struct Child : UIView {
        explicit Child(std::vector<bool>& ends)
            : m_ends(ends)
        {
        }
        ~Child() override { m_ends.push_back(DispatchQueue::main().isCurrent()); }
        std::vector<bool>& m_ends;
    };
    std::vector<bool> ends;
    for (const bool onMain : {true, false}) {
        auto view = openView({0, 0, 2, 2});
        view->addSubview(std::make_shared<Child>(ends));
        seenOf(solidPicture(2, 2, kRed));
        m_source->push({2, 2}, kGreen, second(1));
        m_source->push({2, 2}, kBlue, second(2)); // one on its way, one that waits
        show(nullptr, 1);
        if (onMain)
            m_source->removeAllTargets();
        const std::weak_ptr<GPUImageView> weak = std::exchange(view, nullptr);
        if (!onMain)
            onQueue([&] { m_source->removeAllTargets(); });
        DispatchQueue::main().drain();
        EXPECT_TRUE(weak.expired());
    }
    EXPECT_EQ(ends, (std::vector{true, true}));
    EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount());
}

TEST_P(ViewTest, MakesNothingAFrame)
{
    openView({0, 0, 8, 4}, 2);
    GLCalls before;
    for (int i = 0; i < 20; ++i) {
        if (i == 3)
            before = glCallsSoFar();
        seenOf(solidPicture(5, 5, {std::uint8_t(i), 0, 0, 255}));
    }
    EXPECT_EQ((glCallsSoFar() - before).objectsMade(), 0);
}

} // namespace
} // namespace lamina::test
