#pragma once

#include "CommandRunner.h"
#include "TestPictures.h"
#include "export/ExportProtocols.h"
#include "export/ExportScenes.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/view/UIStoryboard.h"
#include "platform/view/UIViewController.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace lamina::test {

inline constexpr double kScreenHeight = 700;

/// Hears all that the screens tell.
class Listener : public savingMethodPass,
                 public NewSavingMethod,
                 public DataPassingToShareController,
                 public ColorProfilePassed {
public:
    void selectedtypeWithType(SavingtypeMethod type) override { selected.push_back(type); }
    void methodCallWithType(SavingtypeMethod type) override { called.push_back(type); }
    void dataPassingDetails(const SaveModelDetails& details) override { records.push_back(details); }
    void profileSelected(int index) override { profiles.push_back(index); }

    std::vector<SavingtypeMethod> selected;
    std::vector<SavingtypeMethod> called;
    std::vector<SaveModelDetails> records;
    std::vector<int> profiles;
};

/// A screen of 375 x 700 points at scale 2 with an editor's screen that presents those of an export, and a home of its
/// own for the files.
class ExportScreens : public testing::Test {
protected:
    void SetUp() override
    {
        ::setenv("HOME", home.path().c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", home.path("config").c_str(), 1);
        ::setenv("LAMINA_MODULES", LAMINA_MODULES, 0);
        ::setenv("LAMINA_SOUNDS", LAMINA_SOUNDS, 0);
        UIScreen::setMain({{375, kScreenHeight}, 2});
        addExportScenes(*UIStoryboard::named(kMainStoryboard));
    }
    static void settle() { ASSERT_TRUE(DispatchQueue::main().runUntilIdle(60)); }

    /// What the editor presents, or what lies over that, if it is of that class.
    template <class Screen>
    std::shared_ptr<Screen> top() const
    {
        std::shared_ptr<UIViewController> screen = editor;
        while (const auto above = screen->presentedViewController())
            screen = above;
        return std::dynamic_pointer_cast<Screen>(screen);
    }
    /// A screen with its view loaded, presented by the editor.
    template <class Screen>
    std::shared_ptr<Screen> present(std::shared_ptr<Screen> screen)
    {
        screen->setModalPresentationStyle(UIModalPresentationStyle::OverCurrentContext);
        editor->present(screen, false);
        screen->view();
        settle();
        return screen;
    }

    const TemporaryFolder home;
    const std::shared_ptr<UIViewController> editor = std::make_shared<UIViewController>();
    const std::shared_ptr<Listener> listener = std::make_shared<Listener>();
};

} // namespace lamina::test
