#include "cli/OpCommand.h"

#include "cli/Messages.h"
#include "cli/Numbers.h"
#include "cli/OperationListing.h"
#include "cli/PictureInput.h"
#include "cli/PictureOutput.h"
#include "platform/base/UIScreen.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <cstddef>
#include <utility>

namespace lamina {

namespace {

constexpr double kMinimumPictureScale = 0.01;
constexpr double kMaximumPictureScale = 100;
constexpr int kFullSize = 0;

/// Operations don't say why they gave no picture; with good arguments it is one of these.
constexpr const char* kNothing =
    "gives no picture: the result would be smaller than a pixel, longer than 262144 pixels or "
    "larger than 134 megapixels, or memory is short";

std::string scaleFault(const std::string& text)
{
    const auto number = parseNumbers(text, 1);
    const bool good = number && number->front() >= kMinimumPictureScale && number->front() <= kMaximumPictureScale;
    return good ? "" : "expected a number from 0.01 to 100, not '" + text + "'";
}

bool isStandardInput(const OperationValues::Value& value)
{
    const std::string* path = std::get_if<std::string>(&value);
    return path && *path == "-";
}

/// Puts pictures in the place of the names of files.
Outcome readPictures(std::vector<OperationStep>& steps)
{
    for (OperationStep& step : steps) {
        for (OperationValues::Value& value : step.values.all()) {
            const std::string* path = std::get_if<std::string>(&value);
            if (!path)
                continue;
            Result<UIImage> picture = readPicture(*path, kFullSize);
            if (!picture)
                return picture.error();
            value = std::move(*picture);
        }
    }
    return std::monostate();
}

/// Takes the picture over, so that it goes as soon as the first operation has worked on it.
UIImage scaled(UIImage image, double scale)
{
    return UIImage(image.cgImage(), scale);
}

Result<UIImage> perform(UIImage image, const std::vector<OperationStep>& steps)
{
    for (const OperationStep& step : steps) {
        if (step.operation->refusal) {
            const std::string refusal = step.operation->refusal(image, step.values);
            if (!refusal.empty())
                return Error{step.text, refusal};
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
{
    CLI::App& options =
        *application.add_subcommand("op", "Picture operations in sequence: turn, crop, scale, tone, sharpen ...");
    options.set_help_flag("-h,--help", "Print this help with all operations and leave");
    options.add_option("NAME", m_operations, "Operations, in the order in which they act: NAME or NAME=ARGUMENTS")
        ->type_name("");
    options.add_option("-i,--input", m_input, "The picture; - is standard input")->type_name("FILE");
    options
        .add_option("-o,--output", m_output,
                    "File to write, " + outputExtensions() + " by its name; - is PNG on standard output")
        ->type_name("FILE");
    options.add_option("--picture-scale", m_pictureScale, "Pixels a point in the picture that is read [1]")
        ->type_name("S")
        ->check(scaleFault);
    options.add_flag("--json", m_json, "Print the list of operations for programs and leave");
    options.add_flag("-q,--quiet", m_quiet, "Say nothing but errors");
    options.footer([] {
        return operationsAsText() +
               "\nSizes are in points: pixels unless --picture-scale says otherwise. Tones and convolutions work on a\n"
               "picture of as many pixels as it has points.\n\n"
               "Example: lamina op rotateInDegrees=90 scaleToFitSize=800x800 sharpenWithBias -i beach.jpg -o small.png";
    });
}

Result<std::vector<OperationStep>> OpCommand::steps() const
{
    std::vector<OperationStep> steps;
    for (const std::string& text : m_operations) {
        Result<OperationStep> step = parseOperation(text);
        if (!step)
            return step.error();
        steps.push_back(std::move(*step));
    }
    return steps;
}

Outcome OpCommand::check(const std::vector<OperationStep>& steps) const
{
    if (steps.empty())
        return Error{"op", "name at least one operation; lamina op --help lists them"};
    if (m_input.empty())
        return Error{"op", "--input is required"};
    if (m_output.empty())
        return Error{"op", "--output is required"};
    auto standardInputs = std::ptrdiff_t{m_input == "-" ? 1 : 0};
    for (const OperationStep& step : steps)
        standardInputs += std::ranges::count_if(step.values.all(), isStandardInput);
    if (standardInputs > 1)
        return Error{"op", "standard input can be only one of the pictures"};
    return checkOutputName(m_output);
}

ExitCode OpCommand::run()
{
    if (m_json)
        return printData(operationsAsJson());
    Result<std::vector<OperationStep>> steps = this->steps();
    if (!steps)
        return fail(steps.error(), ExitCode::Usage);
    if (const Outcome whole = check(*steps); !whole)
        return fail(whole.error(), ExitCode::Usage);

    Result<UIImage> picture = readPicture(m_input, kFullSize);
    if (!picture)
        return fail(picture.error(), ExitCode::Input);
    if (const Outcome read = readPictures(*steps); !read)
        return fail(read.error(), ExitCode::Input);

    UIScreen screen;
    screen.scale = 1;
    UIScreen::setMain(screen);
    const Result<UIImage> result = perform(scaled(std::move(*picture), m_pictureScale), *steps);
    if (!result)
        return fail(result.error(), ExitCode::Failed);
    return deliverPicture(*result, m_output, m_quiet);
}

} // namespace lamina
