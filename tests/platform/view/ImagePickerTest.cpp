#include "platform/view/UIImagePickerController.h"

#include "CommandRunner.h"
#include "ControllerBench.h"
#include "TestPictures.h"
#include "platform/base/Localization.h"
#include "platform/view/UIAlertController.h"

namespace lamina {
namespace {

/// Notes what it hears, and dismisses nothing.
class Listener : public UIImagePickerControllerDelegate {
public:
    void imagePickerControllerDidCancel(UIImagePickerController&) override { ++cancels; }
    void imagePickerController(UIImagePickerController&, const UIImagePickerInfo& info) override
    {
        picked.push_back(info);
    }
    int cancels = 0;
    std::vector<UIImagePickerInfo> picked;
};

class ImagePicker : public test::ControllerBench {
protected:
    ImagePicker()
    {
        test::writePng(folder.path("ramp.png"), test::rampPicture(40, 30, 5));
        test::writeFile(folder.path("notes.jpg"), "no photo");
        picker->setDelegate(listener);
    }
    ~ImagePicker() override { settle(); }

    static void settle() { EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20)); }
    void present()
    {
        rootScreen->present(picker, true);
        settle();
    }
    PhotoSource photo(const std::string& name) const { return PhotoSource::fromFile(folder.path(name)); }
    std::shared_ptr<UIAlertController> alert() const
    {
        return std::dynamic_pointer_cast<UIAlertController>(window.topViewController());
    }

    const test::TemporaryFolder folder;
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
    std::shared_ptr<UIImagePickerController> picker = std::make_shared<UIImagePickerController>();
};

TEST_F(ImagePicker, TheChosenPhotoReachesTheDelegate)
{
    std::vector<int> states;
    QObject::connect(picker.get(), &UIImagePickerController::stateChanged,
                     [&] { states.push_back(picker->property("state").toInt()); });
    present();
    EXPECT_EQ(picker->state(), UIImagePickerController::Choosing);
    picker->choose(photo("ramp.png"));
    EXPECT_EQ(picker->property("photoName").toString(), "ramp.png");
    picker->choose(photo("notes.jpg")); // too late
    settle();
    EXPECT_EQ(states, (std::vector<int>{UIImagePickerController::Loading, UIImagePickerController::Finished}));
    ASSERT_EQ(listener->picked.size(), 1u);
    EXPECT_EQ(listener->picked[0].name, "ramp.png");
    EXPECT_EQ(listener->picked[0].originalImage.pixelSize(), (IntSize{40, 30}));
    EXPECT_EQ(window.topViewController(), picker); // to be dismissed by the delegate

    picker->cancel();
    picker->fail({"ramp.png", "late"});
    settle();
    EXPECT_EQ(listener->cancels, 0);
    EXPECT_EQ(window.topViewController(), picker);
}

TEST_F(ImagePicker, CancellingIsToldOnceAndEndsTheReading)
{
    for (const bool loading : {false, true}) {
        SCOPED_TRACE(loading);
        listener->cancels = 0;
        picker = std::make_shared<UIImagePickerController>();
        picker->setDelegate(listener);
        present();
        if (loading)
            picker->choose(photo("ramp.png"));
        picker->cancel();
        picker->cancel();
        picker->choose(photo("ramp.png"));
        settle();
        EXPECT_EQ(listener->cancels, 1);
        EXPECT_TRUE(listener->picked.empty());
        EXPECT_EQ(picker->state(), UIImagePickerController::Finished);
        picker->dismiss(false);
        settle();
    }
}

TEST_F(ImagePicker, APhotoThatCannotBeReadIsNamedOverThePresenter)
{
    setTextLookup([](std::string_view key) { return std::string(key == "not a picture" ? "kein Bild" : ""); });
    picker->setModalPresentationStyle(UIModalPresentationStyle::CurrentContext);
    present();
    picker->choose(photo("notes.jpg"));
    settle();
    setTextLookup({});
    ASSERT_TRUE(alert());
    EXPECT_EQ(alert()->presentingViewController(), stack);
    EXPECT_EQ(alert()->title(), "Can’t open the photo");
    EXPECT_EQ(alert()->message(), "notes.jpg: kein Bild.");
    ASSERT_EQ(alert()->actions().size(), 1u);
    EXPECT_EQ(alert()->actions()[0].title, "OK");
    alert()->tap(0);
    settle();
    EXPECT_EQ(window.topViewController(), rootScreen);
    EXPECT_EQ(listener->cancels, 0);
    EXPECT_TRUE(listener->picked.empty());
}

TEST_F(ImagePicker, ItMayDieWhileItReads)
{
    picker->choose(photo("ramp.png"));
    const std::weak_ptr<UIImagePickerController> gone = picker;
    picker.reset();
    EXPECT_TRUE(gone.expired());
    settle();
    EXPECT_TRUE(listener->picked.empty());
    EXPECT_EQ(listener->cancels, 0);
}

TEST_F(ImagePicker, WithoutADelegateItDismissesItself)
{
    listener.reset();
    present();
    picker->choose(photo("ramp.png"));
    settle();
    EXPECT_EQ(window.topViewController(), rootScreen);
}

} // namespace
} // namespace lamina
