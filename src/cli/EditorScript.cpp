#include "cli/EditorScript.h"

#include "app/MainStoryboard.h"
#include "editors/stickers/IQStickerView.h"
#include "editors/stickers/StickerBoard.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/view/UIViewController.h"

#include <memory>
#include <numbers>

namespace lamina {

ScriptStage::ScriptStage(CGSize size, double scale)
{
    UIScreen::setMain({size, scale});
    registerMainStoryboard();
    m_window.setRootViewController(std::make_shared<UIViewController>());
    letTransitionsRun();
}

void ScriptStage::letTransitionsRun()
{
    DispatchQueue::main().runUntilIdle();
}

void placeSticker(UIView& canvas, int tag, const StickerStep& step)
{
    IQStickerView* const sticker = StickerBoard::find(canvas, tag);
    if (!sticker)
        return;
    sticker->setBounds({{}, step.size});
    sticker->moveBy(step.centre.x - sticker->center().x, step.centre.y - sticker->center().y);
    sticker->turnBy(step.degrees * std::numbers::pi / 180);
}

} // namespace lamina
