#include "cli/FiltersCommand.h"

#include "cli/FilterListing.h"
#include "cli/FilterParsing.h"
#include "cli/Messages.h"
#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/FilterCatalogue.h"
#include "platform/base/Result.h"

#include <CLI/Option.hpp>

namespace lamina {

FiltersCommand::FiltersCommand(CLI::App& application)
    : Command(application, "filters", "List the filters with their inputs, properties, types and defaults")
{
    options().add_option("NAME", m_name, "Only this filter")->type_name("");
    CLI::Option* json = options().add_flag("--json", m_json, "Print the list for programs");
    options().add_flag("--markdown", m_markdown, "Print the documentation page of all filters")->excludes(json);
    addQuiet(); // as everywhere, although a list is no message
}

ExitCode FiltersCommand::run()
{
    if (m_name.empty()) {
        const FilterRegistry& catalogue = filterCatalogue();
        return printData(m_json       ? filtersAsJson(catalogue)
                         : m_markdown ? filtersAsMarkdown(catalogue)
                                      : filtersAsText(catalogue));
    }
    if (m_markdown)
        return fail({name(), "the page holds all filters: leave out the name"}, ExitCode::Usage);
    const Result<const FilterDescription*> filter = filterNamed(m_name);
    if (!filter)
        return fail(filter.error(), ExitCode::Usage);
    return printData(m_json ? filterAsJson(**filter) : filterAsText(**filter));
}

} // namespace lamina
