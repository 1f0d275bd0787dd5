#pragma once

#include "cli/BlendScript.h"
#include "cli/ExitCode.h"

#include <CLI/App.hpp>
#include <array>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

/// `lamina blend`, as it was asked for.
struct BlendArguments {
    std::array<std::string, 2> photos;
    std::string output;
    double width = 375; ///< points
    double scale = 3;   ///< pixels per point
    std::array<std::optional<CropStep>, 2> crops;
    std::vector<BlendStep> steps; ///< in the order in which they stood on the command line
    bool quiet = false;
};

/// The subcommand's options and its work.
class BlendCommand {
public:
    explicit BlendCommand(CLI::App& application);

    /// After the command line was parsed with this subcommand chosen.
    ExitCode run();

private:
    /// Gathers what the parser left as text; what is wrong with it as a whole, if anything is.
    std::optional<std::string> finishArguments();

    CLI::App* m_options;
    CLI::Option* m_move = nullptr;
    CLI::Option* m_zoom = nullptr;
    BlendArguments m_arguments;
    std::array<std::string, 2> m_crops;
    std::vector<std::string> m_moves;
    std::vector<std::string> m_zooms;
};

} // namespace lamina
