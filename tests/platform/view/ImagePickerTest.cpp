#include "platform/view/UIImagePickerController.h"

#include "CommandRunner.h"
#include "ControllerBench.h"
#include "TestPictures.h"

namespace lamina::test {
namespace {

class ImagePicker : public ControllerBench {
protected:
    /// Notes what it hears, and dismisses nothing.
    class Listener : public UIImagePickerControllerDelegate {
    public:
        void imagePickerControllerDidCancel(UIImagePickerController&) override { heard += "cancelled "; }
        void imagePickerController(UIImagePickerController&, const UIImagePickerInfo& info) override
        {
            heard += info.name + ' ' + std::to_string(info.originalImage.pixelSize().width) + ' ';
        }
        std::string heard;
    };

    ImagePicker()
    {
        writePng(folder.path("ramp.png"), rampPicture(40, 30, 5));
        picker->setDelegate(listener);
        rootScreen->present(picker, true);
        settle();
    }
    ~ImagePicker() override { settle(); }

    static void settle() { EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20)); }
    PhotoSource photo() const { return PhotoSource::fromFile(folder.path("ramp.png")); }

    const TemporaryFolder folder;
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
    std::shared_ptr<UIImagePickerController> picker = std::make_shared<UIImagePickerController>();
};

TEST_F(ImagePicker, TheChosenPhotoReachesTheDelegateOnce)
{
    picker->choose(photo());
    EXPECT_EQ(picker->property("photoName").toString(), "ramp.png");
    EXPECT_EQ(picker->state(), UIImagePickerController::Loading);
    picker->choose(photo());
    settle();
    picker->cancel();
    picker->fail({"ramp.png", "late"});
    settle();
    EXPECT_EQ(picker->state(), UIImagePickerController::Finished);
    EXPECT_EQ(listener->heard, "ramp.png 40 ");
    EXPECT_EQ(window.topViewController(), picker); // to be dismissed by the delegate
}

TEST_F(ImagePicker, CancellingIsToldOnceAndEndsTheReading)
{
    picker->choose(photo());
    for (int i = 0; i < 2; ++i)
        picker->cancel();
    picker->choose(photo());
    settle();
    EXPECT_EQ(listener->heard, "cancelled ");
}

TEST_F(ImagePicker, AFailureIsToldOverThePresenterAndNotToTheDelegate)
{
    picker->fail({"notes.jpg", "not a picture"});
    settle();
    ASSERT_TRUE(alert());
    EXPECT_EQ(alert()->message(), "notes.jpg: not a picture.");
    EXPECT_EQ(alert()->presentingViewController(), stack);
    EXPECT_EQ(listener->heard, "");
}

TEST_F(ImagePicker, ItMayDieWhileItReads)
{
    auto alone = std::make_shared<UIImagePickerController>();
    alone->setDelegate(listener);
    alone->choose(photo());
    const std::weak_ptr<UIImagePickerController> gone = alone;
    alone.reset();
    EXPECT_TRUE(gone.expired());
    settle();
    EXPECT_EQ(listener->heard, "");
}

TEST_F(ImagePicker, WithoutADelegateItDismissesItself)
{
    listener.reset();
    picker->choose(photo());
    settle();
    EXPECT_EQ(window.topViewController(), rootScreen);
}

} // namespace
} // namespace lamina::test
