#include "picker/YMSPhotoHelper.h"
#include "platform/base/DispatchQueue.h"
#include "platform/photos/PHPhotoLibrary.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>
#include <utility>

namespace lamina {
namespace {

class Delegate : public YMSPhotoPickerViewControllerDelegate {
public:
    bool wants = true;
    std::vector<const void*> refused;

    bool respondsTo(Call call) const override { return wants && call == Call::DidReceivePhotoAlbumAccessDenied; }
    void photoPickerViewControllerDidReceivePhotoAlbumAccessDenied(YMSPhotoPickerViewController& picker) override
    {
        EXPECT_TRUE(DispatchQueue::main().isCurrent());
        refused.push_back(&picker);
    }
};

class PickerPresentation : public testing::Test {
protected:
    void TearDown() override { PHPhotoLibrary::setAuthorizer({}); }

    /// Whether the picker was presented.
    bool present()
    {
        presenter = std::make_shared<UIViewController>();
        picker = std::make_shared<YMSPhotoPickerViewController>();
        yms_presentCustomAlbumPhotoView(*presenter, picker, delegate);
        EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20));
        const bool presented = presenter->presentedViewController() == picker;
        EXPECT_EQ(picker->delegate() == delegate, presented);
        return presented;
    }

    std::shared_ptr<UIViewController> presenter;
    std::shared_ptr<YMSPhotoPickerViewController> picker;
    const std::shared_ptr<Delegate> delegate = std::make_shared<Delegate>();
};

TEST_F(PickerPresentation, GoesByTheStatusOfTheLibraryAndTheAnswerOfTheUser)
{
    EXPECT_TRUE(present()) << "without an authoriser";
    DispatchQueue::main().bindToCurrentThread();
    using Status = PHAuthorizationStatus;
    const struct {
        Status status;
        std::optional<Status> answer; ///< given on another thread; none: nobody is asked
        bool presented;
        bool refused;
    } table[] = {
        {Status::Authorized, {}, true, false},
        {Status::Restricted, {}, false, true},
        {Status::Denied, {}, false, true},
        {Status::Limited, {}, false, false},
        {Status::NotDetermined, {}, false, true},
        {Status::NotDetermined, Status::Authorized, true, false},
        {Status::NotDetermined, Status::Denied, false, true},
        {Status::NotDetermined, Status::Limited, false, true},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(&c - table);
        std::thread user;
        const auto ask = [&](PHPhotoLibrary::StatusHandler handler) {
            user = std::thread([&c, handler = std::move(handler), work = DispatchQueue::main().expectWork()]() mutable {
                std::exchange(handler, {})(*c.answer);
            });
        };
        PHPhotoLibrary::setAuthorizer({[&] { return c.status; }, {}});
        if (c.answer)
            PHPhotoLibrary::setAuthorizer({[&] { return c.status; }, ask});
        for (const bool wants : {true, false}) {
            delegate->wants = wants;
            delegate->refused.clear();
            EXPECT_EQ(present(), c.presented);
            EXPECT_EQ(delegate->refused == std::vector<const void*>{picker.get()}, c.refused && wants);
            if (user.joinable())
                user.join();
        }
    }
}

TEST(PhotoPickerTheme, IsOneForAllPickersUntilItIsReset)
{
    YMSPhotoPickerTheme& theme = YMSPhotoPickerTheme::sharedInstance();
    YMSPhotoPickerViewController first;
    YMSPhotoPickerViewController second;
    first.theme().tintColor = UIColor::brown();
    first.theme().statusBarStyle = 1;
    first.theme().titleLabelFont.size = 30;
    EXPECT_EQ(second.theme().tintColor, UIColor::brown());
    EXPECT_EQ(second.preferredStatusBarStyle(), 1);

    theme.reset();
    EXPECT_EQ(theme, YMSPhotoPickerTheme());
    EXPECT_EQ(theme.tintColor, (UIColor{0, 122 / 255.0, 1, 1}));
    EXPECT_EQ(theme.titleLabelFont, (UIFont{"", 18, UIFontWeight::Regular}));
    EXPECT_EQ(theme.albumNameLabelFont, (UIFont{"", 18, UIFontWeight::Light}));
    EXPECT_EQ(theme.selectionOrderLabelFont, (UIFont{"", 17, UIFontWeight::Regular}));
}

} // namespace
} // namespace lamina
