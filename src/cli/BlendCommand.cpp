#include "cli/BlendCommand.h"

#include "app/PinchZoomViewController.h"
#include "cli/ExitCode.h"
#include "cli/ExportDelivery.h"
#include "cli/PictureInput.h"
#include "editors/blend/PhotoCutting.h"
#include "export/functions/ExportWork.h"
#include "gpu/core/TypedValue.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"

#include <CLI/Option.hpp>
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <string_view>
#include <utility>
#include <variant>

namespace lamina {

namespace {

constexpr ValueRange kWidths{16, 2048};
constexpr ValueRange kScales{1, 16};
constexpr ValueRange kCropZooms{1, kMaximumCropZoom};
constexpr double kMaximumSide = 8192; // pixels: 256 MB of canvas

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

auto numberIn(const ValueRange& range)
{
    return checkedBy([range](const std::string& text) { return parseNumber(text, range); });
}

} // namespace

BlendCommand::BlendCommand(CLI::App& application)
    : PictureCommand(application, "blend", "Blend two photos into one picture", "photos")
{
    options().add_option("FIRST", m_photos[0], "The first photo; - is standard input")->required();
    options().add_option("SECOND", m_photos[1], "The second photo, laid over the first")->required();
    addOutput()->required();
    options()
        .add_option("--as", m_as, "Export the result: " + exportTypeNames() + "; --output is then a file or a folder")
        ->type_name("TYPE");
    options()
        .add_option("--width", m_width, "Side of the canvas in points [375]")
        ->type_name("W")
        ->check(numberIn(kWidths));
    options()
        .add_option("--scale", m_scale, "Pixels a point in the result [3]")
        ->type_name("S")
        ->check(numberIn(kScales));
    addSteps();
    addQuiet();
    m_settings.addTo(options());
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

void BlendCommand::addSteps()
{
    options()
        .add_option("--crop1", m_crops[0], std::string(kAboutCrops) + " [1,0,0]")
        ->type_name("ZOOM,X,Y")
        ->check(checkedBy(parseCrop));
    options()
        .add_option("--crop2", m_crops[1], "The same for the second photo")
        ->type_name("ZOOM,X,Y")
        ->check(checkedBy(parseCrop));
    for (const BlendStepOption& step : blendStepOptions())
        addStep(step);
}

void BlendCommand::addStep(const BlendStepOption& step)
{
    StepTexts& texts = m_steps.emplace_back();
    texts.step = &step;
    texts.option = options().add_option(step.name, texts.values, step.about);
    texts.option->type_name(std::string(step.syntax) + " ...")
        ->check([parse = step.parse](const std::string& text) {
            const Result<BlendStep> parsed = parse(text);
            return parsed ? std::string() : parsed.error().cause;
        })
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

std::optional<CropStep> BlendCommand::crop(std::size_t photo) const
{
    return m_crops[photo].empty() ? std::nullopt : std::optional(*parseCrop(m_crops[photo]));
}

std::vector<BlendStep> BlendCommand::steps() const
{
    std::vector<BlendStep> steps;
    std::map<const CLI::Option*, std::size_t> taken;
    for (const CLI::Option* option : options().parse_order()) {
        const auto texts = std::ranges::find(m_steps, option, &StepTexts::option);
        if (texts != m_steps.end())
            steps.push_back(*texts->step->parse(texts->values[taken[option]++]));
    }
    return steps;
}

Outcome BlendCommand::check()
{
    if (std::ceil(m_width * m_scale) > kMaximumSide)
        return Error{name(), "--width times --scale must not exceed 8192 pixels"};
    if (!m_as.empty()) {
        const Result<const ExportType*> type = exportTypeNamed(m_as);
        if (!type)
            return type.error();
        m_type = *type;
    }
    if (Outcome settings = m_settings.check(m_type); !settings)
        return settings;
    Outcome files = checkFiles();
    if (files || files.error().subject == name())
        return files;
    return Error{name(), files.error().subject + ": " + files.error().cause};
}

Result<std::vector<UIImage>> BlendCommand::read()
{
    return readPictures(inputs(), static_cast<int>(std::ceil(kMaximumCropZoom * m_width)), ReadingOrder::AtOnce);
}

Result<UIImage> BlendCommand::make(std::vector<UIImage> pictures)
{
    BlendScript script(m_width, m_scale);
    for (std::size_t i = 0; i < pictures.size(); ++i)
        script.cropPhoto(std::exchange(pictures[i], {}), crop(i));
    for (const BlendStep& step : steps())
        script.perform(step);
    UIImage picture = script.flattened();
    if (!picture)
        return Error{output(), cause::kNoMemory};
    return picture;
}

Outcome BlendCommand::checkOutput() const
{
    if (!m_type)
        return PictureCommand::checkOutput();
    const Result<ExportPlace> place = exportPlaceOf(output(), *m_type);
    return place ? success() : Outcome(place.error());
}

ExitCode BlendCommand::deliver(const UIImage& picture)
{
    if (!m_type)
        return PictureCommand::deliver(picture);
    return deliverExport({m_type, {picture, {}}, m_settings.optionsFor(picture), output(), {}, name(), isQuiet()});
}

} // namespace lamina
