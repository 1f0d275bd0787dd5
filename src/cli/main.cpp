#include "cli/BlendCommand.h"
#include "cli/CollageCommand.h"
#include "cli/Command.h"
#include "cli/ExitCode.h"
#include "cli/ExportCommand.h"
#include "cli/FilterCommand.h"
#include "cli/FiltersCommand.h"
#include "cli/Interruption.h"
#include "cli/Messages.h"
#include "cli/OpCommand.h"
#include "cli/PhotosCommand.h"
#include "cli/StickersCommand.h"
#include "cli/WindowLauncher.h"
#include "platform/base/Result.h"
#include "platform/files/FileURL.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <system_error>
#include <vector>

using namespace lamina;

namespace {

int usageError(const CLI::App& application, const CLI::ParseError& error)
{
    // Help and version are thrown too, with code 0; their texts are data.
    if (error.get_exit_code() == 0)
        return application.exit(error);
    const std::vector<CLI::App*> chosen = application.get_subcommands();
    const std::string command = chosen.empty() ? "" : chosen.front()->get_name() + " ";
    std::fprintf(stderr, "lamina: %s\nRun 'lamina %s--help' to see how it is used.\n", error.what(), command.c_str());
    return static_cast<int>(ExitCode::Usage);
}

/// A word that is neither a subcommand nor a file was most likely meant as one of them.
Outcome checkPhotos(const std::vector<std::string>& photos)
{
    for (const std::string& photo : photos) {
        const Result<std::string> path = pathOfFileURL(photo);
        std::error_code unreadable;
        if (!std::filesystem::exists(path ? *path : photo, unreadable))
            return Error{beginning(photo), "is neither a subcommand nor a photo; lamina --help lists the subcommands"};
    }
    return success();
}

} // namespace

int main(int argc, char** argv)
{
    installInterruptionHandlers();

    CLI::App application("Composes photos. Without a subcommand it opens the window; with one it works from the shell.",
                         "lamina");
    application.set_version_flag("--version", "lamina " LAMINA_VERSION, "Print the version and leave");
    application.set_help_flag("-h,--help", "Print this help and leave");
    application.require_subcommand(0, 1);
    std::string screen;
    std::vector<std::string> folders;
    application.add_option("--screen", screen, "Open the window with this screen: home, two, three, blend or picker")
        ->check(CLI::IsMember({"home", "two", "three", "blend", "picker"}));
    application
        .add_option("--photos", folders,
                    "A folder that belongs to the photo library beside the one for pictures; may be given again")
        ->type_name("DIR")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    std::vector<std::string> pictures;
    application
        .add_option(
            "PHOTO", pictures,
            "Open the window with these photos: one or two begin a blend, three a collage, or what --screen says")
        ->type_name("");
    application.footer(
        "Exit codes: 0 good, 1 failed, 2 wrong usage, 3 an input is missing, unreadable or unsupported,\n"
        "4 an output can't be written, 130 interrupted.");
    BlendCommand blend(application);
    CollageCommand collage(application);
    OpCommand op(application);
    FilterCommand filter(application);
    FiltersCommand filters(application);
    ExportCommand exporting(application);
    StickersCommand stickers(application);
    PhotosCommand photos(application);

    try {
        application.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return usageError(application, error);
    }
    for (Command* command :
         std::initializer_list<Command*>{&blend, &collage, &op, &filter, &filters, &exporting, &stickers, &photos}) {
        if (command->isChosen() && pictures.empty())
            return static_cast<int>(command->run());
        if (command->isChosen())
            return static_cast<int>(
                fail({beginning(pictures.front()), "stands before the subcommand"}, ExitCode::Usage));
    }
    if (const Outcome found = checkPhotos(pictures); !found)
        return static_cast<int>(fail(found.error(), ExitCode::Usage));
    std::vector<std::string> window;
    if (!screen.empty())
        window.insert(window.end(), {"--screen", screen});
    for (const std::string& folder : folders)
        window.insert(window.end(), {"--photos", folder});
    if (!pictures.empty())
        window.emplace_back("--"); // a name may begin with a dash
    window.insert(window.end(), pictures.begin(), pictures.end());
    return static_cast<int>(becomeWindow(window));
}
