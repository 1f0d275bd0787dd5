#pragma once

#include "CommandRunner.h"
#include "TestPictures.h"
#include "editors/collage/CollageComposition.h"
#include "editors/collage/CreateCollageViewController.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/TouchDispatcher.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIWindow.h"

#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lamina::test {

inline constexpr double kSide = 200;
inline constexpr CGPoint kMiddle{kSide / 2, kSide / 2};

/// Collages on a screen of 200 points, with fingers and a clock that stands still.
class CollageCanvas : public testing::Test {
protected:
    void SetUp() override
    {
        Clock::setShared(clock);
        UIScreen::setMain({{kSide, 2 * kSide}, 1});
        open(2);
    }
    void TearDown() override
    {
        window.setRootViewController(nullptr);
        settle();
        Clock::setShared(nullptr);
    }

    static void settle() { ASSERT_TRUE(DispatchQueue::main().runUntilIdle(20)); }

    /// Photos of different shapes, each of a colour of its own.
    static UIImage photo(int number)
    {
        const auto level = static_cast<std::uint8_t>(50 * number);
        return UIImage(solidPicture(20 + 10 * number, 50, {level, 90, 120, 255}, CGImageAlphaInfo::NoneSkipLast));
    }
    void open(int count)
    {
        std::vector<UIImage> photos;
        for (int number = 1; number <= count; ++number)
            photos.push_back(photo(number));
        editor = std::make_shared<CreateCollageViewController>();
        editor->setSelectedImages(photos);
        window.setRootViewController(editor);
        fingers.emplace(editor->canvasView());
        QObject::connect(editor.get(), &CreateCollageViewController::pointedOut, editor.get(),
                         [this](int slot) { pointed += std::to_string(slot); });
    }
    const CollageComposition& state() const { return editor->composition(); }
    const CollageSlot& slot(std::size_t index) const { return state().photoSlots[index]; }

    /// A finger that drags from that point: the first 10 points only make it a drag.
    void drag(CGPoint from, CGPoint by)
    {
        fingers->touchBegan(1, from, 0);
        fingers->touchMoved(1, {from.x + 10, from.y}, 0.1);
        fingers->touchMoved(1, {from.x + 10 + by.x / 2, from.y + by.y / 2}, 0.2);
        fingers->touchMoved(1, {from.x + 10 + by.x, from.y + by.y}, 0.3);
        fingers->touchEnded(1, {from.x + 10 + by.x, from.y + by.y}, 0.4);
    }
    /// The slots in the canvas, the lowest first, as numbers.
    std::string order() const
    {
        std::string numbers;
        for (const auto& view : editor->saveTheImg().subviews()) {
            for (std::size_t index = 0; index < 3; ++index)
                numbers += view.get() == editor->slotView(index) ? std::to_string(index + 1) : "";
        }
        return numbers;
    }
    /// Title and message of the alert in front, which is left; empty when there is none.
    std::string alertText() const
    {
        const auto alert = std::dynamic_pointer_cast<UIAlertController>(window.topViewController());
        if (!alert)
            return {};
        alert->tap(0);
        settle();
        return alert->title() + " / " + alert->message();
    }

    const std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    UIWindow window;
    std::shared_ptr<CreateCollageViewController> editor;
    std::optional<TouchDispatcher> fingers;
    std::string pointed; ///< slots that were pointed out
};

} // namespace lamina::test
