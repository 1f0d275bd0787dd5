#pragma once

#include "cli/common/StepOptions.h"
#include "cli/editors/CollageSteps.h"
#include "cli/editors/EditorCommand.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <CLI/App.hpp>
#include <array>
#include <string>
#include <vector>

namespace lamina {

/// `lamina collage`: two or three photos through the collage editor.
class CollageCommand : public EditorCommand {
public:
    explicit CollageCommand(CLI::App& application);

private:
    std::vector<std::string> inputs() const override;
    Outcome check() override;
    /// All photos at once, each no larger than the canvas and its own zoom need.
    Result<std::vector<UIImage>> read() override;
    Result<UIImage> make(std::vector<UIImage> pictures) override;

    void addOptions();
    void addAbout();

    std::array<std::string, 3> m_photos; ///< the last may be empty
    bool m_hasOptions = false;
    double m_height = 812; ///< of the screen, points
    StepOptions<CollageStep> m_steps;
};

} // namespace lamina
