#include "cli/filters/FiltersCommand.h"

#include "cli/common/Messages.h"
#include "cli/common/NearestName.h"
#include "cli/common/PictureInput.h"
#include "cli/common/PictureOutput.h"
#include "cli/filters/FilterDrawing.h"
#include "cli/filters/FilterParsing.h"
#include "cli/filters/FilterSheet.h"
#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/FilterCatalogue.h"
#include "platform/image/pixels/UIImage.h"

#include <CLI/Option.hpp>
#include <algorithm>
#include <string_view>

namespace lamina {

FiltersCommand::FiltersCommand(CLI::App& application)
    : Command(application, "filters", "List the filters, or draw what each makes of a photo")
{
    options().add_option("NAME", m_name, "Only this filter")->type_name("");
    CLI::Option* json = options().add_flag("--json", m_json, "Print the list for programs");
    options().add_flag("--markdown", m_markdown, "Print the documentation page of all filters")->excludes(json);
    addSheet();
    addQuiet(); // as everywhere, although a list is no message
}

void FiltersCommand::addSheet()
{
    options()
        .add_option("--sheet", m_sheet,
                    "Draw what every filter makes of a photo into one picture, " + outputExtensions() + " by its name")
        ->type_name("FILE");
    options()
        .add_option("-i,--input", m_inputs,
                    "The photo of the sheet, and a second picture for filters of two; - is standard input")
        ->type_name("FILE ...")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    options().add_option("--family", m_family, "Only this family on the sheet, as blend or blur")->type_name("NAME");
}

ExitCode FiltersCommand::run()
{
    if (!m_sheet.empty())
        return drawSheet();
    if (!m_inputs.empty() || !m_family.empty())
        return fail({name(), std::string(m_inputs.empty() ? "--family" : "--input") + " is for a --sheet"},
                    ExitCode::Usage);
    return list();
}

ExitCode FiltersCommand::list() const
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

Outcome FiltersCommand::checkSheet() const
{
    if (!m_name.empty() || m_json || m_markdown)
        return Error{"--sheet", "is a picture of all filters: leave out what asks for a list"};
    if (m_inputs.empty() || m_inputs.size() > 2)
        return Error{"--sheet", "needs a photo by --input, and at most one more picture"};
    if (std::ranges::count(m_inputs, "-") > 1)
        return Error{name(), "standard input can be only one of the pictures"};
    return checkOutputName(m_sheet);
}

Result<std::vector<FilterFamily>> FiltersCommand::sheetFamilies() const
{
    std::vector<FilterFamily> families = filterFamilies(filterCatalogue());
    if (m_family.empty())
        return families;
    const auto found = std::ranges::find(families, m_family, &FilterFamily::name);
    if (found != families.end())
        return std::vector{*found};
    std::vector<std::string_view> names;
    names.reserve(families.size());
    for (const FilterFamily& family : families)
        names.push_back(family.name);
    return Error{beginning(m_family), "there is no such family; " + didYouMean(m_family, names)};
}

ExitCode FiltersCommand::drawSheet() const
{
    if (const Outcome checked = checkSheet(); !checked)
        return fail(checked.error(), ExitCode::Usage);
    const Result<std::vector<FilterFamily>> families = sheetFamilies();
    if (!families)
        return fail(families.error(), ExitCode::Usage);
    const Result<std::vector<UIImage>> pictures = readPictures(m_inputs, kSheetPictureSide);
    if (!pictures)
        return fail(pictures.error(), ExitCode::Input);
    if (const Outcome context = drawingIsPossible(); !context)
        return fail(context.error(), ExitCode::Failed);
    const Result<UIImage> sheet =
        filterSheet(*families, pictures->front(), pictures->size() > 1 ? pictures->back() : UIImage());
    return sheet ? deliverPicture(*sheet, m_sheet, isQuiet()) : fail(sheet.error(), ExitCode::Failed);
}

} // namespace lamina
