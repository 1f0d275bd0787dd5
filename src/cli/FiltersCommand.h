#pragma once

#include "cli/ExitCode.h"

#include <CLI/App.hpp>
#include <string>

namespace lamina {

/// `lamina filters`: what `lamina filter` can do, for people, programs and the documentation. Needs no graphics driver.
class FiltersCommand {
public:
    explicit FiltersCommand(CLI::App& application);

    /// After the command line was parsed with this subcommand chosen.
    ExitCode run();

private:
    std::string m_name;
    bool m_json = false;
    bool m_markdown = false;
    bool m_quiet = false; ///< as everywhere; a list is no message
};

} // namespace lamina
