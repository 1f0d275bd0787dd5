#include "cli/movie/MovieChain.h"

#include "cli/common/StepOption.h"
#include "cli/common/StepOptions.h"
#include "cli/filters/FilterDrawing.h"
#include "cli/filters/FilterParsing.h"
#include "gpu/core/GPUImageStage.h"
#include "gpu/filters/FilterCatalogue.h"

#include <CLI/App.hpp>
#include <CLI/Option.hpp>
#include <array>
#include <utility>

namespace lamina {

MovieChain::MovieChain()
    : m_options(std::make_unique<StepOptions<Step>>())
{
}

MovieChain::~MovieChain() = default;

void MovieChain::addTo(CLI::App& options)
{
    static constexpr std::array<StepOption<Step>, 2> kSteps{{
        {"--filter", "NAME", "Send every frame through a filter; several act in their order",
         [](const std::string& text) {
             return Result<Step>(Step{true, text});
         }},
        {"--set", "PROPERTY=VALUE", "Set a property of the --filter before it",
         [](const std::string& text) {
             return Result<Step>(Step{false, text});
         }},
    }};
    m_options->addTo(options, kSteps);
    options.add_option("--pipeline", m_file, "A chain of filters from a JSON file, instead of --filter")
        ->type_name("CONFIG.json");
}

Outcome MovieChain::check(const CLI::App& options)
{
    std::vector<std::pair<std::string, std::vector<std::string>>> filters;
    for (const Step& step : m_options->inOrder(options)) {
        if (!m_file.empty())
            return Error{step.isFilter ? "--filter" : "--set", "a pipeline's filters and values stand in its file"};
        if (step.isFilter)
            filters.push_back({step.text, {}});
        else if (filters.empty())
            return Error{"--set", "sets a property of the filter before it; name one with --filter first"};
        else
            filters.back().second.push_back(step.text);
    }
    for (const auto& [name, settings] : filters)
        if (Outcome added = addFilter(name, settings); !added)
            return added;
    return success();
}

Outcome MovieChain::addFilter(const std::string& name, const std::vector<std::string>& settings)
{
    const Result<const FilterDescription*> filter = filterNamed(name);
    if (!filter)
        return filter.error();
    if ((*filter)->inputs != 1)
        return Error{name, "needs " + countedPictures(static_cast<std::size_t>((*filter)->inputs)) +
                               "; frames come one at a time"};
    Result<FilterSettings> parsed = parseSettings(**filter, settings);
    if (!parsed)
        return parsed.error();
    m_filters.emplace_back(*filter, std::move(*parsed));
    return success();
}

Outcome MovieChain::read()
{
    for (const auto& [filter, settings] : m_filters)
        if (Outcome usable = checkSettings(*filter, settings); !usable)
            return usable;
    if (m_file.empty())
        return success();
    Result<PipelineConfiguration> configuration = readPipeline(m_file);
    if (!configuration)
        return configuration.error();
    m_configuration = std::move(*configuration);
    return success();
}

std::vector<std::string> MovieChain::names() const
{
    std::vector<std::string> names;
    for (const auto& [filter, settings] : m_filters)
        names.push_back(filter->className);
    if (m_configuration)
        for (const PipelineConfiguration::Filter& filter : m_configuration->filters)
            names.push_back(filter.filterName);
    return names;
}

Result<std::unique_ptr<GPUImageFilterPipeline>> MovieChain::makePipeline(std::shared_ptr<GPUImageOutput> input) const
{
    if (m_configuration)
        return GPUImageFilterPipeline::makeWithConfiguration(*m_configuration, filterCatalogue(), std::move(input),
                                                             nullptr);
    GPUImageFilterPipeline::Filters filters;
    for (const auto& [description, settings] : m_filters) {
        Result<std::shared_ptr<GPUImageStage>> filter = makeFilter(*description, settings);
        if (!filter)
            return filter.error();
        filters.push_back(std::move(*filter));
    }
    return std::make_unique<GPUImageFilterPipeline>(std::move(filters), std::move(input), nullptr);
}

Result<std::unique_ptr<GPUImageFilterPipeline>> MovieChain::connect(const std::shared_ptr<GPUImageOutput>& input) const
{
    Result<std::unique_ptr<GPUImageFilterPipeline>> pipeline = makePipeline(input);
    if (!pipeline)
        return pipeline;
    const std::vector<std::string> filters = names();
    for (std::size_t i = 0; i < filters.size(); ++i)
        if (!(*pipeline)->filters()[i]->canRender())
            return shadersDontBuild(filters[i]);
    return pipeline;
}

} // namespace lamina
