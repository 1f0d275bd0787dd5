#pragma once

#include "cli/common/Command.h"
#include "cli/common/ExitCode.h"
#include "cli/filters/FilterListing.h"
#include "platform/base/Result.h"

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace lamina {

/// `lamina filters`: what `lamina filter` can do, for people, programs and the documentation. Needs no graphics driver
/// but to draw a sheet of what the filters make of a photo.
class FiltersCommand : public Command {
public:
    explicit FiltersCommand(CLI::App& application);

    ExitCode run() override;

private:
    void addSheet();
    ExitCode list() const;
    Outcome checkSheet() const;
    /// The one that was named, or all.
    Result<std::vector<FilterFamily>> sheetFamilies() const;
    ExitCode drawSheet() const;

    std::string m_name;
    bool m_json = false;
    bool m_markdown = false;
    std::string m_sheet;
    std::vector<std::string> m_inputs;
    std::string m_family;
};

} // namespace lamina
