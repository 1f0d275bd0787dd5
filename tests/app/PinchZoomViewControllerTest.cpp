#include "app/PinchZoomViewController.h"

#include "ScreenTest.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "platform/image/pixels/CGImage.h"

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
    } table[] = {
        {{400, 300}, {500, 375}, {500, 281.25}},
        {{300, 400}, {375, 500}, {281.25, 500}},
        {{0, 0}, {375, 375}, {375, 375}},
    };
    for (const auto& c : table) {
        const auto screen = open(c.photo.width > 0 ? rampPicture(c.photo.width, c.photo.height, 0) : CGImage());
        EXPECT_EQ(screen->containerImageView().frame(), (CGRect{{0, 0}, c.imageView}));
        EXPECT_EQ(screen->scrollView().contentSize(), c.content);
        root->dismiss(false);
        settle();
    }
}

TEST_F(CropScreen, BothCropsReachTheEditorAPixelAPoint)
{
    const auto screen = open(solidPicture(800, 600, {200, 100, 50, 128}));
    screen->scrollView().setZoomScale(2);
    screen->scrollView().setContentOffset({310, 140});
    screen->doneButton();
    settle();
    EXPECT_FALSE(root->presentedViewController());
    EXPECT_EQ(firstPickedImage.pixelSize(), (IntSize{kWidth, kWidth}));
    EXPECT_EQ(firstPickedImage.scale(), 1);
    EXPECT_EQ(pixelAt(firstPickedImage.cgImage(), 9, 9)[3], 128);
    const auto second = take(CGImage()); // no photo: nothing in the square
    EXPECT_EQ(pixelAt(secondPickedImage.cgImage(), 9, 9), Rgba{});
    const auto editor = std::dynamic_pointer_cast<BlendPhotoViewController>(second->presentedViewController());
    ASSERT_TRUE(editor);
    EXPECT_TRUE(editor->imgView1().image().isIdenticalTo(firstPickedImage));
    EXPECT_TRUE(editor->imgView2().image().isIdenticalTo(secondPickedImage));
    EXPECT_EQ(editor->composition().photos[0].crop, (PhotoCrop{{800, 600}, kWidth, 2, {310, 140}}));
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

TEST_F(CropScreen, SliderKeysAndDoubleTapsZoom)
{
    const auto screen = open(rampPicture(400, 300, 0)); // fills the square at 500 × 375
    int heard = 0;
    QObject::connect(screen.get(), &PinchZoomViewController::zoomScaleChanged, [&] { ++heard; });
    screen->nudge(-30, 50); // to the left; upright there is nothing to scroll
    screen->toggleZoom(100, 300);
    EXPECT_EQ(screen->zoomScale(), 2);
    // What was under the finger, (130, 300) of the content, stays under it.
    EXPECT_EQ(screen->scrollView().contentOffset(), (CGPoint{160, 300}));
    screen->toggleZoom(0, 0);
    EXPECT_EQ(screen->zoomScale(), 1);
    screen->setProperty("zoomScale", 3.0);
    screen->zoomBy(100);
    EXPECT_EQ(screen->zoomScale(), screen->property("maximumZoomScale").toDouble());
    screen->zoomBy(0);
    EXPECT_EQ(screen->zoomScale(), screen->property("minimumZoomScale").toDouble());
    EXPECT_EQ(heard, 5);
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
    const auto screen = open(rampPicture(400, 300, 10));
    UIView& photo = screen->containerImageView();
    // Nothing of the screen's own calls them: the photo has no recogniser but the scroll view's.
    EXPECT_TRUE(photo.gestureRecognizers().empty());
    const auto pan = std::make_shared<UIPanGestureRecognizer>();
    pan->addTarget(screen.get(), &PinchZoomViewController::handlePan);
    photo.addGestureRecognizer(pan);
    pan->perform({7, -3}, &screen->view());
    EXPECT_EQ(photo.center(), (CGPoint{257, 184.5}));
    const auto pinch = std::make_shared<UIPinchGestureRecognizer>();
    pinch->addTarget(screen.get(), &PinchZoomViewController::handlePinch);
    photo.addGestureRecognizer(pinch);
    pinch->perform(2);
    pinch->perform(1.5);
    EXPECT_EQ(photo.transform(), CGAffineTransform::scaling(3, 3));
}

} // namespace
} // namespace lamina::test
