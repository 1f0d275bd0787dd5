#include "app/ViewController.h"

#include "CommandRunner.h"
#include "TestPictures.h"
#include "app/MainStoryboard.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "picker/SelectedImagesReceiver.h"
#include "picker/YMSPhotoPickerViewController.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIApplication.h"
#include "platform/view/UINavigationController.h"
#include "platform/view/UIStoryboard.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace lamina {
namespace {

class CollageEditor : public UIViewController, public SelectedImagesReceiver {
public:
    std::vector<UIImage> images;
    void setSelectedImages(std::vector<UIImage> selectedImages) override { images = std::move(selectedImages); }
};

/// Takes the place of the screen that asks for a source.
class SourceChooser : public UIViewController, public PhotoReceiver {
public:
    std::vector<PhotoSource> photos;
    bool wantsPhotos() const override { return true; }
    void receivePhotos(std::vector<PhotoSource> received) override { photos = std::move(received); }
};

class HomeScreen : public testing::Test {
protected:
    void SetUp() override
    {
        UIScreen::setMain({{375, 667}, 3});
        registerMainStoryboard();
        storyboard->addScene("ImagePIckingViewController", {[] { return std::make_shared<SourceChooser>(); }, ""});
        home = storyboard->instantiate<ViewController>("ViewController");
        stack = UINavigationController::make(home);
        home->view();
        test::writePng(folder.path("a.png"), test::rampPicture(40, 30, 10));
        test::writePng(folder.path("b.png"), test::rampPicture(30, 40, 200));
    }
    void TearDown() override { settle(); }

    static void settle() { EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20)); }

    template <class Screen>
    std::shared_ptr<Screen> presented()
    {
        return std::dynamic_pointer_cast<Screen>(home->presentedViewController());
    }
    PHAsset asset(const std::string& name) { return {name, folder.path(name), 0, 0, 0}; }

    /// Opens a picker and answers for it as one that a person has finished.
    void pick(const std::string& entry, const std::vector<std::string>& names)
    {
        home->selectedBtnStr = entry;
        home->launchSpecialController();
        settle();
        const auto picker = presented<YMSPhotoPickerViewController>();
        ASSERT_TRUE(picker);
        std::vector<PHAsset> assets(names.size());
        std::transform(names.begin(), names.end(), assets.begin(), [this](const auto& name) { return asset(name); });
        picker->delegate()->photoPickerViewController(*picker, assets);
        settle();
    }
    /// Title and message; empty when no alert is up. Dismisses it.
    std::string answerAlert(int button)
    {
        const auto alert = presented<UIAlertController>();
        if (!alert)
            return {};
        alert->tap(button);
        settle();
        return alert->title() + " / " + alert->message();
    }

    const test::TemporaryFolder folder;
    const std::shared_ptr<UIStoryboard> storyboard = UIStoryboard::named("Main");
    std::shared_ptr<ViewController> home;
    std::shared_ptr<UINavigationController> stack;
};

TEST_F(HomeScreen, CollageEntriesOpenThePickerInItsColours)
{
    const struct {
        void (ViewController::*entry)();
        const char* name;
        unsigned photos;
    } table[] = {{&ViewController::twoPhotoCollage, "twoPhoto", 2},
                 {&ViewController::threePhotoCollage, "threePhoto", 3}};
    for (const auto& c : table) {
        SCOPED_TRACE(c.name);
        YMSPhotoPickerTheme::sharedInstance().reset();
        ((*home).*c.entry)();
        settle();
        EXPECT_EQ(home->selectedBtnStr, c.name);
        const auto picker = presented<YMSPhotoPickerViewController>();
        ASSERT_TRUE(picker);
        EXPECT_EQ(picker->numberOfPhotoToSelect, c.photos);
        EXPECT_EQ(picker->delegate().get(), home.get());
        const UIColor teal{0.1568627450980392, 0.7686274509803922, 0.7137254901960784, 1};
        EXPECT_EQ(picker->theme().navigationBarBackgroundColor, teal);
        EXPECT_EQ(picker->theme().orderTintColor, teal);
        EXPECT_EQ(picker->theme().cameraVeilColor, teal);
        EXPECT_EQ(picker->theme().tintColor, UIColor::black());
        EXPECT_EQ(picker->theme().orderLabelTextColor, UIColor::black());
        home->dismissAllViewControllers();
        settle();
        EXPECT_FALSE(home->presentedViewController());
    }
}

TEST_F(HomeScreen, ABlendIsPushedAndForgetsNothing)
{
    home->selectedBtnStr = "twoPhoto";
    home->BlendPhoto();
    settle();
    EXPECT_TRUE(std::dynamic_pointer_cast<SourceChooser>(stack->topViewController()));
    EXPECT_EQ(home->selectedBtnStr, "twoPhoto");

    // What the blend presents goes in one step; the chooser stays.
    const auto crop = std::make_shared<UIViewController>();
    const auto editor = std::make_shared<UIViewController>();
    stack->topViewController()->present(crop, true);
    crop->present(editor, true);
    settle();
    NotificationCenter::defaultCenter().post("PinchZoomViewController");
    settle();
    EXPECT_FALSE(stack->presentedViewController());
    EXPECT_FALSE(crop->presentedViewController());
    EXPECT_EQ(stack->viewControllers().size(), 2u);
}

TEST_F(HomeScreen, PhotosFromOutsideBeginABlend)
{
    ASSERT_TRUE(home->wantsPhotos());
    home->receivePhotos({});
    settle();
    EXPECT_EQ(stack->topViewController(), home);
    std::vector<PhotoSource> photos(2);
    photos[0].path = folder.path("a.png");
    photos[1].path = folder.path("b.png");
    home->receivePhotos(photos);
    settle();
    const auto chooser = std::dynamic_pointer_cast<SourceChooser>(stack->topViewController());
    ASSERT_TRUE(chooser);
    ASSERT_EQ(chooser->photos.size(), 2u);
    EXPECT_EQ(chooser->photos[1].path, folder.path("b.png"));
}

TEST_F(HomeScreen, PickedPhotosReachTheCollageEditor)
{
    EXPECT_FALSE(home->collageAvailable());
    storyboard->addScene("CreateCollageViewController", {[] { return std::make_shared<CollageEditor>(); }, ""});
    storyboard->addSegue("nextPage", "CreateCollageViewController", UIStoryboard::SegueKind::Present);
    EXPECT_TRUE(home->collageAvailable());

    pick("threePhoto", {"a.png", "b.png", "a.png"});
    const auto editor = presented<CollageEditor>();
    ASSERT_TRUE(editor);
    ASSERT_EQ(editor->images.size(), 3u);
    // 40 points less than the screen on each axis, at its scale.
    for (const UIImage& image : editor->images)
        EXPECT_EQ(image.pixelSize(), (IntSize{1005, 1881}));
    EXPECT_EQ(test::pixelAt(editor->images[0].cgImage(), 500, 900)[2], 10);
    EXPECT_EQ(test::pixelAt(editor->images[1].cgImage(), 500, 900)[2], 200);
}

TEST_F(HomeScreen, AnotherNumberOfPhotosOpensNothing)
{
    const struct {
        const char* entry;
        std::vector<std::string> names;
        std::size_t kept;
        const char* alert;
    } table[] = {
        {"threePhoto", {"a.png", "b.png"}, 2, "Oops / Please select 3 photos"},
        {"twoPhoto", {"a.png", "b.png", "a.png"}, 3, "Oops / Please select 2 photos"},
        {"twoPhoto", {"a.png", "gone.png"}, 1, "Oops / Please select 2 photos"}, // what can't be read does not count
        {"blendPhoto", {}, 0, "Oops / Please select 2 photos"},
        {"", {"a.png"}, 1, ""},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(testing::Message() << c.entry << ' ' << c.names.size());
        pick(c.entry, c.names);
        EXPECT_EQ(home->chosenImages.size(), c.kept);
        EXPECT_EQ(answerAlert(0), c.alert);
        EXPECT_FALSE(home->presentedViewController());
        EXPECT_EQ(home->selectedBtnStr, c.entry);
    }
}

TEST_F(HomeScreen, TheOtherWayIntoTheBlendEditorWorks)
{
    pick("blendPhoto", {"b.png", "a.png"});
    const auto editor = presented<BlendPhotoViewController>();
    ASSERT_TRUE(editor);
    ASSERT_EQ(editor->getImageArr.size(), 2u);
    EXPECT_TRUE(editor->getImageArr[0].isIdenticalTo(home->chosenImages[0]));
    EXPECT_EQ(test::pixelAt(editor->getImageArr[0].cgImage(), 500, 900)[2], 200);
}

TEST_F(HomeScreen, ASinglePictureIsKeptAndNothingOpens)
{
    home->chosenImages.resize(3);
    home->twoPhotoCollage();
    settle();
    const UIImage picture(test::rampPicture(4, 4, 0));
    const auto picker = presented<YMSPhotoPickerViewController>();
    picker->delegate()->photoPickerViewController(*picker, picture);
    settle();
    ASSERT_EQ(home->chosenImages.size(), 1u);
    EXPECT_TRUE(home->chosenImages[0].isIdenticalTo(picture));
    EXPECT_FALSE(home->presentedViewController());
}

TEST_F(HomeScreen, RefusedAccessLeadsToTheSettings)
{
    std::vector<std::string> opened;
    UIApplication::shared().setURLOpener([&](const std::string& url) {
        opened.push_back(url);
        return true;
    });
    YMSPhotoPickerViewController picker;
    home->photoPickerViewControllerDidReceivePhotoAlbumAccessDenied(picker);
    settle();
    EXPECT_EQ(answerAlert(0), "Allow photo album access? / Need your permission to access photo albumbs");
    EXPECT_TRUE(opened.empty());

    home->twoPhotoCollage();
    settle();
    const auto shown = presented<YMSPhotoPickerViewController>();
    home->photoPickerViewControllerDidReceiveCameraAccessDenied(*shown);
    settle();
    const auto alert = std::dynamic_pointer_cast<UIAlertController>(shown->presentedViewController());
    ASSERT_TRUE(alert);
    EXPECT_EQ(alert->title(), "Allow camera access?");
    EXPECT_EQ(alert->message(), "Need your permission to take a photo");
    EXPECT_EQ(alert->cancelIndex(), 0);
    alert->tap(1);
    settle();
    EXPECT_EQ(opened, std::vector<std::string>{"app-settings:"});
    EXPECT_EQ(home->presentedViewController(), shown);
    UIApplication::shared().setURLOpener({});
}

TEST_F(HomeScreen, ShortScreensSpaceTheEntriesByThemselves)
{
    const std::pair<double, double> table[] = {{480, 55}, {568, 55}, {568.5, 0}, {667, 0}};
    for (const auto& [height, spacing] : table) {
        UIScreen::setMain({{320, height}, 3});
        ViewController screen;
        screen.view();
        EXPECT_EQ(screen.verticlebtnConstraints, spacing) << height;
    }
}

} // namespace
} // namespace lamina
