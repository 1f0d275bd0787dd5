#pragma once

#include "cli/common/StepOptions.h"
#include "cli/editors/BlendScript.h"
#include "cli/editors/BlendSteps.h"
#include "cli/editors/EditorCommand.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <CLI/App.hpp>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

/// `lamina blend`: two photos through the screens of a blend.
class BlendCommand : public EditorCommand {
public:
    explicit BlendCommand(CLI::App& application);

private:
    std::vector<std::string> inputs() const override { return {m_photos.begin(), m_photos.end()}; }
    /// Both photos at once, no larger than their crops need.
    Result<std::vector<UIImage>> read() override;
    Result<UIImage> make(std::vector<UIImage> pictures) override;

    void addCrops();
    std::optional<CropStep> crop(std::size_t photo) const;

    std::array<std::string, 2> m_photos;
    std::array<std::string, 2> m_crops;
    StepOptions<BlendStep> m_steps;
};

} // namespace lamina
