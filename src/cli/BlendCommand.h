#pragma once

#include "cli/BlendScript.h"
#include "cli/BlendSteps.h"
#include "cli/ExportSettings.h"
#include "cli/ExportTypes.h"
#include "cli/PictureCommand.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <CLI/App.hpp>
#include <array>
#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

/// `lamina blend`: two photos through the screens of a blend.
class BlendCommand : public PictureCommand {
public:
    explicit BlendCommand(CLI::App& application);

private:
    std::vector<std::string> inputs() const override { return {m_photos.begin(), m_photos.end()}; }
    Outcome check() override;
    Outcome checkOutput() const override;
    /// Both photos at once, no larger than their crops need.
    Result<std::vector<UIImage>> read() override;
    Result<UIImage> make(std::vector<UIImage> pictures) override;
    /// As the type of `--as`, with its scale; without one as a picture.
    ExitCode deliver(const UIImage& picture) override;

    void addSteps();
    void addStep(const BlendStepOption& step);
    std::optional<CropStep> crop(std::size_t photo) const;
    /// In the order in which they stood on the command line.
    std::vector<BlendStep> steps() const;

    std::array<std::string, 2> m_photos;
    double m_width = 375; ///< points
    double m_scale = 3;   ///< pixels per point
    std::array<std::string, 2> m_crops;
    /// What was told for one kind of step, and the option that took it.
    struct StepTexts {
        const BlendStepOption* step = nullptr;
        CLI::Option* option = nullptr;
        std::vector<std::string> values;
    };
    std::list<StepTexts> m_steps; ///< the parser keeps the addresses
    std::string m_as;
    const ExportType* m_type = nullptr; ///< null: a picture
    ExportSettings m_settings;
};

} // namespace lamina
