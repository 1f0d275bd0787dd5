#include "cli/editors/CollageCommand.h"

#include "cli/common/PictureInput.h"
#include "cli/editors/CollageScript.h"
#include "cli/editors/PhotoZooms.h"
#include "platform/base/CGGeometry.h"

#include <CLI/Option.hpp>
#include <cstddef>
#include <utility>

namespace lamina {

CollageCommand::CollageCommand(CLI::App& application)
    : EditorCommand(application, "collage", "Lay two or three photos out in one picture")
{
    // Other runs of the command do without them: their start has few kilobytes to spare.
    options().preparse_callback([this](std::size_t) { addOptions(); });
}

void CollageCommand::addOptions()
{
    if (std::exchange(m_hasOptions, true))
        return;
    options().add_option("P1", m_photos[0], "The first photo; - is standard input")->required();
    options().add_option("P2", m_photos[1], "The second photo")->required();
    options().add_option("P3", m_photos[2], "The third photo, for a layout of three");
    addCanvas();
    addLength("--height", m_height, "Height of the screen in points, from which some layouts are measured [812]")
        ->type_name("H");
    m_steps.addTo(options(), collageStepOptions());
    addDelivery();
    addAbout();
}

void CollageCommand::addAbout()
{
    options().footer(
        "Layouts of two photos: " + collageLayoutNames(2) + ".\nOf three: " + collageLayoutNames(3) +
        ".\nFilters, from 500: " + collageFilterWords() + ".\nEffects: " + collageEffectWords() +
        ".\n\n"
        "Options with ... may stand several times; they act in the order in which they stand, as in the window: a "
        "layout\n"
        "takes back what stood before it, filters work from the photo as it was when another tool was used last, and "
        "effects\n"
        "from the photo as it was when the slider was first moved after the photo was chosen.\n"
        "The result has W x S pixels a side; where no photo covers it is clear, or white where the format has no "
        "alpha.\n\n"
        "Examples: lamina collage a.jpg b.jpg c.heic -o trip.png --layout 3004 --zoom 1:1.4 --move 1:0,-30\n"
        "          lamina collage a.jpg b.jpg -o two.jpg --layout 2006 --filter 1:sepia --effect 2:contrast=30 --gap "
        "4");
}

std::vector<std::string> CollageCommand::inputs() const
{
    return {m_photos.begin(), m_photos[2].empty() ? m_photos.end() - 1 : m_photos.end()};
}

Outcome CollageCommand::check()
{
    const int photos = static_cast<int>(inputs().size());
    for (const CollageStep& step : m_steps.inOrder(options()))
        if (const Outcome possible = checkStep(step, photos); !possible)
            return Error{name(), possible.error().cause};
    return EditorCommand::check();
}

Result<std::vector<UIImage>> CollageCommand::read()
{
    const std::vector<std::string> photos = inputs();
    return readPicturesAtOnce(photos, neededSides(m_steps.inOrder(options()), photos.size(), width() * scale()));
}

Result<UIImage> CollageCommand::make(std::vector<UIImage> pictures)
{
    CollageScript script({width(), m_height}, scale(), std::move(pictures));
    for (const CollageStep& step : m_steps.inOrder(options()))
        if (const Outcome done = script.perform(step); !done)
            return Error{output(), done.error().cause};
    return madeOrNoMemory(script.flattened());
}

} // namespace lamina
