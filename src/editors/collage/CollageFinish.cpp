// The ways out of a collage.

#include "editors/collage/CreateCollageViewController.h"
#include "platform/view/UINavigationController.h"

namespace lamina {

void CreateCollageViewController::shareBtn()
{
    cancelGestures();
    finishStickers();
    m_finish->openChooser();
}

void CreateCollageViewController::prepareExport()
{
    finishStickers();
}

/// Nothing is seen of stickers but their pictures. A gesture may have changed the views since the last step.
void CreateCollageViewController::finishStickers()
{
    stickerEditing().hideHandlesAndBorders();
    readViews();
    amendRecorded([](CollageComposition& recorded) { StickerEditing::finish(recorded.stickers); });
}

void CreateCollageViewController::backBtn()
{
    if (const std::shared_ptr<UINavigationController> stack = navigationController())
        stack->popToRootViewController(true);
}

bool CreateCollageViewController::letGo()
{
    const bool shown = !shownPanel().isEmpty();
    if (shown)
        hidePanel();
    return shown || StickerEditor::letGo();
}

} // namespace lamina
