#include "app/IncomingRequests.h"

#include "ScreenTest.h"
#include "app/AppMenu.h"
#include "app/ImagePIckingViewController.h"
#include "app/PinchZoomViewController.h"
#include "app/ViewController.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "editors/collage/CreateCollageViewController.h"
#include "hud/SVProgressHUD.h"
#include "picker/YMSPhotoPickerViewController.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/UIImagePickerController.h"
#include "platform/view/UINavigationController.h"

#include <utility>
#include <vector>

namespace lamina::test {
namespace {

class Incoming : public ScreenTest {
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        home = storyboard->instantiate<ViewController>(scene::kHome);
        stack = UINavigationController::make(home);
        window.setRootViewController(stack);
        settle();
    }
    void TearDown() override
    {
        home.reset();
        stack.reset();
        ScreenTest::TearDown();
    }

    ApplicationRequest request(const std::string& action, std::vector<std::string> names = {}) const
    {
        for (std::string& name : names)
            name = folder.path(name);
        return {action, std::move(names), {}};
    }
    /// It is asked, and what follows has come to rest.
    void ask(const std::string& action, std::vector<std::string> names = {})
    {
        EXPECT_TRUE(requests.take(request(action, std::move(names))).ok());
        settle();
    }
    /// As the window does when a transition or a panel has ended.
    void lookAgain()
    {
        requests.lookAgain();
        settle();
    }
    void goHome()
    {
        window.setRootViewController(nullptr);
        settle();
        SetUp();
    }
    std::size_t numberOnStack() const { return stack->viewControllers().size(); }

    std::shared_ptr<ViewController> home;
    std::shared_ptr<UINavigationController> stack;
    std::vector<ApplicationRequest> windows; ///< that were opened
    bool opensWindows = true;
    IncomingRequests requests{window, [this](const ApplicationRequest& asked) -> Outcome {
                                  windows.push_back(asked);
                                  if (opensWindows)
                                      return success();
                                  return Error{{}, "no memory"};
                              }};
};

TEST_F(Incoming, BeginAsAStartDoesOverScreensWithoutWork)
{
    const auto isPicker = [&](unsigned photos) {
        const auto picker = top<YMSPhotoPickerViewController>();
        return picker && picker->numberOfPhotoToSelect == photos && numberOnStack() == 1;
    };
    const auto isCrop = [&] { return stack->presentedViewController() && numberOnStack() == 2; };
    const auto isCollage = [&] { return top<CreateCollageViewController>() && numberOnStack() == 2; };
    const struct {
        const char* what;
        std::function<void()> open;
        const char* action;
        std::vector<std::string> photos;
        std::function<bool()> done;
    } table[] = {
        {"home", [] {}, "three", {}, [&] { return isPicker(3); }},
        {"home, photos", [] {}, "", {"a.png"}, isCrop},
        {"the choice of the first photo", [&] { home->BlendPhoto(); }, "two", {"a.png", "b.png"}, isCollage},
        {"an empty picker", [&] { home->twoPhotoCollage(); }, "blend", {"a.png"}, isCrop},
        {"about",
         [&] { presentAbout(*home, AboutViewController::Page::About); },
         "two",
         {},
         [&] { return isPicker(2); }},
        {"live", [&] { presentLive(*home); }, "", {"a.png", "b.png", "a.png"}, isCollage},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(c.what);
        c.open(); // and is still on its way
        ask(c.action, c.photos);
        EXPECT_TRUE(c.done());
        const auto shown = window.topViewController();
        if (c.photos.empty())
            ask(c.action);
        EXPECT_EQ(window.topViewController(), shown) << "it is there already";
        goHome();
    }
    EXPECT_TRUE(windows.empty());
}

TEST_F(Incoming, PhotosGoToTheScreenThatWaitsForThem)
{
    home->BlendPhoto();
    settle();
    const auto chooser = top<ImagePIckingViewController>();
    firstPickedImage = UIImage(rampPicture(40, 40, 10));
    chooser->viewWillAppear(false);
    ASSERT_EQ(chooser->step(), 2);
    ask("", {"b.png"});
    EXPECT_EQ(numberOnStack(), 2u) << "the blend that was begun goes on";
    EXPECT_EQ(chooser->navigationController(), stack);
    EXPECT_TRUE(chooser->presentedViewController());
    EXPECT_TRUE(firstPickedImage);
}

TEST_F(Incoming, WhatComesInTheMidstOfAnotherIsNotLost)
{
    home->BlendPhoto();
    settle();
    EXPECT_TRUE(requests.take(request("", {"a.png"})).ok());
    ask("blend", {"b.png"});
    EXPECT_TRUE(stack->presentedViewController() && requests.isWaiting()) << "the first photo's crop";
    lookAgain();
    EXPECT_EQ(alertText(0), "Begin a blend? / What you are working on stays open.");
    ASSERT_EQ(windows.size(), 1u);
    EXPECT_EQ(windows[0].photos, request("", {"b.png"}).photos);
    goHome();

    presentAbout(*home, AboutViewController::Page::About);
    settle();
    bool followed = false;
    top<AboutViewController>()->dismiss(true, [&] {
        followed = true;
        EXPECT_EQ(window.topViewController(), home) << "nothing is done before";
    });
    ask("two");
    EXPECT_TRUE(followed && top<YMSPhotoPickerViewController>());
}

TEST_F(Incoming, WhatCannotBeOpenedIsToldAndTheRestFollows)
{
    for (const std::string action : {"", "two"}) {
        ApplicationRequest some = request(action);
        some.leftOut = Error{"d.jpg", "the file is not on this device"};
        EXPECT_TRUE(requests.take(some).ok());
        settle();
        EXPECT_EQ(alertText(), "Can’t open the photo / d.jpg: the file is not on this device.");
        lookAgain();
        EXPECT_EQ(top<YMSPhotoPickerViewController>() != nullptr, action == "two");
    }
}

TEST_F(Incoming, AQuestionThatGoesAwayIsAskedAgain)
{
    ask("", {"a.png", "b.png", "a.png"});
    const auto editor = top<CreateCollageViewController>();
    ASSERT_TRUE(editor);
    ask("two");
    home->dismissAllViewControllers();
    settle();
    EXPECT_EQ(alertText(1), "Begin a collage? / What you are working on stays open.");
    EXPECT_EQ(window.topViewController(), editor);
    EXPECT_FALSE(requests.isWaiting());
}

TEST_F(Incoming, WorkIsNotTouchedUnasked)
{
    ask("", {"a.png", "b.png", "a.png"});
    const auto editor = top<CreateCollageViewController>();
    ASSERT_TRUE(editor);
    const auto slot = [&] { return pixelAt(editor->composition().photoSlots[0].master.cgImage(), 0, 0)[2]; };
    ASSERT_EQ(slot(), 10);

    ask("", {"b.png"});
    EXPECT_EQ(alertText(2), "Open the photo? / What you are working on stays open.");
    EXPECT_TRUE(windows.empty());
    EXPECT_EQ(slot(), 10);

    ask("", {"b.png", "a.png"});
    EXPECT_EQ(alertText(1), "Open the photos? / What you are working on stays open.");
    ASSERT_EQ(windows.size(), 1u);
    EXPECT_EQ(windows.front().photos, request("", {"b.png", "a.png"}).photos);

    ask("", {"b.png", "a.png"});
    alertText(0);
    EXPECT_EQ(slot(), 200);
    EXPECT_TRUE(editor->canUndo());

    opensWindows = false;
    ask("blend", {"a.png"});
    EXPECT_EQ(alertText(0), "Begin a blend? / What you are working on stays open.");
    EXPECT_EQ(alertText(), "Can’t open a window / no memory");
    EXPECT_EQ(window.topViewController(), editor);
}

TEST_F(Incoming, WaitUnderWhatLetsNothingThroughAndComeInTheirOrder)
{
    presentFailure(*home, "Oops", {{}, "something"});
    settle();
    ask("two");
    ask("blend");
    EXPECT_TRUE(requests.isWaiting());
    SVProgressHUD::setDefaultMaskType(4);
    SVProgressHUD::showWithStatus("");
    ASSERT_EQ(alertText(), "Oops / something");
    lookAgain();
    EXPECT_EQ(window.topViewController(), home);
    SVProgressHUD::dismiss();
    lookAgain();
    EXPECT_TRUE(top<ImagePIckingViewController>()) << "the last one";
    EXPECT_FALSE(requests.isWaiting());

    presentFailure(*home, "Oops", {{}, "something"});
    settle();
    int taken = 0;
    while (taken < 100 && requests.take(request("two")).ok())
        ++taken;
    EXPECT_EQ(taken, 16) << "no program makes this one hold what it likes";
    EXPECT_TRUE(requests.take({}).ok()) << "to come to the front needs no place";
}

} // namespace
} // namespace lamina::test
