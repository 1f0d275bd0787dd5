#pragma once

#include "gpu/core/GPUImageStage.h"
#include "gpu/core/TypedValue.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/AlphaForm.h"

#include <functional>
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
    /// Empty for a value that is given when the filter is made: see `FilterDescription::make`.
    std::function<void(GPUImageStage& filter, const TypedValue& value)> set;

    /// How a pipeline names the setter: "setIntensity:" for "intensity"; empty where there is none.
    std::string selector() const;
};

/// A setter of several arguments that pipelines may name, "setColorRed:green:blue:".
struct FilterSelector {
    std::string name;
    std::vector<TypedValue> arguments; ///< examples of the types
    std::function<void(GPUImageStage& filter, std::span<const TypedValue> values)> call;
};

/// Values by the names of properties, in the order in which they are set.
using FilterSettings = std::vector<std::pair<std::string, TypedValue>>;

/// All that parsing, help, listings and pages need to know of a filter.
struct FilterDescription {
    std::string className;
    std::string family; ///< "editor", "colour", "blend", "blur", "effect" or "detection"
    int inputs = 1;     ///< slots that must have a picture
    std::string help;   ///< one line, without a full stop
    std::vector<FilterProperty> properties;
    std::vector<FilterSelector> selectors;
    /// A new filter. Of the settings it looks at those whose property has no setter.
    std::function<std::shared_ptr<GPUImageStage>(const FilterSettings& settings)> make;
    /// What the pictures of slots 0, 1, ... are to the filter, "base" and "overlay"; empty where it takes only one.
    std::vector<std::string> inputNames;
    /// What its formula takes colours for: as `GPUImageStage::alphaForm` of its filters.
    AlphaForm alphaForm = AlphaForm::Straight;

    /// The property of that name; null where there is none. Lives as long as the description.
    const FilterProperty* property(std::string_view name) const;
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

/// A new filter with these settings. An error for a name that the filter doesn't have (its subject) or a value of
/// another type.
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

/// A filter whose constructor takes a radius, offered as the property "radius".
template <class Filter>
FilterDescription filterDescriptionWithRadius(std::string className, std::string family, std::string help,
                                              FilterProperty radius, std::vector<FilterProperty> properties = {})
{
    FilterDescription description =
        filterDescription<Filter>(std::move(className), std::move(family), 1, std::move(help), std::move(properties));
    radius.set = nullptr;
    description.make = [name = radius.name, fallback = std::get<int>(radius.fallback)](const FilterSettings& settings) {
        int value = fallback;
        for (const auto& [key, given] : settings) {
            if (key == name)
                value = std::get<int>(given);
        }
        return std::make_shared<Filter>(static_cast<unsigned>(value < 0 ? 0 : value));
    };
    description.properties.insert(description.properties.begin(), std::move(radius));
    return description;
}

} // namespace lamina
