#include "app/ViewController.h"

#include "CommandRunner.h"
#include "TestPictures.h"
#include "app/ImagePIckingViewController.h"
#include "app/MainStoryboard.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "editors/common/EditorNotifications.h"
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

class HomeScreen : public testing::Test {
protected:
    void SetUp() override
    {
        UIScreen::setMain({{375, 667}, 3});
        registerMainStoryboard();
        home = storyboard->instantiate<ViewController>(scene::kHome);
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
    const std::shared_ptr<UIStoryboard> storyboard = UIStoryboard::named(kMainStoryboard);
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
    home->receivePhotos({}); // no reason to leave
    EXPECT_EQ(stack->topViewController(), home);
    home->BlendPhoto();
    settle();
    EXPECT_TRUE(std::dynamic_pointer_cast<ImagePIckingViewController>(stack->topViewController()));
    EXPECT_EQ(home->selectedBtnStr, "twoPhoto");

    // What the blend presents goes in one step; the chooser stays.
    const auto crop = std::make_shared<UIViewController>();
    const auto editor = std::make_shared<UIViewController>();
    stack->topViewController()->present(crop, true);
    crop->present(editor, true);
    settle();
    NotificationCenter::defaultCenter().post(kDismissEditorsNotification);
    settle();
    EXPECT_FALSE(stack->presentedViewController());
    EXPECT_FALSE(crop->presentedViewController());
    EXPECT_EQ(stack->viewControllers().size(), 2u);
}

TEST_F(HomeScreen, PickedPhotosReachTheEditorInTheirOrder)
{
    EXPECT_FALSE(home->collageAvailable());
    storyboard->addScene("CreateCollageViewController", [] { return std::make_shared<CollageEditor>(); });
    storyboard->addSegue(segue::kPickedToCollage, "CreateCollageViewController", UIStoryboard::SegueKind::Present);
    EXPECT_TRUE(home->collageAvailable());
    const auto blues = [](const std::vector<UIImage>& images) {
        std::vector<int> read;
        for (const UIImage& image : images) {
            // 40 points less than the screen on each axis, at its scale.
            EXPECT_EQ(image.pixelSize(), (IntSize{1005, 1881}));
            read.push_back(test::pixelAt(image.cgImage(), 500, 900)[2]);
        }
        return read;
    };
    pick("threePhoto", {"a.png", "b.png", "a.png"});
    ASSERT_TRUE(presented<CollageEditor>());
    EXPECT_EQ(blues(presented<CollageEditor>()->images), (std::vector{10, 200, 10}));
    home->dismiss(false);
    settle();
    pick("blendPhoto", {"b.png", "a.png"});
    ASSERT_TRUE(presented<BlendPhotoViewController>());
    EXPECT_EQ(blues(presented<BlendPhotoViewController>()->getImageArr), (std::vector{200, 10}));
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
