#pragma once

#include "cli/common/PictureCommand.h"
#include "cli/export/ExportSettings.h"
#include "cli/export/ExportTypes.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace lamina {

/// `lamina export`: a picture or a clip as one of the types of saving. A file is a picture of scale 1 (or
/// `--picture-scale`) on a screen of scale 1.
class ExportCommand : public PictureCommand {
public:
    explicit ExportCommand(CLI::App& application);

private:
    std::vector<std::string> inputs() const override { return {m_input}; }
    Outcome check() override;
    Outcome checkOutput() const override;
    /// What is no picture may be a clip: a frame then stands for it.
    Result<std::vector<UIImage>> read() override;
    Result<UIImage> make(std::vector<UIImage> pictures) override;
    ExitCode deliver(const UIImage& picture) override;

    std::string m_typeName;
    std::string m_input;
    double m_pictureScale = 1;
    ExportSettings m_settings;
    const ExportType* m_type = nullptr;
    bool m_isClip = false;
};

} // namespace lamina
