#include "app/ImagePIckingViewController.h"

#include "ScreenTest.h"
#include "app/PinchZoomViewController.h"
#include "platform/base/CGGeometry.h"
#include "platform/photos/PhotoSource.h"
#include "platform/view/UINavigationController.h"

namespace lamina::test {
namespace {

class SourceChoice : public ScreenTest {
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        stack = UINavigationController::make(std::make_shared<UIViewController>());
        window.setRootViewController(stack);
        open();
    }
    void TearDown() override
    {
        UIImagePickerController::setCameraAvailability({});
        ScreenTest::TearDown();
    }

    void open()
    {
        chooser = storyboard->instantiate<ImagePIckingViewController>(scene::kSourceChoice);
        stack->pushViewController(chooser, true);
        settle();
    }
    /// The picker that stands open has a photo of 8 × 6 pixels, and is about to leave.
    void pick()
    {
        chooser->cameraButton();
        settle();
        chooser->imagePickerController(*top<UIImagePickerController>(), {UIImage(rampPicture(8, 6, 0)), "c.png"});
    }
    /// The size of the photo on the crop screen in front.
    IntSize cropped() const
    {
        const auto crop = top<PinchZoomViewController>();
        return crop ? crop->pickedImage.pixelSize() : IntSize{};
    }

    std::shared_ptr<UINavigationController> stack;
    std::shared_ptr<ImagePIckingViewController> chooser;
};

TEST_F(SourceChoice, WithACameraTheGalleryButtonOpensIt)
{
    UIImagePickerController::setCameraAvailability([] { return true; });
    chooser->galleryButton();
    settle();
    const auto picker = top<UIImagePickerController>();
    ASSERT_TRUE(picker);
    EXPECT_EQ(picker->sourceType(), UIImagePickerControllerSourceType::Camera);
    EXPECT_EQ(picker->modalPresentationStyle(), UIModalPresentationStyle::CurrentContext);
    EXPECT_EQ(picker->shortSide(), 2250); // six times 375
}

TEST_F(SourceChoice, PhotosFromOutsideWaitUntilTheyCanBeSeen)
{
    chooser = storyboard->instantiate<ImagePIckingViewController>(scene::kSourceChoice);
    chooser->receivePhotos({photo("a.png"), photo("b.png")});
    settle();
    EXPECT_FALSE(chooser->presentedViewController());
    stack->pushViewController(chooser, true);
    settle();
    EXPECT_EQ(cropped(), (IntSize{40, 30}));
    top<PinchZoomViewController>()->backButton();
    settle();

    // Who picks by hand now is not given the other one unasked.
    pick();
    settle();
    top<PinchZoomViewController>()->doneButton();
    settle();
    EXPECT_EQ(window.topViewController(), chooser);
    EXPECT_EQ(chooser->step(), 2);

    // Who leaves and comes again finds the first photo in its slot.
    chooser->backButton();
    settle();
    EXPECT_EQ(stack->viewControllers().size(), 2u);
    open();
    EXPECT_EQ(chooser->selectImage(), "SCREEN2bg");
}

TEST_F(SourceChoice, AFirstPhotoThatWasGivenUpCanBeTakenAgain)
{
    const auto crop = [&](bool take) {
        pick();
        settle();
        take ? top<PinchZoomViewController>()->doneButton() : top<PinchZoomViewController>()->backButton();
        settle();
    };
    crop(true);
    const UIImage first = firstPickedImage;
    const PhotoCrop place = firstPickedCrop;
    EXPECT_FALSE(chooser->firstPhotoSetAside());
    for (int i = 0; i < 2; ++i) { // leaving the crop of another first photo changes nothing
        crop(false);
        EXPECT_EQ(chooser->step(), 1);
        EXPECT_FALSE(firstPickedImage);
        EXPECT_TRUE(chooser->firstPhotoSetAside());
    }
    chooser->useFirstPhotoAgain();
    EXPECT_EQ(chooser->step(), 2);
    EXPECT_FALSE(chooser->firstPhotoSetAside());
    EXPECT_TRUE(firstPickedImage.isIdenticalTo(first));
    EXPECT_EQ(firstPickedCrop, place);

    crop(false);
    crop(true); // another one is taken
    EXPECT_FALSE(chooser->firstPhotoSetAside());
    crop(false);
    chooser->backButton();
    settle();
    open();
    EXPECT_FALSE(chooser->firstPhotoSetAside());
}

TEST_F(SourceChoice, WhileAPhotoIsOnItsWayNothingElseComesBetween)
{
    pick();
    // The picker leaves, and the chooser can be reached already.
    EXPECT_FALSE(chooser->wantsPhotos());
    chooser->cameraButton();
    chooser->receivePhotos({photo("a.png")});
    settle();
    EXPECT_EQ(cropped(), (IntSize{8, 6}));
    top<PinchZoomViewController>()->backButton();
    settle();
    EXPECT_EQ(window.topViewController(), chooser);
    EXPECT_TRUE(chooser->wantsPhotos());
}

TEST_F(SourceChoice, WhoLeavesMeanwhileSeesNoCrop)
{
    pick();
    chooser->backButton();
    settle();
    EXPECT_EQ(window.topViewController(), stack->viewControllers().front());
    EXPECT_FALSE(chooser->presentedViewController());
}

} // namespace
} // namespace lamina::test
