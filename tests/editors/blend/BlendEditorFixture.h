#pragma once

#include "TestPictures.h"
#include "editors/blend/BlendComposition.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "editors/blend/PickedImages.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/TouchDispatcher.h"

#include <gtest/gtest.h>
#include <memory>
#include <optional>

namespace lamina::test {

inline constexpr int kSide = 64;
inline constexpr Rgba kRed{220, 40, 30, 255};
inline constexpr Rgba kBlue{40, 60, 200, 255};
inline constexpr Rgba kWhite{255, 255, 255, 255};

inline UIImage flat(Rgba color)
{
    return UIImage(solidPicture(kSide, kSide, color, CGImageAlphaInfo::NoneSkipLast));
}

/// The editor on a screen of 64 points at scale 2, a red photo under a blue one, with a clock that stands still.
class BlendEditor : public testing::Test {
protected:
    void SetUp() override
    {
        Clock::setShared(clock);
        UIScreen::setMain({{kSide, 2.0 * kSide}, 2});
        firstPickedImage = flat(kRed);
        secondPickedImage = flat(kBlue);
        editor = std::make_shared<BlendPhotoViewController>();
        fingers.emplace(editor->canvasView());
    }
    void TearDown() override
    {
        DispatchQueue::main().runUntilIdle();
        clearPickedImages();
        Clock::setShared(nullptr);
    }

    const BlendComposition& state() const { return editor->composition(); }
    CGAffineTransform transform() const { return editor->imgView2().transform(); }
    void leaveMoveMode()
    {
        BlendComposition composition = state();
        composition.mode = BlendMode::Tools;
        editor->setComposition(composition);
    }

    /// A finger that drags from the middle: the first 10 points only make it a drag.
    void dragBy(double x)
    {
        beginDrag(x);
        fingers->touchEnded(1, {kSide / 2.0 + 10 + x, kSide / 2.0}, 0.3);
    }
    void beginDrag(double x)
    {
        fingers->touchBegan(1, {kSide / 2.0, kSide / 2.0}, 0);
        fingers->touchMoved(1, {kSide / 2.0 + 10, kSide / 2.0}, 0.1);
        fingers->touchMoved(1, {kSide / 2.0 + 10 + x / 2, kSide / 2.0}, 0.15);
        fingers->touchMoved(1, {kSide / 2.0 + 10 + x, kSide / 2.0}, 0.2);
    }
    const std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<BlendPhotoViewController> editor;
    std::optional<TouchDispatcher> fingers;
};

} // namespace lamina::test
