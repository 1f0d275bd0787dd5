#include "cli/filters/FilterCommand.h"

#include "cli/common/ExitCode.h"
#include "cli/common/Messages.h"
#include "cli/filters/FilterDrawing.h"
#include "cli/filters/FilterListing.h"
#include "cli/filters/FilterParsing.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/photos/PhotoLoading.h"
#include "platform/photos/PhotoSource.h"

#include <CLI/Option.hpp>
#include <optional>
#include <utility>

namespace lamina {

namespace {

constexpr const char* kFooter =
    R"(The pictures fill the filter's inputs in the order in which they stand; the first gives the size.

Values are numbers (0.8), whole numbers, flags (0 or 1), points (X,Y), sizes (WxH), colours (R,G,B),
vectors (A,B,C,D), rectangles (X,Y,W,H), names of files, one of a few names, or lists of points and
matrices, whose rows are separated by ; and need quotes in a shell. Operations take several values with commas between them.
'lamina filters' lists all filters, 'lamina filters NAME' one with its properties, units and defaults.

Examples: lamina filter GPUImageSepiaFilter -i beach.jpg --set intensity=0.8 -o sepia.jpg
          lamina filter GPUImageLookupFilter -i beach.jpg -i table.png --set intensity=1 -o graded.png
          lamina filter GPUImageSolidColorGenerator --size 640x480 --set color=0.9,0.8,0.7,1 -o sand.png
          lamina filter GPUImageAverageColor -i beach.jpg --report
          lamina filter --pipeline old-film.json -i beach.jpg -o film.jpg
          lamina filter GPUImageLookupFilter --each *.jpg -i table.png -o graded/{name}.jpg

Of many pictures each takes the first place among the inputs, and the others are the same for all. --report prints an
object a line, {"file", "report"}, in the order of the files.)";

} // namespace

FilterCommand::FilterCommand(CLI::App& application)
    : BatchCommand(application, "filter", "Pictures through a GPU filter, or one through a chain")
{
    options().add_option("NAME", m_name, "The filter; 'lamina filters' lists them")->type_name("");
    options()
        .add_option("--pipeline", m_pipeline, "A chain of filters from a JSON file, instead of NAME")
        ->type_name("CONFIG.json");
    CLI::Option* input = options().add_option("-i,--input", m_inputs,
                                              "A picture; several for filters of several inputs; - is standard input");
    input->type_name("FILE ...");
    CLI::Option* set = options().add_option("--set", m_settings, "Set a property; later ones act after earlier ones");
    set->type_name("PROPERTY=VALUE ...");
    // One value each, so that a name or an option may follow.
    for (CLI::Option* repeated : {input, set})
        repeated->expected(1)->allow_extra_args(false)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    options()
        .add_option("--size", m_sizeText, "The output's pixels, for a generator that gets no picture")
        ->type_name("WxH");
    options().add_flag("--report", m_reports,
                       "Print what the filter finds as JSON on standard output; --output may be left out then");
    addBatch();
    addOutput();
    addQuiet();
    options().footer(kFooter);
}

Outcome FilterCommand::checkCount(std::size_t inputs, const std::string& whose) const
{
    if (!m_sizeText.empty() && !isPipeline() && !m_filter->isGenerator)
        return Error{"--size", "is for generators; " + whose + " needs " + countedPictures(inputs)};
    const std::size_t given = m_inputs.size() + (isBatch() ? 1 : 0);
    if (given == inputs)
        return success();
    return Error{name(), whose + " needs " + countedPictures(inputs) + ", " +
                             (given == 0 ? "none" : std::to_string(given)) +
                             (given < 2 ? " was given" : " were given")};
}

Outcome FilterCommand::checkFilter()
{
    const Result<const FilterDescription*> filter = filterNamed(m_name);
    if (!filter)
        return filter.error();
    Result<FilterSettings> settings = parseSettings(**filter, m_settings);
    if (!settings)
        return settings.error();
    m_filter = *filter;
    m_filterSettings = std::move(*settings);
    return m_filter->isGenerator ? checkGenerator() : checkCount(static_cast<std::size_t>(m_filter->inputs), m_name);
}

Outcome FilterCommand::checkGenerator()
{
    const bool hasPicture = isBatch() || !m_inputs.empty();
    if (m_sizeText.empty() && !hasPicture)
        return Error{name(), m_name + " needs a picture or --size WxH, neither was given"};
    if (m_sizeText.empty())
        return checkCount(1, m_name);
    if (hasPicture)
        return Error{"--size", "a picture gives its own size: leave out one of the two"};
    const Result<IntSize> size = parsePixelSize(m_sizeText);
    if (!size)
        return size.error();
    m_size = *size;
    return success();
}

Outcome FilterCommand::checkReport() const
{
    if (!m_reports)
        return success();
    if (isPipeline())
        return Error{"--report", "tells what one filter finds; a pipeline has none to tell of"};
    if (m_filter->reporting.results.empty())
        return Error{m_name, "finds nothing to report: it only makes a picture"};
    if (output() == "-")
        return Error{"--report", "goes to standard output, as the picture would; name a file for the picture"};
    return success();
}

Outcome FilterCommand::check()
{
    if (m_name.empty() != isPipeline())
        return Error{name(), "name one filter, or a chain with --pipeline"};
    if (isPipeline() && !m_settings.empty())
        return Error{"--set", "sets a property of one filter; a pipeline's values stand in its file"};
    if (isPipeline() && !m_sizeText.empty())
        return Error{"--size", "is for a generator; a pipeline draws its picture"};
    if (Outcome suits = isPipeline() ? checkCount(1, "a pipeline") : checkFilter(); !suits)
        return suits;
    if (Outcome suits = checkReport(); !suits)
        return suits;
    return checkFiles(!m_reports);
}

std::size_t FilterCommand::memoryLimit() const
{
    return kDrawingMemory;
}

Result<std::vector<UIImage>> FilterCommand::read()
{
    if (isPipeline()) {
        Result<PipelineConfiguration> chain = readPipeline(m_pipeline);
        if (!chain)
            return chain.error();
        m_chain = std::move(*chain);
    } else if (const Outcome usable = checkSettings(*m_filter, m_filterSettings); !usable) {
        return usable.error();
    }
    return BatchCommand::read();
}

void FilterCommand::tellReductions(const std::vector<UIImage>& pictures) const
{
    for (std::size_t i = 0; i < pictures.size() && !isQuiet(); ++i) {
        if (const std::optional<std::string> reduced = reductionNote(pictures[i]))
            warn({m_inputs[i], *reduced});
    }
}

Result<UIImage> FilterCommand::make(std::vector<UIImage> pictures)
{
    if (const Outcome context = drawingIsPossible(); !context)
        return context.error();
    if (!m_size.isEmpty())
        return generatedPicture(*m_filter, m_filterSettings, m_size);
    tellReductions(pictures);
    return draw(std::move(pictures), &m_report);
}

Result<UIImage> FilterCommand::draw(std::vector<UIImage> pictures, FilterReport* report) const
{
    return isPipeline()
               ? pictureThroughChain(m_chain, std::move(pictures.front()))
               : filteredPicture(*m_filter, m_filterSettings, std::move(pictures), m_reports ? report : nullptr);
}

Outcome FilterCommand::prepare(std::vector<UIImage> shared)
{
    m_shared = std::move(shared);
    return drawingIsPossible();
}

std::size_t FilterCommand::memoryFor(IntSize sides) const
{
    // Of each pixel: what the codec holds, the picture, its texture, those between the passes, and what comes back.
    constexpr std::size_t kBytesPerPixel = 32;
    return kBytesPerPixel * static_cast<std::size_t>(sides.width) * static_cast<std::size_t>(sides.height);
}

Result<FilterCommand::Made> FilterCommand::makeOf(const PhotoSource& source, std::optional<IntSize> /*sides*/,
                                                  const DecodeOptions& options)
{
    Result<UIImage> first = loadUpright(source, options);
    if (!first)
        return first.error();
    const std::lock_guard lock(m_drawing);
    const std::string reduced = isQuiet() ? std::string() : reductionNote(*first).value_or(std::string());
    std::vector<UIImage> pictures{*std::move(first)};
    pictures.insert(pictures.end(), m_shared.begin(), m_shared.end());
    FilterReport report;
    const Result<UIImage> drawn = draw(std::move(pictures), &report);
    if (!drawn)
        return drawn.error();
    Made made{*drawn};
    if (m_reports)
        made.report = reportAsJsonLine(source.name, m_filter->reporting.results, report);
    made.warning = reduced;
    return made;
}

ExitCode FilterCommand::deliver(const UIImage& picture)
{
    if (!output().empty()) {
        if (const ExitCode written = BatchCommand::deliver(picture); written != ExitCode::Good)
            return written;
    }
    return m_reports ? printData(reportAsJson(m_filter->reporting.results, m_report)) : ExitCode::Good;
}

} // namespace lamina
