#pragma once

#include "cli/Command.h"
#include "cli/ExitCode.h"

#include <CLI/App.hpp>
#include <string>

namespace lamina {

/// `lamina filters`: what `lamina filter` can do, for people, programs and the documentation. Needs no graphics driver.
class FiltersCommand : public Command {
public:
    explicit FiltersCommand(CLI::App& application);

    ExitCode run() override;

private:
    std::string m_name;
    bool m_json = false;
    bool m_markdown = false;
};

} // namespace lamina
