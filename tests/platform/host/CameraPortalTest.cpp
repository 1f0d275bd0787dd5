#include "platform/host/system/CameraPortal.h"

#include "EventPump.h"
#include "PipeWireSession.h"
#include "StandInCamera.h"
#include "TestPortal.h"
#include "platform/base/NotificationCenter.h"
#include "platform/media/capture/CaptureService.h"
#include "platform/view/UIImagePickerController.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lamina::test {
namespace {

using Status = AVAuthorizationStatus;

/// A portal and PipeWire, neither of which is one.
class Cameras : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0); }
    void TearDown() override
    {
        cameras.reset();
        for (const int descriptor : {ends[0], ends[1], started})
            if (descriptor >= 0)
                ::close(descriptor);
    }

    void begin()
    {
        cameras = std::make_unique<CameraPortal>(sessionBus, service());
        EXPECT_FALSE(isAvailable()) << "nothing waits for the portal";
        cameras->begin();
    }
    CameraPortal::Service service()
    {
        const auto devices = [this](AVTrackMediaType) { return there; };
        return {[this](int descriptor) {
                    if (started >= 0)
                        ::close(started);
                    started = descriptor;
                    lost = false;
                },
                [this] { return lost; },
                devices,
                {[] { return Status::Authorized; }, {}, devices}};
    }
    static bool isAvailable()
    {
        return UIImagePickerController::isSourceTypeAvailable(UIImagePickerControllerSourceType::Camera);
    }
    /// The camera of the graph and of the pickers, for want of a better word.
    static bool is(Status status, bool available, std::size_t devices)
    {
        return AVCaptureDevice::videoAuthorizationStatus() == status && isAvailable() == available &&
               AVCaptureDevice::devices().size() == devices;
    }
    std::optional<bool> askForAccess()
    {
        const auto answer = std::make_shared<std::optional<bool>>();
        AVCaptureDevice::requestVideoAccess([answer](bool granted) { *answer = granted; });
        (void)runUntil([&] { return answer->has_value(); }, 5000);
        return *answer;
    }
    bool hasStartedWithThePortalsSocket() const
    {
        struct stat one {};
        struct stat other {};
        return ::fstat(started, &one) == 0 && ::fstat(ends[1], &other) == 0 && one.st_ino == other.st_ino &&
               (::fcntl(started, F_GETFD) & FD_CLOEXEC) != 0;
    }

    int ends[2] = {-1, -1};
    int started = -1; ///< the descriptor that PipeWire has
    bool lost = false;
    std::vector<std::shared_ptr<AVCaptureDevice>> there{std::make_shared<StandInCamera>()};
    std::unique_ptr<CameraPortal> cameras;
};

TEST_F(Cameras, AreAskedForAtThePortalAndComeByItsConnection)
{
    TestPortal portal;
    portal.setCamera(false, ends[1]);
    begin();
    int changes = 0;
    const auto observer = NotificationCenter::defaultCenter().addObserver(kAVCaptureDevicesDidChangeNotification,
                                                                          [&](const Notification&) { ++changes; });
    ASSERT_TRUE(runUntil([&] { return changes > 0; })); // the portal has answered
    EXPECT_TRUE(is(Status::NotDetermined, false, 0));
    portal.setCamera(true, ends[1]);
    ASSERT_TRUE(runUntil([&] { return is(Status::NotDetermined, true, 0); })) << "asking comes with the first use";
    EXPECT_TRUE(portal.questions().empty());

    portal.setAnswer(1, {});
    EXPECT_EQ(askForAccess(), false);
    EXPECT_TRUE(is(Status::Denied, true, 0)) << "so that somebody tells the user of it";
    portal.setAnswer(2, {}); // the dialog broke down
    EXPECT_EQ(askForAccess(), false);
    EXPECT_TRUE(is(Status::NotDetermined, true, 0));
    portal.setAnswer(0, {});
    EXPECT_EQ(askForAccess(), true);
    EXPECT_TRUE(is(Status::Authorized, true, 1));
    EXPECT_TRUE(hasStartedWithThePortalsSocket());
    EXPECT_EQ(askForAccess(), true);
    EXPECT_EQ(portal.questions().size(), 3u) << "who has granted it is not asked again";
    EXPECT_EQ(portal.remotesOpened(), 1);

    lost = true; // PipeWire was started anew
    AVCaptureDevice::devicesDidChange();
    EXPECT_TRUE(runUntil([&] { return !lost; }));
    EXPECT_EQ(portal.questions().size(), 3u);
    portal.setCamera(true, -1);
    lost = true;
    AVCaptureDevice::devicesDidChange();
    EXPECT_TRUE(runUntil([&] { return is(Status::NotDetermined, true, 0); })) << "the grant was taken back";
    cameras.reset();
    EXPECT_TRUE(is(Status::Authorized, false, 0));
}

TEST_F(Cameras, ComeFromPipeWireItselfWhereNoPortalKnowsThem)
{
    for (const bool withPortal : {false, true}) {
        const auto portal = withPortal ? std::make_unique<TestPortal>() : nullptr;
        cameras.reset();
        cameras = std::make_unique<CameraPortal>(sessionBus, service());
        EXPECT_EQ(askForAccess(), true); // which looks for the portal first
        EXPECT_TRUE(is(Status::Authorized, true, 1));
        EXPECT_EQ(started, -1);
    }
}

TEST_F(Cameras, OfARealServiceComeOverTheSocketAndAgainAfterItsRestart)
{
    PipeWireSession session(PipeWireSession::Camera);
    ASSERT_TRUE(session.runs());
    TestPortal portal;
    auto handOut = [&, held = -1]() mutable {
        if (held >= 0)
            ::close(held); // the bus has sent it on
        held = session.connectedSocket();
        portal.setCamera(true, held);
    };
    handOut();
    portal.setAnswer(0, {});
    cameras = std::make_unique<CameraPortal>();
    EXPECT_EQ(askForAccess(), true);
    const auto isThere = [] { return AVCaptureDevice::deviceWithUniqueID("test-camera") != nullptr; };
    ASSERT_TRUE(runUntil(isThere));
    session.stop();
    ASSERT_TRUE(runUntil([&] { return !isThere(); }));
    session.start();
    handOut();
    EXPECT_TRUE(runUntil(isThere));
    EXPECT_EQ(portal.questions().size(), 1u);
    cameras.reset();
    CaptureService::shared().stop();
}

} // namespace
} // namespace lamina::test
