#include "cli/OpCommand.h"

#include "cli/Command.h"
#include "cli/Messages.h"
#include "cli/OperationListing.h"
#include "gpu/core/TypedValue.h"
#include "platform/base/UIScreen.h"

#include <CLI/Option.hpp>
#include <cstddef>
#include <utility>

namespace lamina {

namespace {

constexpr ValueRange kPictureScales{0.01, 100};

/// Operations don't say why they gave no picture; with good arguments it is one of these.
constexpr const char* kNothing =
    "gives no picture: the result would be smaller than a pixel, longer than 262144 pixels or "
    "larger than 134 megapixels, or memory is short";

/// Takes the picture over, so that it goes as soon as the first operation has worked on it.
UIImage scaled(UIImage image, double scale)
{
    return UIImage(image.cgImage(), scale);
}

Result<UIImage> perform(UIImage image, const std::vector<OperationStep>& steps)
{
    for (const OperationStep& step : steps) {
        if (step.operation->check) {
            if (const Outcome suits = step.operation->check(image, step.values); !suits)
                return Error{step.text, suits.error().cause};
        }
        UIImage result = step.operation->perform(image, step.values);
        if (!result)
            return Error{step.text, kNothing};
        image = std::move(result);
    }
    return image;
}

} // namespace

OpCommand::OpCommand(CLI::App& application)
    : PictureCommand(application, "op", "Picture operations in sequence: turn, crop, scale, tone, sharpen ...")
{
    options().set_help_flag("-h,--help", "Print this help with all operations and leave");
    options()
        .add_option("NAME", m_operations, "Operations, in the order in which they act: NAME or NAME=ARGUMENTS")
        ->type_name("");
    options().add_option("-i,--input", m_input, "The picture; - is standard input")->type_name("FILE");
    addOutput();
    options()
        .add_option("--picture-scale", m_pictureScale, "Pixels a point in the picture that is read [1]")
        ->type_name("S")
        ->check(checkedBy([](const std::string& text) { return parseNumber(text, kPictureScales); }));
    options().add_flag("--json", m_json, "Print the list of operations for programs and leave");
    addQuiet();
    options().footer([] {
        return operationsAsText() +
               "\nSizes are in points: pixels unless --picture-scale says otherwise. Tones and convolutions work on a\n"
               "picture of as many pixels as it has points.\n\n"
               "Example: lamina op rotateInDegrees=90 scaleToFitSize=800x800 sharpenWithBias -i beach.jpg -o small.png";
    });
}

std::vector<std::string> OpCommand::inputs() const
{
    std::vector<std::string> files{m_input};
    for (const OperationStep& step : m_steps) {
        const std::vector<std::string> more = step.files();
        files.insert(files.end(), more.begin(), more.end());
    }
    return files;
}

Outcome OpCommand::parseSteps()
{
    for (const std::string& text : m_operations) {
        Result<OperationStep> step = parseOperation(text);
        if (!step)
            return step.error();
        m_steps.push_back(std::move(*step));
    }
    return success();
}

Outcome OpCommand::check()
{
    if (Outcome parsed = parseSteps(); !parsed)
        return parsed;
    if (m_steps.empty())
        return Error{name(), "name at least one operation; lamina op --help lists them"};
    if (m_input.empty())
        return Error{name(), "--input is required"};
    return checkFiles();
}

Result<UIImage> OpCommand::make(std::vector<UIImage> pictures)
{
    std::size_t used = 1;
    for (OperationStep& step : m_steps) {
        for (std::size_t i = step.files().size(); i > 0; --i)
            step.values.pictures.push_back(std::move(pictures[used++]));
    }
    UIScreen screen;
    screen.scale = 1;
    UIScreen::setMain(screen);
    return perform(scaled(std::move(pictures.front()), m_pictureScale), m_steps);
}

ExitCode OpCommand::run()
{
    return m_json ? printData(operationsAsJson()) : PictureCommand::run();
}

} // namespace lamina
