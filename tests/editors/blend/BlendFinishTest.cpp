#include "BlendEditorFixture.h"
#include "CommandRunner.h"
#include "editors/common/EditorNotifications.h"
#include "platform/base/NotificationCenter.h"
#include "platform/photos/PhotoFolder.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIApplication.h"

#include <cstdlib>
#include <filesystem>
#include <iterator>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

/// A home of its own, so that pictures go nowhere else.
class BlendFinish : public BlendEditor {
protected:
    void SetUp() override
    {
        ::setenv("HOME", home.path().c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", home.path("config").c_str(), 1);
        BlendEditor::SetUp();
    }
    std::shared_ptr<UIAlertController> alertOver(UIViewController& screen) const
    {
        DispatchQueue::main().runUntilIdle();
        return std::dynamic_pointer_cast<UIAlertController>(screen.presentedViewController());
    }

    const TemporaryFolder home;
};

TEST_F(BlendFinish, OnePictureIsSavedAtATime)
{
    for (const int saved : {1, 2}) {
        editor->shareBtn();
        editor->shareBtn();
        EXPECT_TRUE(editor->isSaving());
        DispatchQueue::main().runUntilIdle();
        EXPECT_FALSE(editor->isSaving());
        EXPECT_EQ(std::distance(fs::directory_iterator(photoLibraryFolder()), {}), saved);
        EXPECT_TRUE(editor->notice().startsWith("Saved to ~/")) << editor->notice().toStdString();
    }
}

TEST_F(BlendFinish, TheFolderOfASavedPictureCanBeShown)
{
    std::string opened;
    for (const bool opens : {true, false}) {
        UIApplication::shared().setURLOpener([&](const std::string& url) {
            opened = url;
            return opens;
        });
        editor->shareBtn();
        DispatchQueue::main().runUntilIdle();
        EXPECT_EQ(editor->noticeAction(), "Show");
        editor->actOnNotice();
        EXPECT_EQ(opened, "file://" + photoLibraryFolder());
        EXPECT_EQ(editor->notice() + editor->noticeAction(), "");
        EXPECT_EQ(alertOver(*editor) == nullptr, opens);
    }
    UIApplication::shared().setURLOpener({});
}

TEST_F(BlendFinish, WhatStandsInTheWayIsTold)
{
    fs::create_directories(fs::path(photoLibraryFolder()).parent_path());
    writeFile(photoLibraryFolder(), ""); // a file in the folder's place
    for (const bool memory : {true, false}) {
        UIScreen::setMain({{kSide, kSide}, memory ? 2 : 1e6});
        editor->shareBtn();
        const auto told = alertOver(*editor);
        ASSERT_TRUE(told);
        EXPECT_EQ(told->title(), "Can’t save the picture");
        EXPECT_TRUE(told->messageText().startsWith(memory ? "~/" : "The picture: not enough memory."))
            << told->message();
        told->tap(0);
        DispatchQueue::main().runUntilIdle();
    }
}

TEST_F(BlendFinish, DiscardingAsksFirst)
{
    int told = 0;
    const NotificationObserver observer =
        NotificationCenter::defaultCenter().addObserver(kDismissEditorsNotification, [&](const Notification& note) {
            EXPECT_EQ(note.sender, editor.get());
            EXPECT_TRUE(firstPickedImage && secondPickedImage); // they go after the screens
            ++told;
        });
    for (const int answer : {1, 0}) { // no, then yes
        EXPECT_EQ(told, 0);
        editor->backBtn();
        const auto question = alertOver(*editor);
        ASSERT_TRUE(question);
        EXPECT_EQ(question->cancelIndex(), -1); // two plain buttons
        question->tap(answer);
        DispatchQueue::main().runUntilIdle();
    }
    EXPECT_EQ(told, 1);
    EXPECT_FALSE(firstPickedImage || secondPickedImage);
}

} // namespace
} // namespace lamina::test
