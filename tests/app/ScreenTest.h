#pragma once

#include "CommandRunner.h"
#include "TestPictures.h"
#include "app/MainStoryboard.h"
#include "editors/blend/PickedImages.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/photos/PhotoSource.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIStoryboard.h"
#include "platform/view/UIWindow.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace lamina::test {

inline constexpr int kWidth = 375;

/// The screens of the main storyboard in a window that nobody sees, and two photos, a.png and b.png.
class ScreenTest : public testing::Test {
protected:
    void SetUp() override
    {
        UIScreen::setMain({{kWidth, 667}, 3});
        registerMainStoryboard();
        clearPickedImages();
        writePng(folder.path("a.png"), rampPicture(40, 30, 10));
        writePng(folder.path("b.png"), rampPicture(30, 40, 200));
    }
    void TearDown() override
    {
        window.setRootViewController(nullptr);
        settle();
        clearPickedImages();
    }

    static void settle() { ASSERT_TRUE(DispatchQueue::main().runUntilIdle(20)); }

    PhotoSource photo(const std::string& name) const { return PhotoSource::fromFile(folder.path(name)); }
    /// The screen in front, if it is of that class.
    template <class Screen>
    std::shared_ptr<Screen> top() const
    {
        return std::dynamic_pointer_cast<Screen>(window.topViewController());
    }
    /// Title and message of the alert in front, which is left by that button; empty when there is none.
    std::string alertText(int button = 0) const
    {
        const auto alert = top<UIAlertController>();
        if (!alert)
            return {};
        alert->tap(button);
        settle();
        return alert->title() + " / " + alert->message();
    }

    const TemporaryFolder folder;
    const std::shared_ptr<UIStoryboard> storyboard = UIStoryboard::named(kMainStoryboard);
    UIWindow window;
};

} // namespace lamina::test
