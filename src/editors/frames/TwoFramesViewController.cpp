#include "editors/frames/TwoFramesViewController.h"

#include "editors/frames/Frames.h"
#include "platform/image/named/NamedPictures.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/UIView.h"

#include <array>
#include <cstddef>
#include <functional>

namespace lamina {

void TwoFramesViewController::setLayout(int frame, UIView& first, UIView& second, UIView& parentView)
{
    using Apply = void (TwoFramesViewController::*)(UIView&, UIView&);
    constexpr std::array<Apply, kTwoFramesCount> kFirstViews{
        &TwoFramesViewController::firstView,  &TwoFramesViewController::firstView1,
        &TwoFramesViewController::firstView2, &TwoFramesViewController::firstView3,
        &TwoFramesViewController::firstView4, &TwoFramesViewController::firstView5,
        &TwoFramesViewController::firstView6, &TwoFramesViewController::firstView7,
    };
    if (photosOf(frame) != 2)
        return;
    (this->*kFirstViews[static_cast<std::size_t>(frame - kTwoFrames)])(first, second);
    bringToFront(frame, std::array{std::ref(first), std::ref(second)}, parentView);
}

void TwoFramesViewController::firstView(UIView& first, UIView& second)
{
    applyMasks(kTwoFrames, std::array{std::ref(first), std::ref(second)});
}

void TwoFramesViewController::firstView1(UIView& first, UIView& second)
{
    applyMasks(kTwoFrames + 1, std::array{std::ref(first), std::ref(second)});
}

void TwoFramesViewController::firstView2(UIView& first, UIView& second)
{
    applyMasks(kTwoFrames + 2, std::array{std::ref(first), std::ref(second)});
}

void TwoFramesViewController::firstView3(UIView& first, UIView& second)
{
    applyMasks(kTwoFrames + 3, std::array{std::ref(first), std::ref(second)});
}

void TwoFramesViewController::firstView4(UIView& first, UIView& second)
{
    applyMasks(kTwoFrames + 4, std::array{std::ref(first), std::ref(second)});
}

void TwoFramesViewController::firstView5(UIView& first, UIView& second)
{
    applyMasks(kTwoFrames + 5, std::array{std::ref(first), std::ref(second)});
}

void TwoFramesViewController::firstView6(UIView& first, UIView& second)
{
    applyMasks(kTwoFrames + 6, std::array{std::ref(first), std::ref(second)});
}

void TwoFramesViewController::firstView7(UIView& first, UIView& second)
{
    applyMasks(kTwoFrames + 7, std::array{std::ref(first), std::ref(second)});
}

UIImage TwoFramesViewController::roundMask() const
{
    return imageNamed(kRoundMaskName);
}

} // namespace lamina
