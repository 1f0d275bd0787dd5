#include "app/HomeArt.h"

#include "editors/frames/FramePictures.h"
#include "editors/frames/Frames.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIScreen.h"

#include <array>
#include <span>
#include <string_view>

namespace lamina {

namespace {

/// As large as the largest print, in points.
constexpr double kEdge = 220;

constexpr std::array<std::string_view, 2> kTwoScenes{"scene_dawn", "scene_sea"};
constexpr std::array<std::string_view, 3> kThreeScenes{"scene_peak", "scene_dunes", "scene_sea"};

} // namespace

UIImage homeArt(std::size_t photos)
{
    const CGSize screen = UIScreen::main().bounds;
    const auto print = [&](int frame, std::span<const std::string_view> scenes) {
        return framePrint(frame, screen.width, screen.height, kEdge, scenes);
    };
    return photos == 2 ? print(kTwoFrames, kTwoScenes) : photos == 3 ? print(kThreeFrames, kThreeScenes) : UIImage();
}

} // namespace lamina
