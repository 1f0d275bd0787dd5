#include "cli/editors/EditorScript.h"

#include "app/MainStoryboard.h"
#include "editors/stickers/IQStickerView.h"
#include "editors/stickers/StickerBoard.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/view/UIAlertController.h"
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

std::optional<std::string> ScriptStage::alertOver(const UIViewController& screen)
{
    const auto alert = std::dynamic_pointer_cast<UIAlertController>(screen.presentedViewController());
    if (!alert)
        return std::nullopt;
    const std::string& text = alert->message();
    return text.substr(0, text.size() - (text.ends_with('.') ? 1 : 0));
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
