#include "cli/common/PictureCommand.h"

#include "cli/common/Messages.h"
#include "cli/common/PictureInput.h"
#include "cli/common/PictureOutput.h"

#include <CLI/Option.hpp>
#include <algorithm>
#include <utility>
#include <variant>

namespace lamina {

PictureCommand::PictureCommand(CLI::App& application, const std::string& name, const std::string& about,
                               std::string pictures)
    : Command(application, name, about)
    , m_pictures(std::move(pictures))
{
}

CLI::Option* PictureCommand::addOutput(const std::string& about)
{
    const std::string picture = "File to write, " + outputExtensions() + " by its name; - is PNG on standard output";
    return options().add_option("-o,--output", m_output, about.empty() ? picture : about)->type_name("FILE");
}

Outcome PictureCommand::checkFiles(bool needsOutput) const
{
    if (m_output.empty() && needsOutput)
        return Error{name(), "--output is required"};
    if (std::ranges::count(inputs(), "-") > 1)
        return Error{name(), "standard input can be only one of the " + m_pictures};
    return m_output.empty() ? success() : checkOutput();
}

Outcome PictureCommand::checkOutput() const
{
    return checkOutputName(m_output);
}

Result<std::vector<UIImage>> PictureCommand::read()
{
    return readPictures(inputs(), 0, memoryLimit());
}

ExitCode PictureCommand::deliver(const UIImage& picture)
{
    return deliverPicture(picture, m_output, isQuiet());
}

ExitCode PictureCommand::run()
{
    if (const Outcome checked = check(); !checked)
        return fail(checked.error(), ExitCode::Usage);
    Result<std::vector<UIImage>> pictures = read();
    if (!pictures)
        return fail(pictures.error(), ExitCode::Input);
    const Result<UIImage> picture = make(std::move(*pictures));
    if (!picture)
        return fail(picture.error(), ExitCode::Failed);
    return deliver(*picture);
}

} // namespace lamina
