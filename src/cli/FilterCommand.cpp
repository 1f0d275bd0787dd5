#include "cli/FilterCommand.h"

#include "cli/FilterDrawing.h"
#include "cli/FilterParsing.h"
#include "cli/Messages.h"
#include "cli/PictureInput.h"
#include "cli/PictureOutput.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

namespace lamina {

namespace {

constexpr int kFullSize = 0;

constexpr const char* kFooter =
    R"(The pictures fill the filter's inputs in the order in which they stand; the first gives the size.

Values are numbers (0.8), whole numbers, flags (0 or 1), points (X,Y), sizes (WxH), colours (R,G,B),
vectors (A,B,C,D) or matrices, whose rows are separated by ; and need quotes in a shell.
'lamina filters' lists all filters, 'lamina filters NAME' one with its properties, units and defaults.

Examples: lamina filter GPUImageSepiaFilter -i beach.jpg --set intensity=0.8 -o sepia.jpg
          lamina filter GPUImageLookupFilter -i beach.jpg -i table.png --set intensity=1 -o graded.png
          lamina filter --pipeline old-film.json -i beach.jpg -o film.jpg)";

} // namespace

FilterCommand::FilterCommand(CLI::App& application)
{
    CLI::App& options = *application.add_subcommand("filter", "Pictures through a GPU filter, or one through a chain");
    options.set_help_flag("-h,--help", "Print this help and leave");
    options.add_option("NAME", m_name, "The filter; 'lamina filters' lists them")->type_name("");
    options.add_option("--pipeline", m_pipeline, "A chain of filters from a JSON file, instead of NAME")
        ->type_name("CONFIG.json");
    CLI::Option* input =
        options
            .add_option("-i,--input", m_inputs, "A picture; several for filters of several inputs; - is standard input")
            ->type_name("FILE ...");
    CLI::Option* set = options.add_option("--set", m_settings, "Set a property; later ones act after earlier ones")
                           ->type_name("PROPERTY=VALUE ...");
    // One value each, so that a name or an option may follow.
    for (CLI::Option* repeated : {input, set})
        repeated->expected(1)->allow_extra_args(false)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    options
        .add_option("-o,--output", m_output,
                    "File to write, " + outputExtensions() + " by its name; - is PNG on standard output")
        ->type_name("FILE");
    options.add_flag("-q,--quiet", m_quiet, "Say nothing but errors");
    options.footer(kFooter);
}

Outcome FilterCommand::checkFiles(std::size_t inputs, const std::string& whose) const
{
    const std::size_t given = m_inputs.size();
    if (given != inputs) {
        return Error{"filter", whose + " needs " + countedPictures(inputs) + ", " +
                                   (given == 0 ? "none" : std::to_string(given)) +
                                   (given < 2 ? " was given" : " were given")};
    }
    if (m_output.empty())
        return Error{"filter", "--output is required"};
    if (std::ranges::count(m_inputs, "-") > 1)
        return Error{"filter", "standard input can be only one of the pictures"};
    return checkOutputName(m_output);
}

Result<std::vector<UIImage>> FilterCommand::readPictures() const
{
    std::vector<UIImage> pictures;
    for (const std::string& path : m_inputs) {
        Result<UIImage> picture = readPicture(path, kFullSize);
        if (!picture)
            return picture.error();
        pictures.push_back(std::move(*picture));
    }
    return pictures;
}

void FilterCommand::tellReductions(const std::vector<UIImage>& pictures) const
{
    for (std::size_t i = 0; i < pictures.size() && !m_quiet; ++i) {
        if (const std::optional<std::string> reduced = reductionNote(pictures[i]))
            warn({m_inputs[i], *reduced});
    }
}

ExitCode FilterCommand::deliver(const Result<UIImage>& picture) const
{
    if (!picture)
        return fail(picture.error(), ExitCode::Failed);
    return deliverPicture(*picture, m_output, m_quiet);
}

ExitCode FilterCommand::runFilter()
{
    const Result<const FilterDescription*> filter = filterNamed(m_name);
    if (!filter)
        return fail(filter.error(), ExitCode::Usage);
    const Result<FilterSettings> settings = parseSettings(**filter, m_settings);
    if (!settings)
        return fail(settings.error(), ExitCode::Usage);
    if (const Outcome files = checkFiles(static_cast<std::size_t>((*filter)->inputs), m_name); !files)
        return fail(files.error(), ExitCode::Usage);

    const Result<std::vector<UIImage>> pictures = readPictures();
    if (!pictures)
        return fail(pictures.error(), ExitCode::Input);

    if (const Outcome context = drawingIsPossible(); !context)
        return fail(context.error(), ExitCode::Failed);
    tellReductions(*pictures);
    return deliver(filteredPicture(**filter, *settings, *pictures));
}

ExitCode FilterCommand::runPipeline()
{
    if (!m_settings.empty())
        return fail({"--set", "sets a property of one filter; a pipeline's values stand in its file"}, ExitCode::Usage);
    if (const Outcome files = checkFiles(1, "a pipeline"); !files)
        return fail(files.error(), ExitCode::Usage);

    const auto misunderstood = [&](const Error& error) {
        return fail({m_pipeline, "'" + error.subject + "': " + error.cause}, ExitCode::Input);
    };
    const Result<PipelineConfiguration> configuration = PipelineConfiguration::fromFile(m_pipeline);
    if (!configuration)
        return fail(configuration.error(), ExitCode::Input);
    if (const Outcome known = checkPipeline(*configuration); !known)
        return misunderstood(known.error());
    const Result<std::vector<UIImage>> pictures = readPictures();
    if (!pictures)
        return fail(pictures.error(), ExitCode::Input);

    if (const Outcome context = drawingIsPossible(); !context)
        return fail(context.error(), ExitCode::Failed);
    const Result<GPUImageFilterPipeline::Filters> filters = makeFilters(*configuration);
    if (!filters)
        return misunderstood(filters.error());
    tellReductions(*pictures);
    return deliver(pictureThroughChain(*filters, *configuration, pictures->front()));
}

ExitCode FilterCommand::run()
{
    if (m_name.empty() == m_pipeline.empty())
        return fail({"filter", "name one filter, or a chain with --pipeline"}, ExitCode::Usage);
    return m_pipeline.empty() ? runFilter() : runPipeline();
}

} // namespace lamina
