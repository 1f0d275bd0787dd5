#pragma once

#include "cli/ExitCode.h"
#include "cli/OperationParsing.h"
#include "cli/PictureCommand.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace lamina {

/// `lamina op`: picture operations in sequence. A file is a picture of scale 1 (or `--picture-scale`) on a screen of
/// scale 1.
class OpCommand : public PictureCommand {
public:
    explicit OpCommand(CLI::App& application);

    /// With `--json` the list of operations is all that is asked for.
    ExitCode run() override;

private:
    std::vector<std::string> inputs() const override;
    Outcome check() override;
    Outcome parseSteps();
    Result<UIImage> make(std::vector<UIImage> pictures) override;

    std::vector<std::string> m_operations;
    std::vector<OperationStep> m_steps;
    std::string m_input;
    double m_pictureScale = 1;
    bool m_json = false;
};

} // namespace lamina
