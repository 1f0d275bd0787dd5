#pragma once

#include "cli/export/ExportTypes.h"
#include "export/functions/ExportWork.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace CLI {
class App;
class Option;
}

namespace lamina {

/// The quality of a film: low, medium, high, or a number as the screen's slider takes it.
Result<VideoQuality> parseVideoQuality(const std::string& text);

/// The options of a command line for the types of saving, of which each type knows its own.
class ExportSettings {
public:
    /// Adds them under a heading of their own, once. The settings outlive the parsing.
    void addTo(CLI::App& options);

    /// Understands what was typed, once: an option that the type doesn't know is wrong usage. No type: so is any.
    Outcome check(const ExportType* type);
    /// What was chosen, for a picture whose size those are multiples of.
    ExportOptions optionsFor(const UIImage& picture) const;

private:
    void add(ExportChoice choice, CLI::Option* option);
    Outcome parseQuality(SavingtypeMethod type);

    std::vector<std::pair<ExportChoice, const CLI::Option*>> m_all;
    ExportOptions m_options;
    double m_size = 1; ///< of the picture's sides
    std::string m_quality;
    std::string m_profile;
};

} // namespace lamina
