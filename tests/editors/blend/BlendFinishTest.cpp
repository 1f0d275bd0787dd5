#include "BlendEditorFixture.h"
#include "editors/common/EditorNotifications.h"
#include "export/ExportScenes.h"
#include "export/ExporterViewController.h"
#include "export/SavingTypeController.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/UIColor.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIStoryboard.h"

namespace lamina::test {
namespace {

class BlendFinish : public BlendEditor {
protected:
    std::shared_ptr<UIAlertController> alertOver(UIViewController& screen) const
    {
        DispatchQueue::main().runUntilIdle();
        return std::dynamic_pointer_cast<UIAlertController>(screen.presentedViewController());
    }
};

TEST_F(BlendFinish, SavingAsksForTheTypeAndFlattensOnWhite)
{
    addExportScenes(*UIStoryboard::named(kMainStoryboard));
    BlendComposition work = state();
    work.backdrop = UIColor{0, 1, 0, 1};
    for (BlendPhoto& photo : work.photos)
        photo.alpha = 0;
    editor->setComposition(work);
    beginDrag(10);
    editor->shareBtn();
    DispatchQueue::main().runUntilIdle();
    const auto chooser = std::dynamic_pointer_cast<SavingTypeController>(editor->presentedViewController());
    ASSERT_TRUE(chooser);
    EXPECT_EQ(transform().tx, 10) << "what a finger has done so far counts";
    fingers->touchMoved(1, {kSide, kSide}, 0.4);
    EXPECT_EQ(transform().tx, 10);

    chooser->selectRow(1);
    DispatchQueue::main().runUntilIdle();
    const auto exporter = std::dynamic_pointer_cast<ExporterViewController>(editor->presentedViewController());
    ASSERT_TRUE(exporter);
    const UIImage picture = exporter->tobeSavedimage();
    EXPECT_EQ(picture.pixelSize(), (IntSize{2 * kSide, 2 * kSide}));
    EXPECT_EQ(pixelAt(picture.cgImage(), kSide, kSide), kWhite);
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
