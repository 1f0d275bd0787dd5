#include "app/PinchZoomViewController.h"

#include "ScreenTest.h"
#include "editors/blend/BlendPhotoViewController.h"

#include <cmath>

namespace lamina::test {
namespace {

class CropScreen : public ScreenTest {
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        window.setRootViewController(root);
    }

    std::shared_ptr<PinchZoomViewController> open(const CGImage& photo)
    {
        const auto screen = storyboard->instantiate<PinchZoomViewController>(scene::kCrop);
        screen->pickedImage = UIImage(photo);
        root->present(screen, true);
        settle();
        return screen;
    }
    /// Opens a crop of the photo and takes it at once.
    std::shared_ptr<PinchZoomViewController> take(const CGImage& photo)
    {
        const auto screen = open(photo);
        screen->doneButton();
        settle();
        return screen;
    }

    const std::shared_ptr<UIViewController> root = std::make_shared<UIViewController>();
};

TEST_F(CropScreen, ThePhotoFillsTheSquareOnItsShorterSide)
{
    const struct {
        IntSize photo;
        CGSize imageView;
        CGSize content;
        CGPoint farthest; ///< the offset that a very large one is clamped to
    } table[] = {
        {{400, 300}, {500, 375}, {500, 281.25}, {125, 0}}, {{300, 400}, {375, 500}, {281.25, 500}, {0, 125}},
        {{200, 200}, {375, 375}, {375, 375}, {0, 0}},      {{3000, 10}, {112500, 375}, {112500, 1.25}, {112125, 0}},
        {{0, 0}, {375, 375}, {375, 375}, {0, 0}},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(testing::Message() << c.photo.width << " × " << c.photo.height);
        const auto screen = open(c.photo.width > 0 ? rampPicture(c.photo.width, c.photo.height, 0) : CGImage());
        EXPECT_EQ(screen->containerImageView().frame(), (CGRect{{0, 0}, c.imageView}));
        EXPECT_EQ(screen->scrollView().contentSize(), c.content);
        EXPECT_EQ(screen->scrollView().contentOffset(), (CGPoint{0, 0}));
        screen->nudge(-1e6, -1e6);
        EXPECT_EQ(screen->scrollView().contentOffset(), c.farthest);
        root->dismiss(false);
        settle();
    }
}

TEST_F(CropScreen, TheCropIsWhatTheSquareShowsOnePixelAPoint)
{
    const auto screen = open(rampPicture(800, 600, 77));
    screen->scrollView().setZoomScale(2);
    screen->scrollView().setContentOffset({310, 140});
    screen->doneButton();
    settle();
    ASSERT_EQ(firstPickedImage.pixelSize(), (IntSize{kWidth, kWidth}));
    EXPECT_EQ(firstPickedImage.scale(), 1);
    EXPECT_EQ(firstPickedCrop, (PhotoCrop{{800, 600}, kWidth, 2, {310, 140}}));
    EXPECT_FALSE(root->presentedViewController());
    // 600 pixels fill 375 points at zoom 1, so a point is 0.8 pixels of the photo now.
    const auto level = [](double place, double length) {
        return static_cast<std::uint8_t>(std::lround(place / length * 255));
    };
    for (int y = 5; y < kWidth; y += 40) {
        for (int x = 5; x < kWidth; x += 40) {
            const Rgba wanted{level((x + 0.5 + 310) * 0.8, 800), level((y + 0.5 + 140) * 0.8, 600), 77, 255};
            ASSERT_TRUE(pixelMatches(firstPickedImage.cgImage(), x, y, wanted, 1));
        }
    }
}

TEST_F(CropScreen, BothCropsReachTheEditorAsTheyAre)
{
    take(solidPicture(8, 8, {200, 100, 50, 128}));
    EXPECT_EQ(pixelAt(firstPickedImage.cgImage(), 9, 9)[3], 128);
    const auto second = take(CGImage()); // no photo: nothing in the square
    EXPECT_EQ(pixelAt(secondPickedImage.cgImage(), 9, 9), Rgba{});
    const auto editor = std::dynamic_pointer_cast<BlendPhotoViewController>(second->presentedViewController());
    ASSERT_TRUE(editor);
    EXPECT_TRUE(editor->imgView1().image().isIdenticalTo(firstPickedImage));
    EXPECT_TRUE(editor->imgView2().image().isIdenticalTo(secondPickedImage));
    EXPECT_EQ(editor->composition().photos[0].crop.photoSize, (CGSize{8, 8}));
}

TEST_F(CropScreen, ACropForWhichThereIsNoMemoryIsToldAndCanBeLeft)
{
    UIScreen::setMain({{3e7, 3e7}, 1}); // more bytes than a process has addresses
    const auto screen = take(rampPicture(40, 30, 10));
    EXPECT_EQ(alertText(), "Can’t crop the photo / The photo: not enough memory.");
    EXPECT_FALSE(firstPickedImage);
    screen->backButton();
    settle();
    EXPECT_FALSE(root->presentedViewController());
}

TEST_F(CropScreen, TheZoomCanBeReadSetAndFollowed)
{
    const auto screen = open(rampPicture(400, 300, 0)); // fills the square at 500 × 375
    int heard = 0;
    QObject::connect(screen.get(), &PinchZoomViewController::zoomScaleChanged, [&] { ++heard; });
    screen->setProperty("zoomScale", 2.0);
    // About the middle of the square: what stood at (187.5, 187.5) still does.
    EXPECT_EQ(screen->scrollView().contentOffset(), (CGPoint{187.5, 187.5}));
    screen->nudge(-1e6, -1e6); // the whole photo can be reached now
    EXPECT_EQ(screen->scrollView().contentOffset(), (CGPoint{625, 375}));
    screen->zoomBy(100);
    EXPECT_EQ(screen->property("zoomScale").toDouble(), 6);
    EXPECT_EQ(screen->property("maximumZoomScale").toDouble(), 6);
    screen->zoomBy(0);
    EXPECT_EQ(screen->zoomScale(), screen->property("minimumZoomScale").toDouble());
    EXPECT_EQ(heard, 3);
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
    settle();
    EXPECT_TRUE(firstPickedImage);
    EXPECT_FALSE(secondPickedImage);
    EXPECT_FALSE(root->presentedViewController());
}

TEST_F(CropScreen, FreeHandlersConsumeTheirGestures)
{
    const auto screen = open(rampPicture(40, 30, 10));
    const auto moved = std::make_shared<UIView>(CGRect{10, 10, 20, 20});
    screen->view().addSubview(moved);
    const auto pan = std::make_shared<UIPanGestureRecognizer>();
    pan->addTarget(screen.get(), &PinchZoomViewController::handlePan);
    moved->addGestureRecognizer(pan);
    pan->perform({7, -3}, &screen->view());
    EXPECT_EQ(moved->center(), (CGPoint{27, 17}));
    const auto pinch = std::make_shared<UIPinchGestureRecognizer>();
    pinch->addTarget(screen.get(), &PinchZoomViewController::handlePinch);
    moved->addGestureRecognizer(pinch);
    pinch->perform(2);
    pinch->perform(1.5);
    EXPECT_EQ(moved->transform(), CGAffineTransform::scaling(3, 3));
    // Nothing of the screen's own calls them: the photo has no recogniser but the scroll view's.
    EXPECT_TRUE(screen->containerImageView().gestureRecognizers().empty());
}

} // namespace
} // namespace lamina::test
