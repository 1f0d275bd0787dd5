#include "cli/export/ExportCommand.h"

#include "cli/common/Command.h"
#include "cli/common/ExitCode.h"
#include "cli/common/PictureInput.h"
#include "cli/export/ExportDelivery.h"
#include "export/functions/ClipThumbnail.h"
#include "export/functions/ExportWork.h"
#include "gpu/core/TypedValue.h"
#include "platform/base/UIScreen.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureFormats.h"

#include <CLI/Option.hpp>
#include <utility>

namespace lamina {

namespace {

constexpr ValueRange kPictureScales{0.01, 100};

} // namespace

ExportCommand::ExportCommand(CLI::App& application)
    : PictureCommand(application, "export", "Export a picture or a clip: pictures, PDF, SVG, a film")
{
    options().add_option("TYPE", m_typeName, "What to make: " + exportTypeNames())->type_name("");
    options()
        .add_option("-i,--input", m_input, "The picture, or a clip; - is a picture on standard input")
        ->type_name("FILE");
    addOutput("File to write, or a folder, in which it gets the type's own name");
    options()
        .add_option("--picture-scale", m_pictureScale, "Pixels a point in the picture that is read [1]")
        ->type_name("S")
        ->check(checkedBy([](const std::string& text) { return parseNumber(text, kPictureScales); }));
    addQuiet();
    m_settings.addTo(options());
    options().footer(
        "Of a clip mp4 makes a film in the chosen quality; every other type shows its frame at 1/30 s. A page of a\n"
        "PDF has a point for each point of the picture.\n\n"
        "Example: lamina export pdf-print -i poster.png -o poster.pdf --profile cmyk --crop-marks --ppi 300");
}

Outcome ExportCommand::check()
{
    if (m_typeName.empty())
        return Error{name(), "name a type: " + exportTypeNames()};
    const Result<const ExportType*> type = exportTypeNamed(m_typeName);
    if (!type)
        return type.error();
    m_type = *type;
    if (m_input.empty())
        return Error{name(), "--input is required"};
    if (Outcome checked = m_settings.check(m_type); !checked)
        return checked;
    return checkFiles();
}

Outcome ExportCommand::checkOutput() const
{
    const Result<ExportPlace> place = exportPlaceOf(output(), *m_type);
    return place ? success() : Outcome(place.error());
}

Result<std::vector<UIImage>> ExportCommand::read()
{
    Result<UIImage> picture = readPicture(m_input);
    if (!picture && m_input != "-" && picture.error().cause == cause::kNotAPicture) {
        Result<UIImage> frame = thumbnailOfVideo(m_input);
        m_isClip = frame.ok();
        // Who names a picture is told of pictures.
        if (frame || !pictureFormatForFileName(m_input))
            picture = std::move(frame);
    }
    if (!picture)
        return picture.error();
    return std::vector<UIImage>{std::move(*picture)};
}

Result<UIImage> ExportCommand::make(std::vector<UIImage> pictures)
{
    UIScreen screen;
    screen.scale = 1;
    UIScreen::setMain(screen);
    return UIImage(pictures.front().cgImage(), m_pictureScale);
}

ExitCode ExportCommand::deliver(const UIImage& picture)
{
    return deliverExport({m_type,
                          {picture, m_isClip ? m_input : std::string()},
                          m_settings.optionsFor(picture),
                          output(),
                          m_input,
                          name(),
                          isQuiet()});
}

} // namespace lamina
