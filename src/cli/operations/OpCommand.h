#pragma once

#include "cli/batch/BatchCommand.h"
#include "cli/common/ExitCode.h"
#include "cli/operations/OperationParsing.h"
#include "cli/operations/ReducedReading.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <CLI/App.hpp>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

/// `lamina op`: picture operations in sequence. A file is a picture of scale 1 (or `--picture-scale`) on a screen of
/// scale 1.
class OpCommand : public BatchCommand {
public:
    explicit OpCommand(CLI::App& application);

    /// With `--json` the list of operations is all that is asked for.
    ExitCode run() override;

private:
    std::vector<std::string> inputs() const override;
    Outcome check() override;
    /// Photos of 100 megapixels, and their coefficients.
    std::size_t memoryLimit() const override { return 1'000'000'000; }
    Outcome parseSteps();
    Outcome checkInput() const;
    /// The first picture is reduced on the way where the first operation scales it.
    Result<std::vector<UIImage>> read() override;
    Result<UIImage> make(std::vector<UIImage> pictures) override;
    Outcome prepare(std::vector<UIImage> shared) override;
    std::size_t memoryFor(IntSize sides) const override;
    Result<Made> makeOf(const PhotoSource& source, std::optional<IntSize> sides, const DecodeOptions& options) override;

    std::vector<std::string> m_operations;
    std::vector<OperationStep> m_steps;
    std::string m_input;
    double m_pictureScale = 1;
    bool m_json = false;
    std::optional<IntSize> m_whole; ///< by `read`: the sides of a picture that was reduced
};

} // namespace lamina
