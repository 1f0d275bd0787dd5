#pragma once

#include "cli/ExitCode.h"
#include "cli/OperationParsing.h"

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace lamina {

/// `lamina op`: picture operations in sequence. A file is a picture of scale 1 (or `--picture-scale`) on a screen of
/// scale
/// 1. Everything is checked and read before anything is computed.
class OpCommand {
public:
    explicit OpCommand(CLI::App& application);

    /// After the command line was parsed with this subcommand chosen.
    ExitCode run();

private:
    Result<std::vector<OperationStep>> steps() const;
    /// What is wrong with the arguments as a whole.
    Outcome check(const std::vector<OperationStep>& steps) const;

    std::vector<std::string> m_operations;
    std::string m_input;
    std::string m_output;
    double m_pictureScale = 1;
    bool m_json = false;
    bool m_quiet = false;
};

} // namespace lamina
