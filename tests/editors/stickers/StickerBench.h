#pragma once

#include "TouchBench.h"
#include "editors/stickers/IQStickerView.h"

#include <numbers>
#include <string>

namespace lamina::test {

/// Logs all that stickers tell: small letters for the delegate, capitals for the observer.
struct StickerListener : IQStickerViewDelegate, IQStickerObserver {
    explicit StickerListener(std::string& out)
        : log(out)
    {
    }
    void stickerViewDidBeginEditing(IQStickerView&) override { log += 'b'; }
    void stickerViewDidChangeEditing(IQStickerView&) override { log += 'c'; }
    void stickerViewDidEndEditing(IQStickerView&) override { log += 'e'; }
    void stickerViewDidClose(IQStickerView&) override { log += 'x'; }
    void stickerViewDidShowEditingHandles(IQStickerView&) override { log += 's'; }
    void stickerViewDidHideEditingHandles(IQStickerView&) override { log += 'h'; }
    void stickerDidBegin(IQStickerView&) override { log += 'B'; }
    void stickerDidChange(IQStickerView&) override { log += 'C'; }
    void stickerDidEnd(IQStickerView&, EditSeries series) override { log += "EMZR"[static_cast<int>(series)]; }
    void stickerWasTapped(IQStickerView&) override { log += 'T'; }
    void stickerWasDeleted(IQStickerView&) override { log += 'X'; }

    std::string& log;
};

/// Fingers on stickers in a view of 400 by 400.
class StickerBench : public TouchBench {
protected:
    StickerBench() { child->removeFromSuperview(); }
    ~StickerBench() override { IQStickerView::releaseActiveStickerView(*root); }

    /// One with a content, heard of from now on.
    std::shared_ptr<IQStickerView> addSticker(const CGRect& frame)
    {
        auto sticker = addView<IQStickerView>(frame);
        sticker->setContentView(std::make_shared<UIView>());
        sticker->setDelegate(listener);
        sticker->setObserver(listener);
        return sticker;
    }
    /// One with its handles shown, in the middle.
    std::shared_ptr<IQStickerView> selectedSticker(double side = 200, double angle = 0)
    {
        auto sticker = addSticker({200 - side / 2, 200 - side / 2, side, side});
        sticker->turnBy(angle);
        sticker->showEditingHandles();
        log.clear();
        return sticker;
    }
    /// "CX,CY WIDTHxHEIGHT@DEGREES"
    static std::string geometry(const IQStickerView& sticker)
    {
        const CGSize size = sticker.bounds().size;
        const CGAffineTransform turn = sticker.transform();
        return text(sticker.center()) + ' ' + number(size.width) + 'x' + number(size.height) + '@' +
               number(std::atan2(turn.b, turn.a) * 180 / std::numbers::pi);
    }

    const std::shared_ptr<StickerListener> listener = std::make_shared<StickerListener>(log);
};

} // namespace lamina::test
