#include "gpu/core/GPUImageFilterPipeline.h"

#include "gpu/core/TypedValue.h"
#include "platform/base/CGGeometry.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <variant>

namespace lamina {

namespace {

/// The parts of a text like "CGPoint(0.5, 0.5)". What stands before the type or behind the bracket is passed over.
struct ArgumentText {
    std::string_view type;
    std::string_view first; ///< up to the first comma
    std::string_view last;  ///< behind the last comma; empty without one
    std::string_view whole; ///< all between the brackets
};

std::optional<ArgumentText> partsOf(std::string_view text)
{
    std::optional<ArgumentText> parts;
    std::size_t begin = std::string_view::npos;
    for (const std::string_view type : {"float", "CGPoint", "NSString"}) {
        const std::size_t found = text.find(std::string(type) + "(");
        if (found >= begin)
            continue;
        const std::string_view inside = text.substr(found + type.size() + 1);
        const std::size_t end = inside.find(')');
        if (end == std::string_view::npos)
            continue;
        begin = found;
        const std::string_view whole = inside.substr(0, end);
        const std::size_t comma = whole.find(',');
        parts = ArgumentText{type, whole.substr(0, comma), {}, whole};
        if (comma == std::string_view::npos)
            continue;
        parts->last = whole.substr(whole.rfind(',') + 1);
        parts->last.remove_prefix(std::min(parts->last.find_first_not_of(" \t\r\n"), parts->last.size()));
    }
    return parts;
}

/// What such a text says, as a value of the type of `like`. Numbers fit every kind of number.
Result<TypedValue> argument(std::string_view text, const TypedValue& like)
{
    const std::optional<ArgumentText> parts = partsOf(text);
    if (!parts)
        return Error{std::string(text), "expected float(V), CGPoint(X, Y) or NSString(TEXT)"};
    const bool isNumber =
        std::holds_alternative<float>(like) || std::holds_alternative<int>(like) || std::holds_alternative<bool>(like);
    if (parts->type == "float" && isNumber)
        return parseValue(parts->first, kindOf(like));
    if (parts->type == "CGPoint" && std::holds_alternative<CGPoint>(like))
        return parseValue(std::string(parts->first) + "," + std::string(parts->last), kindOf(like));
    if (parts->type == "NSString" && !isNumber)
        return parseValue(std::holds_alternative<std::string>(like) ? parts->first : parts->whole, kindOf(like));
    return Error{std::string(text), "expected a value of the type " + std::string(kindOf(like).name)};
}

/// The error of a value as part of its attribute.
Error misunderstood(const PipelineConfiguration::Attribute& attribute, const std::string& text, const Error& error)
{
    constexpr std::size_t kShown = 80;
    return {attribute.selector, "'" + text.substr(0, kShown) + "': " + error.cause};
}

/// What an attribute says, in values of the types of `like`.
Result<FilterSetting> settingOf(const PipelineConfiguration::Attribute& attribute, const std::string& name,
                                std::span<const TypedValue> like)
{
    if (attribute.values.size() != like.size()) {
        return Error{attribute.selector, "takes " + std::to_string(like.size()) +
                                             (like.size() == 1 ? " value" : " values") + ", not " +
                                             std::to_string(attribute.values.size())};
    }
    std::vector<TypedValue> values;
    for (std::size_t i = 0; i < like.size(); ++i) {
        Result<TypedValue> value = argument(attribute.values[i], like[i]);
        if (!value)
            return misunderstood(attribute, attribute.values[i], value.error());
        values.push_back(std::move(*value));
    }
    return FilterSetting(name, std::move(values));
}

Result<FilterSetting> settingOf(const FilterDescription& description, const PipelineConfiguration::Attribute& attribute)
{
    const auto property = std::ranges::find(description.properties, attribute.selector, &FilterProperty::selector);
    if (property != description.properties.end()) {
        Result<FilterSetting> setting = settingOf(attribute, property->name, {&property->fallback, 1});
        if (!setting || !property->check)
            return setting;
        if (const Outcome suits = property->check(setting->values.front()); !suits)
            return misunderstood(attribute, attribute.values.front(), suits.error());
        return setting;
    }
    const auto operation = std::ranges::find(description.selectors, attribute.selector, &FilterSelector::name);
    if (operation != description.selectors.end())
        return settingOf(attribute, operation->name, operation->arguments);
    return Error{attribute.selector, description.className + " has no such setter"};
}

/// A filter that is yet to be made.
struct Plan {
    const FilterDescription* description;
    FilterSettings settings;
};

Result<std::vector<Plan>> plansOf(const PipelineConfiguration& configuration, const FilterRegistry& registry)
{
    std::vector<Plan> plans;
    for (const PipelineConfiguration::Filter& wanted : configuration.filters) {
        Plan plan{registry.find(wanted.filterName), {}};
        if (!plan.description)
            return Error{wanted.filterName, "there is no such filter"};
        for (const PipelineConfiguration::Attribute& attribute : wanted.attributes) {
            Result<FilterSetting> setting = settingOf(*plan.description, attribute);
            if (!setting)
                return setting.error();
            plan.settings.push_back(std::move(*setting));
        }
        plans.push_back(std::move(plan));
    }
    return plans;
}

} // namespace

Outcome GPUImageFilterPipeline::check(const PipelineConfiguration& configuration, const FilterRegistry& registry)
{
    const Result<std::vector<Plan>> plans = plansOf(configuration, registry);
    if (!plans)
        return plans.error();
    return success();
}

Result<std::unique_ptr<GPUImageFilterPipeline>>
GPUImageFilterPipeline::makeWithConfiguration(const PipelineConfiguration& configuration,
                                              const FilterRegistry& registry, std::shared_ptr<GPUImageOutput> input,
                                              std::shared_ptr<GPUImageInput> output)
{
    const Result<std::vector<Plan>> plans = plansOf(configuration, registry);
    if (!plans)
        return plans.error();
    Filters filters;
    for (const Plan& plan : *plans) {
        Result<std::shared_ptr<GPUImageStage>> filter = makeFilter(*plan.description, plan.settings);
        if (!filter)
            return filter.error();
        filters.push_back(std::move(*filter));
    }
    return std::make_unique<GPUImageFilterPipeline>(std::move(filters), std::move(input), std::move(output));
}

Result<std::unique_ptr<GPUImageFilterPipeline>>
GPUImageFilterPipeline::makeWithConfigurationFile(const std::string& path, const FilterRegistry& registry,
                                                  std::shared_ptr<GPUImageOutput> input,
                                                  std::shared_ptr<GPUImageInput> output)
{
    const Result<PipelineConfiguration> configuration = PipelineConfiguration::fromFile(path);
    if (!configuration)
        return configuration.error();
    return makeWithConfiguration(*configuration, registry, std::move(input), std::move(output));
}

GPUImageFilterPipeline::GPUImageFilterPipeline(Filters orderedFilters, std::shared_ptr<GPUImageOutput> input,
                                               std::shared_ptr<GPUImageInput> output)
    : m_filters(std::move(orderedFilters))
    , m_input(std::move(input))
    , m_output(std::move(output))
{
    refreshFilters();
}

void GPUImageFilterPipeline::addFilter(std::shared_ptr<GPUImageStage> filter)
{
    addFilter(std::move(filter), m_filters.size());
}

void GPUImageFilterPipeline::addFilter(std::shared_ptr<GPUImageStage> filter, std::size_t index)
{
    if (index > m_filters.size() || !filter)
        return;
    m_filters.insert(m_filters.begin() + static_cast<std::ptrdiff_t>(index), std::move(filter));
    refreshFilters();
}

void GPUImageFilterPipeline::replaceFilterAtIndex(std::size_t index, std::shared_ptr<GPUImageStage> filter)
{
    if (index >= m_filters.size() || !filter)
        return;
    m_filters[index] = std::move(filter);
    refreshFilters();
}

void GPUImageFilterPipeline::removeFilter(const std::shared_ptr<GPUImageStage>& filter)
{
    if (std::erase(m_filters, filter) > 0)
        refreshFilters();
}

void GPUImageFilterPipeline::removeFilterAtIndex(std::size_t index)
{
    if (index >= m_filters.size())
        return;
    m_filters.erase(m_filters.begin() + static_cast<std::ptrdiff_t>(index));
    refreshFilters();
}

void GPUImageFilterPipeline::removeAllFilters()
{
    replaceAllFilters({});
}

void GPUImageFilterPipeline::replaceAllFilters(Filters filters)
{
    m_filters = std::move(filters);
    refreshFilters();
}

void GPUImageFilterPipeline::refreshFilters()
{
    std::erase(m_filters, nullptr);
    std::shared_ptr<GPUImageOutput> last = m_input;
    const auto connect = [&last](const std::shared_ptr<GPUImageInput>& next) {
        if (last)
            last->addTarget(next);
    };
    if (last)
        last->removeAllTargets();
    for (const auto& filter : m_filters) {
        connect(filter);
        filter->removeAllTargets();
        last = filter;
    }
    if (m_output)
        connect(m_output);
}

UIImage GPUImageFilterPipeline::currentFilteredFrame()
{
    return m_filters.empty() ? UIImage() : m_filters.back()->imageFromCurrentFramebuffer();
}

UIImage GPUImageFilterPipeline::currentFilteredFrameWithOrientation(UIImageOrientation orientation)
{
    return m_filters.empty() ? UIImage() : m_filters.back()->imageFromCurrentFramebufferWithOrientation(orientation);
}

CGImage GPUImageFilterPipeline::newCGImageFromCurrentFilteredFrame()
{
    return m_filters.empty() ? CGImage() : m_filters.back()->newCGImageFromCurrentlyProcessedOutput();
}

} // namespace lamina
