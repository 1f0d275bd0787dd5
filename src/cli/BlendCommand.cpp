#include "cli/BlendCommand.h"

#include "app/PinchZoomViewController.h"
#include "cli/BlendScript.h"
#include "cli/Messages.h"
#include "cli/Numbers.h"
#include "cli/PictureInput.h"
#include "cli/PictureOutput.h"
#include "platform/base/Causes.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <cmath>
#include <future>
#include <string_view>

namespace lamina {

namespace {

constexpr double kMinimumWidth = 16;
constexpr double kMaximumWidth = 2048;
constexpr double kMaximumScale = 16;
constexpr double kMaximumSide = 8192; // pixels: 256 MB of canvas

constexpr const char* kAboutCrops =
    "Zoom of the crop (1 to 6) and offset of the square in points from the photo's top left, "
    "after the zoom";

std::optional<CropStep> parseCrop(const std::string& text)
{
    const auto numbers = parseNumbers(text, 3);
    if (!numbers || (*numbers)[0] < 1 || (*numbers)[0] > kMaximumCropZoom)
        return std::nullopt;
    return CropStep{(*numbers)[0], {(*numbers)[1], (*numbers)[2]}};
}

std::string cropFault(const std::string& text)
{
    return parseCrop(text) ? "" : "expected ZOOM,X,Y with a zoom from 1 to 6, as in 2,100,40, not '" + text + "'";
}

std::string moveFault(const std::string& text)
{
    return parseNumbers(text, 2) ? "" : "expected DX,DY in points, as in 20,-10, not '" + text + "'";
}

std::string zoomFault(const std::string& text)
{
    const auto number = parseNumbers(text, 1);
    return number && number->front() > 0 ? "" : "expected a factor above 0, as in 1.5, not '" + text + "'";
}

std::string sizeFault(const std::string& text, double low, double high)
{
    const auto number = parseNumbers(text, 1);
    if (number && number->front() >= low && number->front() <= high)
        return "";
    return "expected a number from " + std::to_string(static_cast<int>(low)) + " to " +
           std::to_string(static_cast<int>(high)) + ", not '" + text + "'";
}

/// Both photos at once, each on its own core. The first one's error comes first.
Result<std::array<UIImage, 2>> readPhotos(const std::array<std::string, 2>& paths, int shortSide)
{
    auto second = std::async(std::launch::async, readPicture, paths[1], shortSide);
    Result<UIImage> first = readPicture(paths[0], shortSide);
    Result<UIImage> other = second.get();
    if (!first)
        return first.error();
    if (!other)
        return other.error();
    return std::array<UIImage, 2>{std::move(*first), std::move(*other)};
}

} // namespace

BlendCommand::BlendCommand(CLI::App& application)
    : m_options(application.add_subcommand("blend", "Blend two photos into one picture"))
{
    CLI::App& options = *m_options;
    options.set_help_flag("-h,--help", "Print this help and leave");
    options.add_option("FIRST", m_arguments.photos[0], "The first photo; - is standard input")->required();
    options.add_option("SECOND", m_arguments.photos[1], "The second photo, laid over the first")->required();
    options
        .add_option("-o,--output", m_arguments.output,
                    "File to write, " + outputExtensions() + " by its name; - is PNG on standard output")
        ->required()
        ->type_name("FILE");
    options.add_option("--width", m_arguments.width, "Side of the canvas in points [375]")
        ->type_name("W")
        ->check([](const std::string& text) { return sizeFault(text, kMinimumWidth, kMaximumWidth); });
    options.add_option("--scale", m_arguments.scale, "Pixels a point in the result [3]")
        ->type_name("S")
        ->check([](const std::string& text) { return sizeFault(text, 1, kMaximumScale); });
    options.add_option("--crop1", m_crops[0], std::string(kAboutCrops) + " [1,0,0]")
        ->type_name("ZOOM,X,Y")
        ->check(cropFault);
    options.add_option("--crop2", m_crops[1], "The same for the second photo")->type_name("ZOOM,X,Y")->check(cropFault);
    m_move = options.add_option("--move", m_moves, "Move the second photo by points, inside its zoom")
                 ->type_name("DX,DY ...")
                 ->check(moveFault);
    m_zoom = options.add_option("--zoom", m_zooms, "Zoom the second photo about its centre")
                 ->type_name("S ...")
                 ->check(zoomFault);
    for (CLI::Option* step : {m_move, m_zoom})
        step->expected(1)->allow_extra_args(false)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    options.add_flag("-q,--quiet", m_arguments.quiet, "Say nothing but errors");
    options.footer("--move and --zoom may stand several times and act in the order in which they stand.\n"
                   "The result has W x S pixels a side; the photos lie on white, each at half strength.\n\n"
                   "Example: lamina blend beach.jpg city.heic -o blend.png --crop1 2,100,40 --zoom 1.5 --move 20,-10");
}

std::optional<std::string> BlendCommand::finishArguments()
{
    for (std::size_t i = 0; i < m_crops.size(); ++i) {
        if (!m_crops[i].empty())
            m_arguments.crops[i] = *parseCrop(m_crops[i]);
    }
    std::size_t moves = 0;
    std::size_t zooms = 0;
    for (const CLI::Option* option : m_options->parse_order()) {
        if (option == m_move) {
            const std::vector<double> by = *parseNumbers(m_moves[moves++], 2);
            m_arguments.steps.emplace_back(MoveStep{{by[0], by[1]}});
        } else if (option == m_zoom) {
            m_arguments.steps.emplace_back(ZoomStep{parseNumbers(m_zooms[zooms++], 1)->front()});
        }
    }
    if (m_arguments.photos[0] == "-" && m_arguments.photos[1] == "-")
        return "standard input can be only one of the photos";
    if (std::ceil(m_arguments.width * m_arguments.scale) > kMaximumSide)
        return "--width times --scale must not exceed 8192 pixels";
    if (const Outcome name = checkOutputName(m_arguments.output); !name)
        return name.error().subject + ": " + name.error().cause;
    return std::nullopt;
}

ExitCode BlendCommand::run()
{
    if (const std::optional<std::string> fault = finishArguments())
        return fail({"blend", *fault}, ExitCode::Usage);

    const int shortSide = static_cast<int>(std::ceil(kMaximumCropZoom * m_arguments.width));
    Result<std::array<UIImage, 2>> photos = readPhotos(m_arguments.photos, shortSide);
    if (!photos)
        return fail(photos.error(), ExitCode::Input);

    BlendScript script(m_arguments.width, m_arguments.scale);
    for (std::size_t i = 0; i < photos->size(); ++i)
        script.cropPhoto(std::exchange((*photos)[i], {}), m_arguments.crops[i]);
    for (const BlendStep& step : m_arguments.steps)
        script.perform(step);

    const UIImage picture = script.flattened();
    if (!picture)
        return fail({m_arguments.output, cause::kNoMemory}, ExitCode::Failed);
    return deliverPicture(picture, m_arguments.output, m_arguments.quiet);
}

} // namespace lamina
