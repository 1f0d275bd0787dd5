#pragma once

#include "gpu/core/FilterRegistry.h"

#include "gpu/core/FilterResults.h"

#include <string>
#include <vector>

namespace lamina {

/// Filters of a kind, as all lists group them.
struct FilterFamily {
    std::string name;
    std::vector<const FilterDescription*> filters; ///< sorted by name

    /// The name as a heading: "Colour".
    std::string title() const;
};

/// Sorted by name.
std::vector<FilterFamily> filterFamilies(const FilterRegistry& registry);

/// All filters by family, with inputs, properties, types, ranges and defaults, for people.
std::string filtersAsText(const FilterRegistry& registry);

/// One filter's page, with an example of a command line.
std::string filterAsText(const FilterDescription& filter);

/// For programs: an array of what `filterAsJson` gives.
std::string filtersAsJson(const FilterRegistry& registry);

/// An object {"name", "family", "inputs", "about", "properties": [{"name", "type", "syntax", "default", "minimum",
/// "maximum", "unit", "about", "pipeline"}], "selectors": [{"name", "arguments", "default", "about"}],
/// "results": [{"name", "list", "fields", "unit", "about"}], "sample": texts for `--set` that show what it does}.
/// Defaults are numbers and booleans where the type is one, else texts as `--set` takes them; what there is none of is
/// left out.
std::string filterAsJson(const FilterDescription& filter);

/// An object with what was reported under the names of the results: a number, or an object of numbers by the names of
/// its fields, or an array of these. Null stands for a number that there is none of.
std::string reportAsJson(const std::vector<FilterResult>& results, const FilterReport& report);

/// The same of one file of many, on one line: an object {"file", "report"}.
std::string reportAsJsonLine(const std::string& file, const std::vector<FilterResult>& results,
                             const FilterReport& report);

/// All filters as a page of Markdown.
std::string filtersAsMarkdown(const FilterRegistry& registry);

} // namespace lamina
