#include "BlendEditorFixture.h"
#include "CommandRunner.h"
#include "platform/base/NotificationCenter.h"
#include "platform/photos/PhotoFolder.h"
#include "platform/view/UIAlertController.h"

#include <QString>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

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
    std::shared_ptr<UIAlertController> alert() const
    {
        return std::dynamic_pointer_cast<UIAlertController>(editor->presentedViewController());
    }
    static std::vector<fs::path> savedFiles()
    {
        std::vector<fs::path> files;
        if (fs::is_directory(photoLibraryFolder()))
            std::copy(fs::directory_iterator(photoLibraryFolder()), {}, std::back_inserter(files));
        return files;
    }
    /// Nothing can be saved: a file stands in the folder's place.
    static void blockTheFolder()
    {
        fs::create_directories(fs::path(photoLibraryFolder()).parent_path());
        writeFile(photoLibraryFolder(), "");
    }

    const TemporaryFolder home;
};

TEST_F(BlendFinish, SavesWhatTheCanvasShowsAndSaysWhere)
{
    pan().perform({20, 0}, &editor->saveTheImg());
    editor->shareBtn();
    EXPECT_TRUE(editor->isSaving());
    editor->shareBtn(); // once is enough
    EXPECT_EQ(editor->mainImgView().backgroundColor(), UIColor::white());
    DispatchQueue::main().runUntilIdle();
    EXPECT_FALSE(editor->isSaving());

    const std::vector<fs::path> files = savedFiles();
    ASSERT_EQ(files.size(), 1u);
    const CGImage read = readPictureFile(files[0]);
    ASSERT_EQ(read.size(), (IntSize{2 * kSide, 2 * kSide}));
    // Red at a half on white on the left; over that, from point 20 on, blue at a half.
    EXPECT_LE(difference(pixelAt(read, 38, 64), {238, 148, 143, 255}), 1);
    EXPECT_LE(difference(pixelAt(read, 42, 64), {139, 104, 171, 255}), 1);

    const QString folder = QString::fromStdString(files[0].parent_path());
    EXPECT_TRUE(folder.startsWith(QString::fromStdString(home.path())));
    const QString shown = "~" + folder.mid(static_cast<qsizetype>(home.path().size()));
    EXPECT_EQ(editor->notice(), "Saved to " + shown + "/" + QString::fromStdString(files[0].filename()));
    editor->dismissNotice();
    EXPECT_TRUE(editor->notice().isEmpty());
    editor->shareBtn();
    DispatchQueue::main().runUntilIdle();
    EXPECT_EQ(savedFiles().size(), 2u);
    EXPECT_FALSE(editor->notice().isEmpty());
}

TEST_F(BlendFinish, AFailureIsToldOverWhateverIsOpen)
{
    blockTheFolder();
    editor->backBtn();
    editor->shareBtn();
    DispatchQueue::main().runUntilIdle();
    EXPECT_FALSE(editor->isSaving());
    EXPECT_TRUE(editor->notice().isEmpty());
    ASSERT_TRUE(alert());
    const auto told = std::dynamic_pointer_cast<UIAlertController>(alert()->presentedViewController());
    ASSERT_TRUE(told);
    EXPECT_EQ(told->title(), "Can’t save the picture");
    const QString message = told->messageText();
    EXPECT_TRUE(message.startsWith("~/") && message.contains("/Lamina: ") && message.endsWith(".")) << told->message();
    ASSERT_EQ(told->actions().size(), 1u);
    EXPECT_EQ(told->actions()[0].title, "OK");
}

TEST_F(BlendFinish, TheFileIsWrittenAlsoWhenTheScreenIsGone)
{
    editor->shareBtn();
    const std::weak_ptr<BlendPhotoViewController> gone = editor;
    editor.reset();
    ASSERT_TRUE(gone.expired());
    DispatchQueue::main().runUntilIdle();
    EXPECT_EQ(savedFiles().size(), 1u);
}

TEST_F(BlendFinish, DiscardingAsksFirst)
{
    std::vector<const void*> senders;
    bool slotsWereFull = false;
    const NotificationObserver observer =
        NotificationCenter::defaultCenter().addObserver("PinchZoomViewController", [&](const Notification& note) {
            senders.push_back(note.sender);
            slotsWereFull = firstPickedImage && secondPickedImage;
        });
    for (const int answer : {1, 0}) {
        editor->backBtn();
        DispatchQueue::main().runUntilIdle();
        const auto question = alert();
        ASSERT_TRUE(question);
        EXPECT_EQ(question->title(), "⚠️");
        EXPECT_EQ(question->message(), "Discard Editing");
        ASSERT_EQ(question->actions().size(), 2u);
        EXPECT_EQ(question->actions()[0].title, "YES");
        EXPECT_EQ(question->actions()[1].title, "NO");
        EXPECT_EQ(question->actions()[answer].style, UIAlertActionStyle::Default);
        question->tap(answer);
        DispatchQueue::main().runUntilIdle();
        EXPECT_EQ(senders.empty(), answer == 1);
        EXPECT_EQ(static_cast<bool>(firstPickedImage), answer == 1);
        EXPECT_EQ(static_cast<bool>(secondPickedImage), answer == 1);
    }
    EXPECT_EQ(senders, std::vector<const void*>{editor.get()});
    EXPECT_TRUE(slotsWereFull);
}

} // namespace
} // namespace lamina::test
