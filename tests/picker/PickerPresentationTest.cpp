#include "picker/YMSPhotoHelper.h"
#include "platform/base/DispatchQueue.h"
#include "platform/photos/PHPhotoLibrary.h"

#include <gtest/gtest.h>

#include <thread>

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

TEST_F(PickerPresentation, GoesByTheStatusOfTheLibrary)
{
    EXPECT_TRUE(present()) << "without an authoriser";
    const struct {
        PHAuthorizationStatus status;
        bool presented;
        bool refused;
    } table[] = {
        {PHAuthorizationStatus::Authorized, true, false},    {PHAuthorizationStatus::Restricted, false, true},
        {PHAuthorizationStatus::Denied, false, true},        {PHAuthorizationStatus::Limited, false, false},
        {PHAuthorizationStatus::NotDetermined, false, true}, // nobody to be asked
    };
    for (const auto& c : table) {
        SCOPED_TRACE(static_cast<int>(c.status));
        PHPhotoLibrary::setAuthorizer({[&] { return c.status; }, {}});
        delegate->refused.clear();
        EXPECT_EQ(present(), c.presented);
        EXPECT_EQ(delegate->refused == std::vector<const void*>{picker.get()}, c.refused);
    }
    PHPhotoLibrary::setAuthorizer({[] { return PHAuthorizationStatus::Denied; }, {}});
    delegate->wants = false;
    delegate->refused.clear();
    EXPECT_FALSE(present());
    EXPECT_TRUE(delegate->refused.empty());
}

TEST_F(PickerPresentation, WaitsForTheAnswerOfAPerson)
{
    DispatchQueue::main().bindToCurrentThread();
    for (const auto answer :
         {PHAuthorizationStatus::Authorized, PHAuthorizationStatus::Denied, PHAuthorizationStatus::Limited}) {
        SCOPED_TRACE(static_cast<int>(answer));
        std::thread person;
        PHPhotoLibrary::setAuthorizer({[] { return PHAuthorizationStatus::NotDetermined; },
                                       [&](PHPhotoLibrary::StatusHandler handler) {
                                           person = std::thread([answer, handler = std::move(handler),
                                                                 work = DispatchQueue::main().expectWork()]() mutable {
                                               handler(answer);
                                               handler = {};
                                           });
                                       }});
        delegate->refused.clear();
        EXPECT_EQ(present(), answer == PHAuthorizationStatus::Authorized);
        EXPECT_EQ(delegate->refused.size(), answer == PHAuthorizationStatus::Authorized ? 0u : 1u);
        person.join();
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
    EXPECT_EQ(theme.statusBarStyle, 0);
    EXPECT_EQ(theme.titleLabelFont, (UIFont{"", 18, UIFontWeight::Regular}));
    EXPECT_EQ(theme.albumNameLabelFont, (UIFont{"", 18, UIFontWeight::Light}));
    EXPECT_EQ(theme.selectionOrderLabelFont, (UIFont{"", 17, UIFontWeight::Regular}));
}

} // namespace
} // namespace lamina
