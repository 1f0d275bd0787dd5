#pragma once

#include "TestPictures.h"
#include "editors/collage/CollageComposition.h"
#include "editors/collage/CreateCollageViewController.h"
#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/UIAlertController.h"

#include <gtest/gtest.h>
#include <memory>

namespace lamina::test {

/// A collage of two photos of noise, on a screen of 96 points, with a clock that stands still.
class CollageColors : public testing::Test {
protected:
    void SetUp() override
    {
        Clock::setShared(clock);
        UIScreen::setMain({{96, 192}, 2});
        openWith(photo(1), photo(2));
    }
    void TearDown() override
    {
        DispatchQueue::main().runUntilIdle();
        Clock::setShared(nullptr);
    }

    static UIImage photo(unsigned seed, int width = 40, int height = 30)
    {
        return UIImage(noisePicture(width, height, CGImageAlphaInfo::NoneSkipLast, seed));
    }
    void openWith(const UIImage& first, const UIImage& second)
    {
        editor = std::make_shared<CreateCollageViewController>();
        editor->setSelectedImages({first, second});
        editor->canvasView();
    }
    const CollageComposition& state() const { return editor->composition(); }
    /// The current slot's picture, after all that is outstanding.
    UIImage shown() const
    {
        editor->landWork();
        EXPECT_TRUE(editor->currentImageView().image().isIdenticalTo(picture()));
        return picture();
    }
    UIImage picture() const { return state().photoSlots[state().current].image; }
    bool alertIsUp() const
    {
        DispatchQueue::main().runUntilIdle();
        return std::dynamic_pointer_cast<UIAlertController>(editor->presentedViewController()) != nullptr;
    }
    static testing::AssertionResult same(const UIImage& got, const UIImage& wanted)
    {
        return imagesMatch(got.cgImage(), wanted.cgImage());
    }

    const std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<CreateCollageViewController> editor;
};

} // namespace lamina::test
