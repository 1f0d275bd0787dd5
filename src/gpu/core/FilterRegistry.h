#pragma once

#include "gpu/core/FilterResults.h"
#include "gpu/core/GPUImageStage.h"
#include "gpu/core/TypedValue.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/AlphaForm.h"

#include <cstddef>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace lamina {

/// Something to set on a filter.
struct FilterProperty {
    std::string name;    ///< as in the setter: "intensity" for `setIntensity`
    TypedValue fallback; ///< what a new filter has, and thereby the type
    /// The values that are useful, for each component. Advice for sliders and help: setters take others too, and say
    /// what they make of them.
    ValueRange range;
    std::string unit; ///< "pixels", "degrees", "share of the width" ...; empty where there is none
    std::string help; ///< one line, without a full stop
    /// Empty for an argument of the constructor: see `FilterDescription::make`.
    std::function<void(GPUImageStage& filter, const TypedValue& value)> set;
    /// What stands against a value, told before a filter is made: a file that can't be read, for instance. Empty where
    /// any value of the type will do.
    std::function<Outcome(const TypedValue& value)> check = {};

    /// How a pipeline names the setter: "setIntensity:" for "intensity"; "initWithIntensity:" for an argument of the
    /// constructor.
    std::string selector() const;
};

/// An operation of any number of arguments, "setColorRed:green:blue:" or "reset".
struct FilterSelector {
    std::string name;
    std::vector<TypedValue> arguments; ///< what changes nothing on a new filter, and thereby the types
    std::function<void(GPUImageStage& filter, std::span<const TypedValue> values)> call;
    std::string help = {}; ///< one line, without a full stop

    /// The name up to its first colon: "setColorRed".
    std::string_view keyword() const { return std::string_view(name).substr(0, name.find(':')); }
};

/// A property or an operation by its name, and its values: one for a property.
struct FilterSetting {
    std::string name;
    std::vector<TypedValue> values;

    FilterSetting(std::string property, TypedValue value)
        : name(std::move(property))
        , values{std::move(value)}
    {
    }
    FilterSetting(std::string operation, std::vector<TypedValue> arguments)
        : name(std::move(operation))
        , values(std::move(arguments))
    {
    }
};

/// In the order in which they are set.
using FilterSettings = std::vector<FilterSetting>;

/// All that parsing, help, listings and pages need to know of a filter.
struct FilterDescription {
    std::string className;
    std::string family; ///< "editor", "colour", "blend", "blur", "effect" or "detection"
    int inputs = 1;     ///< slots that must have a picture
    std::string help;   ///< one line, without a full stop
    std::vector<FilterProperty> properties;
    std::vector<FilterSelector> selectors;
    /// A new filter. Of the settings it looks at those whose property is an argument of the constructor.
    std::function<std::shared_ptr<GPUImageStage>(const FilterSettings& settings)> make;
    /// What the pictures of slots 0, 1, ... are to the filter, "base" and "overlay"; empty where it takes only one.
    std::vector<std::string> inputNames;
    /// What its formula takes colours for: as `GPUImageStage::alphaForm` of its filters.
    AlphaForm alphaForm = AlphaForm::Straight;
    /// Draws without a picture too, at a size that is given: a `GPUImageFilter` of one input with
    /// `forceProcessingAtSize` and `generateFrameAtTime`.
    bool isGenerator = false;
    /// What it tells in numbers beside its picture.
    FilterReporting reporting = {};
    /// What shows what it does: for sheets and pages of pictures, and to measure it. Empty: a new filter shows it.
    FilterSettings sample = {};

    /// The property of that name; null where there is none. Lives as long as the description.
    const FilterProperty* property(std::string_view name) const;
    /// The operation of that name or first keyword; null where there is none. Lives as long as the description.
    const FilterSelector* selector(std::string_view name) const;
};

/// The filters that can be made by name. Filled before it is used; reading is for any thread.
class FilterRegistry {
public:
    /// A later description of the same class takes the place of the former.
    void add(FilterDescription description);
    /// Null when there is none of this class.
    const FilterDescription* find(std::string_view className) const;
    /// All descriptions, sorted by class name.
    const std::map<std::string, FilterDescription, std::less<>>& all() const { return m_filters; }

private:
    std::map<std::string, FilterDescription, std::less<>> m_filters;
};

/// What stands against these settings: a name that the filter doesn't have (the error's subject), values of other types
/// or another number, a value that the property itself refuses.
Outcome checkSettings(const FilterDescription& description, const FilterSettings& settings);

/// A new filter with these settings, or what stands against them.
Result<std::shared_ptr<GPUImageStage>> makeFilter(const FilterDescription& description, const FilterSettings& settings);

/// The alternative of `TypedValue` that holds a setter's argument: any whole number is an `int`, any other a `float`.
template <class Argument>
using SetterValue =
    std::conditional_t<std::is_same_v<Argument, bool>, bool,
                       std::conditional_t<std::is_integral_v<Argument>, int,
                                          std::conditional_t<std::is_floating_point_v<Argument>, float, Argument>>>;

/// A property that has a setter of one argument:
///
///   filterProperty("intensity", &GPUImageSepiaFilter::setIntensity, 1.0F, {0, 1}, "", "Share of the tinted picture")
template <class Filter, class Argument>
FilterProperty filterProperty(std::string name, void (Filter::*setter)(Argument),
                              SetterValue<std::remove_cvref_t<Argument>> fallback, ValueRange range, std::string unit,
                              std::string help)
{
    using Plain = std::remove_cvref_t<Argument>;
    return {std::move(name),
            TypedValue(std::move(fallback)),
            range,
            std::move(unit),
            std::move(help),
            [setter](GPUImageStage& stage, const TypedValue& value) {
                (dynamic_cast<Filter&>(stage).*setter)(static_cast<Plain>(std::get<SetterValue<Plain>>(value)));
            }};
}

/// A property that is a choice: `kind` names the values of an enumeration that counts from 0, in its order, and must
/// live for ever.
template <class Filter, class Enumeration>
FilterProperty choiceProperty(std::string name, void (Filter::*setter)(Enumeration), const ValueKind& kind,
                              Enumeration fallback, std::string help)
{
    return {std::move(name),
            NamedChoice{&kind, static_cast<int>(fallback)},
            {},
            "",
            std::move(help),
            [setter](GPUImageStage& stage, const TypedValue& value) {
                (dynamic_cast<Filter&>(stage).*setter)(static_cast<Enumeration>(std::get<NamedChoice>(value).index));
            }};
}

/// An operation, with arguments that change nothing on a new filter:
///
///   filterOperation("rotateHue:", &GPUImageHSBFilter::rotateHue, "Turns the hue by so many degrees", 0.0F)
template <class Filter, class... Arguments>
FilterSelector filterOperation(std::string name, void (Filter::*operation)(Arguments...), std::string help,
                               SetterValue<std::remove_cvref_t<Arguments>>... start)
{
    return {std::move(name), std::vector<TypedValue>{TypedValue(std::move(start))...},
            [operation]([[maybe_unused]] GPUImageStage& stage, [[maybe_unused]] std::span<const TypedValue> values) {
                [&]<std::size_t... kIndices>(std::index_sequence<kIndices...>)
                {
                    (dynamic_cast<Filter&>(stage).*operation)(static_cast<std::remove_cvref_t<Arguments>>(
                        std::get<SetterValue<std::remove_cvref_t<Arguments>>>(values[kIndices]))...);
                }
                (std::index_sequence_for<Arguments...>());
            },
            std::move(help)};
}

/// A filter that is made without arguments.
template <class Filter>
FilterDescription filterDescription(std::string className, std::string family, int inputs, std::string help,
                                    std::vector<FilterProperty> properties = {},
                                    std::vector<FilterSelector> selectors = {},
                                    std::vector<std::string> inputNames = {})
{
    return {std::move(className),
            std::move(family),
            inputs,
            std::move(help),
            std::move(properties),
            std::move(selectors),
            [](const FilterSettings&) { return std::make_shared<Filter>(); },
            std::move(inputNames)};
}

/// The same for one that can draw without a picture.
inline FilterDescription asGenerator(FilterDescription description)
{
    description.isGenerator = true;
    return description;
}

/// A property that is an argument of the constructor, a number or a flag: as `filterProperty`, without a setter.
FilterProperty argumentProperty(std::string name, TypedValue fallback, ValueRange range, std::string unit,
                                std::string help);

/// The same for a choice among the values of an enumeration: as `choiceProperty`.
template <class Enumeration>
FilterProperty argumentProperty(std::string name, const ValueKind& kind, Enumeration fallback, std::string help)
{
    return argumentProperty(std::move(name), NamedChoice{&kind, static_cast<int>(fallback)}, {}, "", std::move(help));
}

/// What the settings give for an argument of the constructor, the last one of several; else its fallback.
const TypedValue& argumentIn(const FilterSettings& settings, const FilterProperty& argument);

/// The value as the constructor takes it; what is below 0 is 0 where that is the least.
template <class Argument>
Argument argumentAs(const TypedValue& value)
{
    if constexpr (std::is_enum_v<Argument>) {
        return static_cast<Argument>(std::get<NamedChoice>(value).index);
    } else {
        const auto& given = std::get<SetterValue<Argument>>(value);
        if constexpr (std::is_unsigned_v<Argument> && !std::is_same_v<Argument, bool>)
            return static_cast<Argument>(given < 0 ? 0 : given);
        else
            return static_cast<Argument>(given);
    }
}

/// A filter whose constructor takes arguments of these types. `arguments` offers one property for each, in their order:
///
///   filterDescriptionWithArguments<GPUImageHistogramFilter, GPUImageHistogramType>(
///       "GPUImageHistogramFilter", "detection", 1, "Counts values",
///       {argumentProperty("histogramType", kTypes, kGPUImageHistogramRGB, "What is counted")}, {...})
template <class Filter, class... Arguments>
FilterDescription
filterDescriptionWithArguments(std::string className, std::string family, int inputs, std::string help,
                               std::vector<FilterProperty> arguments, std::vector<FilterProperty> properties = {},
                               std::vector<FilterSelector> selectors = {}, std::vector<std::string> inputNames = {})
{
    std::vector<FilterProperty> all = arguments;
    all.insert(all.end(), std::make_move_iterator(properties.begin()), std::make_move_iterator(properties.end()));
    return {std::move(className),
            std::move(family),
            inputs,
            std::move(help),
            std::move(all),
            std::move(selectors),
            [arguments = std::move(arguments)](const FilterSettings& settings) {
                return [&]<std::size_t... kIndices>(std::index_sequence<kIndices...>)
                {
                    return std::make_shared<Filter>(
                        argumentAs<Arguments>(argumentIn(settings, arguments[kIndices]))...);
                }
                (std::index_sequence_for<Arguments...>());
            },
            std::move(inputNames)};
}

/// A filter of one picture whose constructor takes a radius in whole pixels.
template <class Filter>
FilterDescription filterDescriptionWithRadius(std::string className, std::string family, std::string help,
                                              FilterProperty radius, std::vector<FilterProperty> properties = {})
{
    return filterDescriptionWithArguments<Filter, unsigned>(std::move(className), std::move(family), 1, std::move(help),
                                                            {std::move(radius)}, std::move(properties));
}

} // namespace lamina
