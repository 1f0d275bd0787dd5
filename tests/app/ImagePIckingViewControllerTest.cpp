#include "app/ImagePIckingViewController.h"

#include "CommandRunner.h"
#include "TestPictures.h"
#include "app/MainStoryboard.h"
#include "app/PinchZoomViewController.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UINavigationController.h"
#include "platform/view/UIStoryboard.h"
#include "platform/view/UIWindow.h"

#include <gtest/gtest.h>

namespace lamina {
namespace {

class SourceChoice : public testing::Test {
protected:
    void SetUp() override
    {
        UIScreen::setMain({{375, 667}, 3});
        registerMainStoryboard();
        clearPickedImages();
        test::writePng(folder.path("a.png"), test::rampPicture(40, 30, 10));
        test::writePng(folder.path("b.png"), test::rampPicture(30, 40, 200));
        test::writeFile(folder.path("notes.jpg"), "no photo");
        open();
    }
    void TearDown() override
    {
        UIImagePickerController::setCameraAvailability({});
        window.setRootViewController(nullptr);
        settle();
        clearPickedImages();
    }

    static void settle() { ASSERT_TRUE(DispatchQueue::main().runUntilIdle(20)); }

    /// A new chooser on the stack, above a home screen.
    void open()
    {
        // Another test may have put a screen of its own in its place.
        storyboard->addScene("ImagePIckingViewController",
                             {[] { return std::make_shared<ImagePIckingViewController>(); }, ""});
        chooser = storyboard->instantiate<ImagePIckingViewController>("ImagePIckingViewController");
        stack = UINavigationController::make(std::make_shared<UIViewController>());
        window.setRootViewController(stack);
        stack->pushViewController(chooser, true);
        settle();
    }
    /// The screen in front, if it is of that class.
    template <class Screen>
    std::shared_ptr<Screen> top() const
    {
        return std::dynamic_pointer_cast<Screen>(window.topViewController());
    }
    PhotoSource photo(const std::string& name) const { return PhotoSource::fromFile(folder.path(name)); }
    /// From the chooser to the crop screen, by hand.
    std::shared_ptr<PinchZoomViewController> pick(const std::string& name)
    {
        chooser->cameraButton();
        settle();
        const auto picker = top<UIImagePickerController>();
        if (!picker)
            return nullptr;
        picker->choose(photo(name));
        settle();
        return top<PinchZoomViewController>();
    }

    const test::TemporaryFolder folder;
    const std::shared_ptr<UIStoryboard> storyboard = UIStoryboard::named("Main");
    UIWindow window;
    std::shared_ptr<UINavigationController> stack;
    std::shared_ptr<ImagePIckingViewController> chooser;
};

TEST_F(SourceChoice, TwoRoundsLeadToTheEditor)
{
    std::vector<std::string> backdrops;
    QObject::connect(chooser.get(), &ImagePIckingViewController::selectImageChanged, [&] {
        backdrops.push_back(chooser->selectImage().toStdString() + ' ' + std::to_string(chooser->step()));
    });
    EXPECT_EQ(chooser->selectImage(), "SCREENbg");
    EXPECT_EQ(chooser->step(), 1);
    const auto first = pick("a.png");
    ASSERT_TRUE(first);
    EXPECT_EQ(first->pickedImage.pixelSize(), (IntSize{40, 30}));
    EXPECT_EQ(first->modalPresentationStyle(), UIModalPresentationStyle::CurrentContext);
    EXPECT_EQ(first->step(), 1);
    first->doneButton();
    settle();
    EXPECT_EQ(window.topViewController(), chooser);
    EXPECT_EQ(backdrops, (std::vector<std::string>{"SCREEN2bg 2"}));

    // Back gives up the first photo too.
    const auto second = pick("b.png");
    ASSERT_TRUE(second);
    EXPECT_EQ(second->step(), 2);
    second->backButton();
    settle();
    EXPECT_FALSE(firstPickedImage);
    EXPECT_EQ(backdrops.back(), "SCREENbg 1");

    for (const char* name : {"a.png", "b.png"}) {
        const auto crop = pick(name);
        ASSERT_TRUE(crop);
        crop->doneButton();
        settle();
    }
    EXPECT_TRUE(top<BlendPhotoViewController>());
}

TEST_F(SourceChoice, BackLeavesTheFirstPhotoInItsSlot)
{
    pick("a.png")->doneButton();
    settle();
    chooser->backButton();
    settle();
    EXPECT_EQ(stack->viewControllers().size(), 1u);
    EXPECT_TRUE(firstPickedImage);
    open();
    EXPECT_EQ(chooser->selectImage(), "SCREEN2bg");
}

TEST_F(SourceChoice, TheTwoButtonsOpenTheOtherOnesSource)
{
    chooser->galleryButton();
    settle();
    const auto alert = top<UIAlertController>();
    ASSERT_TRUE(alert);
    EXPECT_EQ(alert->title(), "Camera Unavailable");
    EXPECT_EQ(alert->message(), "Unable to find a camera on your device.");
    ASSERT_EQ(alert->actions().size(), 1u);
    EXPECT_EQ(alert->actions()[0].title, "OK");
    alert->tap(0);
    settle();

    UIImagePickerController::setCameraAvailability([] { return true; });
    const struct {
        void (ImagePIckingViewController::*button)();
        int source;
    } table[] = {{&ImagePIckingViewController::galleryButton, 1}, {&ImagePIckingViewController::cameraButton, 0}};
    for (const auto& c : table) {
        ((*chooser).*c.button)();
        settle();
        const auto picker = top<UIImagePickerController>();
        ASSERT_TRUE(picker);
        EXPECT_EQ(static_cast<int>(picker->sourceType()), c.source);
        EXPECT_EQ(picker->modalPresentationStyle(), UIModalPresentationStyle::CurrentContext);
        EXPECT_EQ(picker->delegate().get(), chooser.get());
        EXPECT_EQ(picker->shortSide(), 2250); // six times 375
        picker->cancel();
        settle();
        EXPECT_EQ(window.topViewController(), chooser);
        EXPECT_FALSE(firstPickedImage);
    }
}

TEST_F(SourceChoice, PhotosFromOutsideWalkTheWholeRoad)
{
    // They may come before it is seen: then they wait.
    chooser = storyboard->instantiate<ImagePIckingViewController>("ImagePIckingViewController");
    chooser->receivePhotos({photo("a.png"), photo("b.png"), photo("a.png")});
    settle();
    EXPECT_FALSE(chooser->presentedViewController());
    stack->pushViewController(chooser, true);
    for (const IntSize size : {IntSize{40, 30}, IntSize{30, 40}}) {
        settle();
        const auto crop = top<PinchZoomViewController>();
        ASSERT_TRUE(crop);
        EXPECT_EQ(crop->pickedImage.pixelSize(), size);
        crop->doneButton();
    }
    settle();
    EXPECT_TRUE(top<BlendPhotoViewController>());
}

TEST_F(SourceChoice, AnUnreadablePhotoChangesNothing)
{
    chooser->receivePhotos({photo("notes.jpg"), photo("b.png")});
    settle();
    const auto alert = top<UIAlertController>();
    ASSERT_TRUE(alert);
    EXPECT_EQ(alert->message(), "notes.jpg: not a picture.");
    alert->tap(0);
    settle();
    EXPECT_EQ(window.topViewController(), chooser);
    EXPECT_EQ(chooser->step(), 1);

    // Who picks by hand now is not given the other one unasked.
    pick("a.png")->doneButton();
    settle();
    EXPECT_EQ(window.topViewController(), chooser);
    EXPECT_EQ(chooser->step(), 2);
}

TEST_F(SourceChoice, WhileAPhotoIsOnItsWayNothingElseComesBetween)
{
    chooser->cameraButton();
    settle();
    EXPECT_FALSE(chooser->wantsPhotos());
    const auto picker = top<UIImagePickerController>();
    chooser->imagePickerController(*picker, {UIImage(test::rampPicture(8, 6, 0)), "c.png"});
    // The picker leaves, and the chooser can be reached already.
    EXPECT_FALSE(chooser->wantsPhotos());
    chooser->cameraButton();
    chooser->receivePhotos({photo("a.png")});
    settle();
    const auto crop = top<PinchZoomViewController>();
    ASSERT_TRUE(crop);
    EXPECT_EQ(crop->pickedImage.pixelSize(), (IntSize{8, 6}));
    crop->backButton();
    settle();
    EXPECT_EQ(window.topViewController(), chooser);
    EXPECT_TRUE(chooser->wantsPhotos());
}

TEST_F(SourceChoice, WhoLeavesMeanwhileSeesNoCrop)
{
    chooser->cameraButton();
    settle();
    const auto picker = top<UIImagePickerController>();
    chooser->imagePickerController(*picker, {UIImage(test::rampPicture(8, 6, 0)), "c.png"});
    chooser->backButton();
    settle();
    EXPECT_EQ(stack->viewControllers().size(), 1u);
    EXPECT_EQ(window.topViewController(), stack->topViewController());
    EXPECT_FALSE(chooser->presentedViewController());
}

} // namespace
} // namespace lamina
