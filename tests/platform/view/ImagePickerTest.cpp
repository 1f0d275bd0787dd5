#include "platform/view/UIImagePickerController.h"

#include "CommandRunner.h"
#include "ControllerBench.h"
#include "TestPictures.h"
#include "platform/view/UIAlertController.h"

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
    picker->choose(photo());
    settle();
    picker->cancel();
    picker->fail({"ramp.png", "late"});
    settle();
    EXPECT_EQ(listener->heard, "ramp.png 40 ");
    EXPECT_EQ(window.topViewController(), picker); // to be dismissed by the delegate
}

TEST_F(ImagePicker, ACameraThatNobodyServesIsAnsweredAtOnce)
{
    picker->cancel();
    rootScreen->dismiss(false);
    settle();
    const auto camera = std::make_shared<UIImagePickerController>();
    camera->setSourceType(UIImagePickerControllerSourceType::Camera);
    camera->setDelegate(listener);
    rootScreen->present(camera, true);
    settle();
    const auto alert = std::dynamic_pointer_cast<UIAlertController>(window.topViewController());
    ASSERT_TRUE(alert);
    EXPECT_EQ(alert->title(), "Camera Unavailable");
    EXPECT_FALSE(camera->presentingViewController());
}

TEST_F(ImagePicker, CancellingIsToldOnceAndEndsTheReading)
{
    picker->choose(photo());
    picker->cancel();
    picker->cancel();
    settle();
    EXPECT_EQ(listener->heard, "cancelled ");
}

} // namespace
} // namespace lamina::test
