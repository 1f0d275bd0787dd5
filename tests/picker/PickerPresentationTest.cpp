#include "picker/YMSPhotoHelper.h"
#include "platform/base/DispatchQueue.h"
#include "platform/photos/PHPhotoLibrary.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>
#include <utility>
#include <vector>

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
        const auto presenter = std::make_shared<UIViewController>();
        picker = std::make_shared<YMSPhotoPickerViewController>();
        yms_presentCustomAlbumPhotoView(*presenter, picker, delegate);
        EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20));
        const bool presented = presenter->presentedViewController() == picker;
        EXPECT_EQ(picker->delegate() == delegate, presented);
        return presented;
    }

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
        PHPhotoLibrary::Authorizer authorizer{[&] { return c.status; }, {}};
        if (c.answer) {
            authorizer.request = [&](PHPhotoLibrary::StatusHandler handler) {
                user = std::thread(
                    [&c, handler = std::move(handler), work = DispatchQueue::main().expectWork()]() mutable {
                        std::exchange(handler, {})(*c.answer);
                    });
            };
        }
        PHPhotoLibrary::setAuthorizer(authorizer);
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

} // namespace
} // namespace lamina
