#include "app/PinchZoomViewController.h"

#include "TestPictures.h"
#include "app/MainStoryboard.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIStoryboard.h"

#include <cmath>
#include <gtest/gtest.h>

namespace lamina {
namespace {

using test::rampPicture;
using test::Rgba;

constexpr int kSide = 375;

class CropScreen : public testing::Test {
protected:
    void SetUp() override
    {
        UIScreen::setMain({{kSide, 667}, 3});
        registerMainStoryboard();
        clearPickedImages();
        root = std::make_shared<UIViewController>();
    }
    void TearDown() override
    {
        DispatchQueue::main().runUntilIdle();
        clearPickedImages();
    }

    std::shared_ptr<PinchZoomViewController> open(const CGImage& photo)
    {
        const auto screen = UIStoryboard::named(kMainStoryboard)->instantiate<PinchZoomViewController>(scene::kCrop);
        screen->pickedImage = UIImage(photo);
        root->present(screen, true);
        DispatchQueue::main().runUntilIdle();
        return screen;
    }

    std::shared_ptr<UIViewController> root;
};

struct LayoutCase {
    int width;
    int height;
    CGSize imageView;
    CGSize content;
    CGPoint farthest; ///< the offset that a very large one is clamped to
};

TEST_F(CropScreen, ThePhotoFillsTheSquareOnItsShorterSide)
{
    const LayoutCase table[] = {
        {400, 300, {500, 375}, {500, 281.25}, {125, 0}},
        {300, 400, {375, 500}, {281.25, 500}, {0, 125}},
        {200, 200, {375, 375}, {375, 375}, {0, 0}},
        {3000, 10, {112500, 375}, {112500, 1.25}, {112125, 0}},
    };
    for (const LayoutCase& c : table) {
        SCOPED_TRACE(testing::Message() << c.width << " × " << c.height);
        const auto screen = open(rampPicture(c.width, c.height, 0));
        EXPECT_EQ(screen->containerImageView().frame(), (CGRect{{0, 0}, c.imageView}));
        EXPECT_EQ(screen->scrollView().contentSize(), c.content);
        EXPECT_EQ(screen->scrollView().contentOffset(), (CGPoint{0, 0}));
        screen->scrollView().setContentOffset({1e6, 1e6});
        EXPECT_EQ(screen->scrollView().contentOffset(), c.farthest);
        root->dismiss(false);
        DispatchQueue::main().runUntilIdle();
    }
}

TEST_F(CropScreen, TheCropIsWhatTheSquareShowsOnePixelAPoint)
{
    const auto screen = open(rampPicture(800, 600, 77));
    screen->scrollView().setZoomScale(2);
    screen->scrollView().setContentOffset({310, 140});
    screen->doneButton();
    DispatchQueue::main().runUntilIdle();

    ASSERT_EQ(firstPickedImage.pixelSize(), (IntSize{kSide, kSide}));
    EXPECT_EQ(firstPickedImage.scale(), 1);
    EXPECT_FALSE(secondPickedImage);
    EXPECT_EQ(firstPickedCrop, (PhotoCrop{{800, 600}, kSide, 2, {310, 140}}));
    EXPECT_FALSE(root->presentedViewController());
    // 600 pixels fill 375 points at zoom 1, so a point is 0.8 pixels of the photo now.
    const auto level = [](double place, double length) {
        return static_cast<std::uint8_t>(std::lround(place / length * 255));
    };
    for (int y = 5; y < kSide; y += 40) {
        for (int x = 5; x < kSide; x += 40) {
            const Rgba wanted{level((x + 0.5 + 310) * 0.8, 800), level((y + 0.5 + 140) * 0.8, 600), 77, 255};
            ASSERT_TRUE(test::pixelMatches(firstPickedImage.cgImage(), x, y, wanted, 1));
        }
    }
}

TEST_F(CropScreen, TheSecondCropOpensTheEditor)
{
    open(rampPicture(40, 30, 10))->doneButton();
    DispatchQueue::main().runUntilIdle();
    const auto second = open(rampPicture(30, 40, 200));
    second->doneButton();
    DispatchQueue::main().runUntilIdle();
    EXPECT_TRUE(secondPickedImage);
    const auto editor = std::dynamic_pointer_cast<BlendPhotoViewController>(second->presentedViewController());
    ASSERT_TRUE(editor);
    EXPECT_TRUE(editor->imgView1().image().isIdenticalTo(firstPickedImage));
    EXPECT_TRUE(editor->imgView2().image().isIdenticalTo(secondPickedImage));
    EXPECT_EQ(editor->composition().photos[1].crop.photoSize, (CGSize{30, 40}));
}

TEST_F(CropScreen, TheZoomCanBeReadSetAndFollowed)
{
    const auto screen = open(rampPicture(400, 300, 0)); // fills the square at 500 × 375
    int heard = 0;
    QObject::connect(screen.get(), &PinchZoomViewController::zoomScaleChanged, [&] { ++heard; });
    screen->setProperty("zoomScale", 2.0);
    EXPECT_EQ(screen->scrollView().contentSize(), (CGSize{1000, 750}));
    // About the middle of the square: what stood at (187.5, 187.5) still does.
    EXPECT_EQ(screen->scrollView().contentOffset(), (CGPoint{187.5, 187.5}));
    screen->nudge(-1e6, -1e6); // the whole photo can be reached now
    EXPECT_EQ(screen->scrollView().contentOffset(), (CGPoint{625, 375}));
    screen->zoomBy(100);
    EXPECT_EQ(screen->zoomScale(), 6);
    EXPECT_EQ(screen->property("maximumZoomScale").toDouble(), 6);
    screen->zoomBy(0);
    EXPECT_EQ(screen->zoomScale(), screen->property("minimumZoomScale").toDouble());
    EXPECT_EQ(heard, 3);
    EXPECT_EQ(screen->scrollView().superview(), screen->canvasView().get());
}

TEST_F(CropScreen, ADoubleTapGoesInAndOut)
{
    const auto screen = open(rampPicture(400, 300, 0));
    screen->nudge(-30, 50); // to the left; upright there is nothing to scroll
    screen->toggleZoom(100, 300);
    EXPECT_EQ(screen->zoomScale(), 2);
    // What was under the finger, (130, 300) of the content, stays under it.
    EXPECT_EQ(screen->scrollView().contentOffset(), (CGPoint{160, 300}));
    screen->toggleZoom(0, 0);
    EXPECT_EQ(screen->zoomScale(), 1);
}

TEST_F(CropScreen, AnImpatientSecondPressTakesNothing)
{
    const auto screen = open(rampPicture(40, 30, 10));
    screen->doneButton();
    screen->doneButton();
    screen->backButton();
    DispatchQueue::main().runUntilIdle();
    EXPECT_TRUE(firstPickedImage);
    EXPECT_FALSE(secondPickedImage);
    EXPECT_FALSE(screen->presentedViewController());
    EXPECT_FALSE(root->presentedViewController());
}

TEST_F(CropScreen, FreeHandlersConsumeTheirGestures)
{
    const auto screen = open(rampPicture(40, 30, 10));
    auto moved = std::make_shared<UIView>(CGRect{10, 10, 20, 20});
    screen->view().addSubview(moved);
    auto pan = std::make_shared<UIPanGestureRecognizer>();
    pan->addTarget(screen.get(), &PinchZoomViewController::handlePan);
    moved->addGestureRecognizer(pan);
    pan->perform({7, -3}, &screen->view());
    EXPECT_EQ(moved->center(), (CGPoint{27, 17}));
    auto pinch = std::make_shared<UIPinchGestureRecognizer>();
    pinch->addTarget(screen.get(), &PinchZoomViewController::handlePinch);
    moved->addGestureRecognizer(pinch);
    pinch->perform(2);
    pinch->perform(1.5);
    EXPECT_EQ(moved->transform(), CGAffineTransform::scaling(3, 3));
    // Nothing of the screen's own calls them: the photo has no recogniser but the scroll view's.
    EXPECT_TRUE(screen->containerImageView().gestureRecognizers().empty());
}

TEST_F(CropScreen, TranslucentPhotosStaySoAndNoPhotoIsNone)
{
    open(test::solidPicture(8, 8, {200, 100, 50, 128}))->doneButton();
    DispatchQueue::main().runUntilIdle();
    EXPECT_EQ(test::pixelAt(firstPickedImage.cgImage(), 9, 9)[3], 128);
    const auto empty = open(CGImage());
    EXPECT_EQ(empty->containerImageView().frame(), (CGRect{0, 0, kSide, kSide}));
    empty->doneButton();
    DispatchQueue::main().runUntilIdle();
    EXPECT_EQ(test::pixelAt(secondPickedImage.cgImage(), 9, 9), Rgba{});
}

TEST_F(CropScreen, ACropForWhichThereIsNoMemoryIsToldAndCanBeLeft)
{
    UIScreen::setMain({{3e7, 3e7}, 1}); // more bytes than a process has addresses
    const auto screen = open(rampPicture(40, 30, 10));
    screen->doneButton();
    DispatchQueue::main().runUntilIdle();
    const auto alert = std::dynamic_pointer_cast<UIAlertController>(screen->presentedViewController());
    ASSERT_TRUE(alert);
    EXPECT_EQ(alert->title() + " | " + alert->message(), "Can’t crop the photo | The photo: not enough memory.");
    EXPECT_FALSE(firstPickedImage);
    alert->tap(0);
    DispatchQueue::main().runUntilIdle();
    screen->backButton();
    DispatchQueue::main().runUntilIdle();
    EXPECT_FALSE(root->presentedViewController());
}

} // namespace
} // namespace lamina
