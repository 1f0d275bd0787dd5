#include "cli/operations/OpCommand.h"

#include "cli/common/Command.h"
#include "cli/common/Messages.h"
#include "cli/common/PictureInput.h"
#include "cli/operations/OperationListing.h"
#include "gpu/core/TypedValue.h"
#include "platform/base/UIScreen.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/photos/PhotoSource.h"

#include <CLI/Option.hpp>
#include <cstddef>
#include <span>
#include <utility>

namespace lamina {

namespace {

constexpr ValueRange kPictureScales{0.01, 100};

/// Operations don't say why they gave no picture; with good arguments it is one of these.
constexpr const char* kNothing =
    "gives no picture: the result would be smaller than a pixel, longer than 262144 pixels or "
    "larger than 134 megapixels, or memory is short";

Result<UIImage> performed(const OperationStep& step, const UIImage& image)
{
    if (step.operation->check) {
        if (const Outcome suits = step.operation->check(image, step.values); !suits)
            return Error{step.text, suits.error().cause};
    }
    UIImage result = step.operation->perform(image, step.values);
    if (!result)
        return Error{step.text, kNothing};
    return result;
}

/// Takes the picture over, so that it goes as soon as the first operation has worked on it.
Result<UIImage> perform(ReadPicture read, std::span<const OperationStep> steps)
{
    UIImage image = std::move(read.picture);
    if (read.whole) {
        image = scaledBy(steps.front(), {std::move(image), read.whole});
        if (!image)
            return Error{steps.front().text, kNothing};
        steps = steps.subspan(1);
    }
    for (const OperationStep& step : steps) {
        Result<UIImage> result = performed(step, image);
        if (!result)
            return result;
        image = *std::move(result);
    }
    return image;
}

} // namespace

OpCommand::OpCommand(CLI::App& application)
    : BatchCommand(application, "op", "Picture operations in sequence: turn, crop, scale, tone, sharpen ...")
{
    options().set_help_flag("-h,--help", "Print this help with all operations and leave");
    options()
        .add_option("NAME", m_operations, "Operations, in the order in which they act: NAME or NAME=ARGUMENTS")
        ->type_name("");
    options().add_option("-i,--input", m_input, "The picture; - is standard input")->type_name("FILE");
    addBatch();
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
               "Examples: lamina op rotateInDegrees=90 scaleToFitSize=800x800 sharpenWithBias -i beach.jpg -o "
               "small.png\n"
               "          lamina op scaleToFitSize=256x256 --each *.jpg -o small/{name}.jpg\n"
               "          find . -name '*.heic' -print0 | lamina op autoEnhance --from - -o {name}.jpg";
    });
}

std::vector<std::string> OpCommand::inputs() const
{
    std::vector<std::string> files;
    if (!isBatch())
        files.push_back(m_input);
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
    if (Outcome given = checkInput(); !given)
        return given;
    return checkFiles();
}

Outcome OpCommand::checkInput() const
{
    if (isBatch() && !m_input.empty())
        return Error{"--input",
                     "is one picture, beside the many of --each and --from; an operation takes no second one"};
    if (!isBatch() && m_input.empty())
        return Error{name(), "--input is required, or many pictures with --each or --from"};
    return success();
}

Result<std::vector<UIImage>> OpCommand::read()
{
    const std::vector<std::string> files = inputs();
    std::vector<UIImage> pictures;
    DecodeOptions options = decodeOptions();
    for (const std::string& file : files) {
        std::string damage;
        options.warning = &damage;
        const Result<PhotoSource> source = pictureSource(file);
        if (!source)
            return source.error();
        const bool isFirst = !isBatch() && pictures.empty();
        Result<ReadPicture> read = readForSteps(*source, isFirst ? claimedSides(*source) : std::nullopt, m_steps,
                                                isFirst ? m_pictureScale : 1, options);
        if (!read)
            return read.error();
        if (!damage.empty())
            warn({source->name, damage});
        pictures.push_back(std::move(read->picture));
        if (isFirst)
            m_whole = read->whole;
    }
    return pictures;
}

Outcome OpCommand::prepare(std::vector<UIImage> shared)
{
    std::size_t used = 0;
    for (OperationStep& step : m_steps) {
        for (std::size_t i = step.files().size(); i > 0; --i)
            step.values.pictures.push_back(std::move(shared[used++]));
    }
    UIScreen screen;
    screen.scale = 1;
    UIScreen::setMain(screen);
    return success();
}

Result<UIImage> OpCommand::make(std::vector<UIImage> pictures)
{
    ReadPicture first{std::move(pictures.front()), m_whole};
    pictures.erase(pictures.begin());
    if (const Outcome ready = prepare(std::move(pictures)); !ready)
        return ready.error();
    return perform(std::move(first), m_steps);
}

std::size_t OpCommand::memoryFor(IntSize sides) const
{
    return memoryForSteps(sides, m_steps, m_pictureScale);
}

Result<OpCommand::Made> OpCommand::makeOf(const PhotoSource& source, std::optional<IntSize> sides,
                                          const DecodeOptions& options)
{
    Result<ReadPicture> read = readForSteps(source, sides, m_steps, m_pictureScale, options);
    if (!read)
        return read.error();
    Result<UIImage> picture = perform(std::move(*read), m_steps);
    return picture ? Result<Made>(Made{*std::move(picture)}) : picture.error();
}

ExitCode OpCommand::run()
{
    return m_json ? printData(operationsAsJson()) : BatchCommand::run();
}

} // namespace lamina
