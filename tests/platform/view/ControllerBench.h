#pragma once

#include "LogCapture.h"
#include "platform/base/DispatchQueue.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UINavigationController.h"
#include "platform/view/UIViewController.h"
#include "platform/view/UIWindow.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>

namespace lamina::test {

/// Writes down what it is told: "A+" will appear, "A!" did appear, "A-" will disappear, "A." did disappear, "At" the
/// window is about to have another size, "Al" the view has it.
class HeardScreen : public UIViewController {
public:
    HeardScreen(std::string name, std::string& log)
        : m_log(log)
    {
        setTitle(std::move(name));
    }
    void viewWillAppear(bool) override { note("+"); }
    void viewDidAppear(bool) override { note("!"); }
    void viewWillDisappear(bool) override { note("-"); }
    void viewDidDisappear(bool) override { note("."); }
    void viewWillTransitionToSize(CGSize) override { note("t"); }
    void viewDidLayoutSubviews() override { note("l"); }
    bool viewFollowsWindow() const override { return follows; }

    bool follows = false;

private:
    void note(const char* what) { m_log += title() + what + ' '; }

    std::string& m_log;
};

/// A window whose first screen is a stack that holds screen "R"; it has appeared.
class ControllerBench : public testing::Test {
protected:
    ControllerBench()
    {
        window.setRootViewController(stack);
        heard();
    }
    ~ControllerBench() override { turns(); }

    std::shared_ptr<HeardScreen> screen(const std::string& name,
                                        UIModalPresentationStyle style = UIModalPresentationStyle::FullScreen)
    {
        auto made = std::make_shared<HeardScreen>(name, log);
        made->setModalPresentationStyle(style);
        return made;
    }
    UIViewController::Completion note(std::string text)
    {
        return [this, text] { log += text + ' '; };
    }
    void turns() { DispatchQueue::main().drain(); }
    /// What was heard when all transitions are over.
    std::string heard()
    {
        turns();
        return std::exchange(log, {});
    }
    /// The alert that is on top; null: another screen is.
    std::shared_ptr<UIAlertController> alert() const
    {
        return std::dynamic_pointer_cast<UIAlertController>(window.topViewController());
    }

    LogCapture logged;
    std::string log;
    std::shared_ptr<HeardScreen> rootScreen = std::make_shared<HeardScreen>("R", log);
    std::shared_ptr<UINavigationController> stack = UINavigationController::make(rootScreen);
    UIWindow window;
};

} // namespace lamina::test
