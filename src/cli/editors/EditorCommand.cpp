#include "cli/editors/EditorCommand.h"

#include "cli/common/ExitCode.h"
#include "cli/export/ExportDelivery.h"
#include "export/functions/ExportWork.h"
#include "gpu/core/TypedValue.h"
#include "platform/base/Causes.h"

#include <cmath>
#include <utility>

namespace lamina {

namespace {

constexpr ValueRange kLengths{16, 2048};
constexpr ValueRange kScales{1, 16};
constexpr double kMaximumSide = 8192; // pixels: 256 MB of canvas

auto numberIn(const ValueRange& range)
{
    return checkedBy([range](const std::string& text) { return parseNumber(text, range); });
}

} // namespace

EditorCommand::EditorCommand(CLI::App& application, const std::string& name, const std::string& about)
    : PictureCommand(application, name, about, "photos")
{
}

void EditorCommand::addCanvas()
{
    addOutput()->required();
    options()
        .add_option("--as", m_as, "Export the result: " + exportTypeNames() + "; --output is then a file or a folder")
        ->type_name("TYPE");
    addLength("--width", m_width, "Side of the canvas in points [375]")->type_name("W");
    options()
        .add_option("--scale", m_scale, "Pixels a point in the result [3]")
        ->type_name("S")
        ->check(numberIn(kScales));
}

void EditorCommand::addDelivery()
{
    addQuiet();
    m_settings.addTo(options());
}

CLI::Option* EditorCommand::addLength(const std::string& option, double& length, const std::string& about)
{
    return options().add_option(option, length, about)->check(numberIn(kLengths));
}

Outcome EditorCommand::check()
{
    if (std::ceil(m_width * m_scale) > kMaximumSide)
        return Error{name(), "--width times --scale must not exceed 8192 pixels"};
    if (!m_as.empty()) {
        const Result<const ExportType*> type = exportTypeNamed(m_as);
        if (!type)
            return type.error();
        m_type = *type;
    }
    if (Outcome settings = m_settings.check(m_type); !settings)
        return settings;
    Outcome files = checkFiles();
    if (files || files.error().subject == name())
        return files;
    return Error{name(), files.error().subject + ": " + files.error().cause};
}

Outcome EditorCommand::checkOutput() const
{
    if (!m_type)
        return PictureCommand::checkOutput();
    const Result<ExportPlace> place = exportPlaceOf(output(), *m_type);
    return place ? success() : Outcome(place.error());
}

ExitCode EditorCommand::deliver(const UIImage& picture)
{
    if (!m_type)
        return PictureCommand::deliver(picture);
    return deliverExport({m_type, {picture, {}}, m_settings.optionsFor(picture), output(), {}, name(), isQuiet()});
}

Result<UIImage> EditorCommand::madeOrNoMemory(UIImage picture) const
{
    if (!picture)
        return Error{output(), cause::kNoMemory};
    return picture;
}

} // namespace lamina
