#include "editors/frames/ThreeFramesViewController.h"

#include "editors/frames/Frames.h"
#include "platform/image/named/NamedPictures.h"
#include "platform/view/UIView.h"

#include <array>
#include <cstddef>
#include <functional>

namespace lamina {

void ThreeFramesViewController::setLayout(int frame, UIView& first, UIView& second, UIView& third, UIView& parentView)
{
    using Apply = void (ThreeFramesViewController::*)(UIView&, UIView&, UIView&);
    constexpr std::array<Apply, kThreeFramesCount> kFirstViews{
        &ThreeFramesViewController::firstView,  &ThreeFramesViewController::firstView1,
        &ThreeFramesViewController::firstView2, &ThreeFramesViewController::firstView3,
        &ThreeFramesViewController::firstView4, &ThreeFramesViewController::firstView5,
        &ThreeFramesViewController::firstView6, &ThreeFramesViewController::firstView7,
        &ThreeFramesViewController::firstView8, &ThreeFramesViewController::firstView9,
    };
    for (UIView* const view : {&third, &second, &first})
        parentView.bringSubviewToFront(*view);
    if (photosOf(frame) != 3)
        return;
    (this->*kFirstViews[static_cast<std::size_t>(frame - kThreeFrames)])(first, second, third);
    bringToFront(frame, std::array{std::ref(first), std::ref(second), std::ref(third)}, parentView);
}

void ThreeFramesViewController::firstView(UIView& first, UIView& second, UIView& third)
{
    applyMasks(kThreeFrames, std::array{std::ref(first), std::ref(second), std::ref(third)});
}

void ThreeFramesViewController::firstView1(UIView& first, UIView& second, UIView& third)
{
    applyMasks(kThreeFrames + 1, std::array{std::ref(first), std::ref(second), std::ref(third)});
}

void ThreeFramesViewController::firstView2(UIView& first, UIView& second, UIView& third)
{
    applyMasks(kThreeFrames + 2, std::array{std::ref(first), std::ref(second), std::ref(third)});
}

void ThreeFramesViewController::firstView3(UIView& first, UIView& second, UIView& third)
{
    applyMasks(kThreeFrames + 3, std::array{std::ref(first), std::ref(second), std::ref(third)});
}

void ThreeFramesViewController::firstView4(UIView& first, UIView& second, UIView& third)
{
    applyMasks(kThreeFrames + 4, std::array{std::ref(first), std::ref(second), std::ref(third)});
}

void ThreeFramesViewController::firstView5(UIView& first, UIView& second, UIView& third)
{
    applyMasks(kThreeFrames + 5, std::array{std::ref(first), std::ref(second), std::ref(third)});
}

void ThreeFramesViewController::firstView6(UIView& first, UIView& second, UIView& third)
{
    applyMasks(kThreeFrames + 6, std::array{std::ref(first), std::ref(second), std::ref(third)});
}

void ThreeFramesViewController::firstView7(UIView& first, UIView& second, UIView& third)
{
    applyMasks(kThreeFrames + 7, std::array{std::ref(first), std::ref(second), std::ref(third)});
}

void ThreeFramesViewController::firstView8(UIView& first, UIView& second, UIView& third)
{
    maskImage = imageNamed(kRoundMaskName);
    applyMasks(kThreeFrames + 8, std::array{std::ref(first), std::ref(second), std::ref(third)});
}

void ThreeFramesViewController::firstView9(UIView& first, UIView& second, UIView& third)
{
    applyMasks(kThreeFrames + 9, std::array{std::ref(first), std::ref(second), std::ref(third)});
}

} // namespace lamina
