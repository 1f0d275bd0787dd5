#pragma once

#include "cli/ExitCode.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <CLI/App.hpp>
#include <cstddef>
#include <string>
#include <vector>

namespace lamina {

/// `lamina filter`: pictures through one GPU filter, or one through a chain of them. Everything is checked and read
/// before a GL context is made.
class FilterCommand {
public:
    explicit FilterCommand(CLI::App& application);

    /// After the command line was parsed with this subcommand chosen.
    ExitCode run();

private:
    /// What is wrong with the arguments that both forms share; `whose`: what takes so many inputs.
    Outcome checkFiles(std::size_t inputs, const std::string& whose) const;
    ExitCode runFilter();
    ExitCode runPipeline();
    Result<std::vector<UIImage>> readPictures() const;
    void tellReductions(const std::vector<UIImage>& pictures) const;
    ExitCode deliver(const Result<UIImage>& picture) const;

    std::string m_name;
    std::string m_pipeline;
    std::vector<std::string> m_inputs;
    std::vector<std::string> m_settings;
    std::string m_output;
    bool m_quiet = false;
};

} // namespace lamina
