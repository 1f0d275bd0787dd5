#pragma once

#include "cli/common/PictureCommand.h"
#include "cli/export/ExportSettings.h"
#include "cli/export/ExportTypes.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <CLI/App.hpp>
#include <CLI/Option.hpp>
#include <string>

namespace lamina {

/// A subcommand that goes through the screens of an editor with photos: the canvas and its scale, and the result as a
/// picture or as an export.
class EditorCommand : public PictureCommand {
protected:
    EditorCommand(CLI::App& application, const std::string& name, const std::string& about);

    /// Adds `--output`, `--as`, `--width` and `--scale`, in that order.
    void addCanvas();
    /// Adds `--quiet` and the options of exports, which stand last.
    void addDelivery();
    /// Adds an option for a length in points that can be a screen's.
    CLI::Option* addLength(const std::string& option, double& length, const std::string& about);

    double width() const { return m_width; } ///< points
    double scale() const { return m_scale; } ///< pixels per point

    /// The canvas, the export and the files; ends `check` of a command.
    Outcome check() override;
    Outcome checkOutput() const override;
    /// As the type of `--as`, with its scale; without one as a picture.
    ExitCode deliver(const UIImage& picture) override;
    /// The picture, or that memory was short for it.
    Result<UIImage> madeOrNoMemory(UIImage picture) const;

private:
    double m_width = 375;
    double m_scale = 3;
    std::string m_as;
    const ExportType* m_type = nullptr; ///< null: a picture
    ExportSettings m_settings;
};

} // namespace lamina
