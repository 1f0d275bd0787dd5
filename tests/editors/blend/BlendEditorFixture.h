#pragma once

#include "TestPictures.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"

#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <vector>

namespace lamina::test {

inline constexpr int kSide = 64;
inline constexpr Rgba kRed{220, 40, 30, 255};
inline constexpr Rgba kBlue{40, 60, 200, 255};

inline UIImage flat(Rgba color)
{
    return UIImage(makePicture(kSide, kSide, [=](int, int) { return color; }));
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
        editor->view();
    }
    void TearDown() override
    {
        DispatchQueue::main().runUntilIdle();
        clearPickedImages();
        Clock::setShared(nullptr);
    }

    const BlendComposition& state() const { return editor->composition(); }
    void leaveMoveMode()
    {
        BlendComposition composition = state();
        composition.panBool = false;
        editor->setComposition(composition);
    }
    CGAffineTransform transform() const { return editor->imgView2().transform(); }
    UIPanGestureRecognizer& pan() { return gesture<UIPanGestureRecognizer>(); }
    UIPinchGestureRecognizer& pinch() { return gesture<UIPinchGestureRecognizer>(); }
    template <class Recognizer>
    Recognizer& gesture()
    {
        for (const auto& recognizer : editor->currentImageView().gestureRecognizers()) {
            if (auto* found = dynamic_cast<Recognizer*>(recognizer.get()))
                return *found;
        }
        throw std::runtime_error("the current photo has no such gesture");
    }
    std::vector<UIView*> stack() const
    {
        std::vector<UIView*> views;
        for (const auto& view : editor->mainImgView().subviews())
            views.push_back(view.get());
        return views;
    }

    const std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<BlendPhotoViewController> editor;
};

} // namespace lamina::test
