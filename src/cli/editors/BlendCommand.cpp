#include "cli/editors/BlendCommand.h"

#include "app/PinchZoomViewController.h"
#include "cli/common/Command.h"
#include "cli/common/PictureInput.h"
#include "editors/blend/PhotoCutting.h"
#include "gpu/core/TypedValue.h"
#include "platform/base/CGGeometry.h"

#include <CLI/Option.hpp>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <utility>
#include <variant>

namespace lamina {

namespace {

constexpr ValueRange kCropZooms{1, kMaximumCropZoom};

constexpr const char* kAboutCrops =
    "Zoom of the crop (1 to 6) and offset of the square in points from the photo's top left, "
    "after the zoom";

Result<CropStep> parseCrop(const std::string& text)
{
    const std::string_view whole = text;
    const std::size_t comma = whole.find(',');
    const std::string_view rest = comma == std::string_view::npos ? "" : whole.substr(comma + 1);
    const Result<double> zoom = parseNumber(whole.substr(0, comma), kCropZooms);
    const Result<TypedValue> offset = parseValue(rest, kind::kPoint);
    if (!zoom || !offset)
        return Error{text, "expected ZOOM,X,Y with a zoom from 1 to 6, as in 2,100,40"};
    return CropStep{*zoom, std::get<CGPoint>(*offset)};
}

} // namespace

BlendCommand::BlendCommand(CLI::App& application)
    : EditorCommand(application, "blend", "Blend two photos into one picture")
{
    options().add_option("FIRST", m_photos[0], "The first photo; - is standard input")->required();
    options().add_option("SECOND", m_photos[1], "The second photo, laid over the first")->required();
    addCanvas();
    addCrops();
    m_steps.addTo(options(), blendStepOptions());
    addDelivery();
    options().footer(
        "Options with ... may stand several times; they act in the order in which they stand, as in the window: "
        "contrast\n"
        "and brightness work from the photo as it was when the slider was first moved after the photo was chosen.\n"
        "The result has W x S pixels a side; the photos lie on white, each at half strength unless --opacity is "
        "told.\n\n"
        "Examples: lamina blend beach.jpg city.heic -o blend.png --crop1 2,100,40 --zoom 1.5 --move 20,-10\n"
        "          lamina blend a.jpg b.jpg -o c.png --turn 2:left --contrast 1:40 --opacity 2:0.7 --sticker "
        "sun@300,80");
}

void BlendCommand::addCrops()
{
    options()
        .add_option("--crop1", m_crops[0], std::string(kAboutCrops) + " [1,0,0]")
        ->type_name("ZOOM,X,Y")
        ->check(checkedBy(parseCrop));
    options()
        .add_option("--crop2", m_crops[1], "The same for the second photo")
        ->type_name("ZOOM,X,Y")
        ->check(checkedBy(parseCrop));
}

std::optional<CropStep> BlendCommand::crop(std::size_t photo) const
{
    return m_crops[photo].empty() ? std::nullopt : std::optional(*parseCrop(m_crops[photo]));
}

Result<std::vector<UIImage>> BlendCommand::read()
{
    const int side = static_cast<int>(std::ceil(kMaximumCropZoom * width()));
    return readPicturesAtOnce(inputs(), {side, side});
}

Result<UIImage> BlendCommand::make(std::vector<UIImage> pictures)
{
    BlendScript script(width(), scale());
    for (std::size_t i = 0; i < pictures.size(); ++i)
        script.cropPhoto(std::exchange(pictures[i], {}), crop(i));
    for (const BlendStep& step : m_steps.inOrder(options()))
        script.perform(step);
    return madeOrNoMemory(script.flattened());
}

} // namespace lamina
