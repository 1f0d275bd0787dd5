#include "cli/WindowLauncher.h"
#include "cli/capture/CaptureCommand.h"
#include "cli/common/Command.h"
#include "cli/common/ExitCode.h"
#include "cli/common/Interruption.h"
#include "cli/common/Messages.h"
#include "cli/editors/BlendCommand.h"
#include "cli/editors/CollageCommand.h"
#include "cli/editors/StickersCommand.h"
#include "cli/export/ExportCommand.h"
#include "cli/filters/FilterCommand.h"
#include "cli/filters/FiltersCommand.h"
#include "cli/movie/MovieCommand.h"
#include "cli/operations/OpCommand.h"
#include "cli/photos/PhotosCommand.h"
#include "platform/base/Result.h"
#include "platform/base/StandardStreams.h"
#include "platform/files/FileURL.h"
#include "platform/files/UnexpectedEnd.h"

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

using namespace lamina;

namespace {

/// Lines of libraries that write to standard error by themselves are for those who look for a fault.
bool hidesLinesOfLibraries()
{
    if (const char* const said = std::getenv("LAMINA_LIBRARY_LINES"))
        return std::string_view(said) == "hide";
#ifdef NDEBUG
    return true;
#else
    return false;
#endif
}

ExitCode endOfParsing(const CLI::App& application, const CLI::ParseError& error)
{
    // Help is thrown too, with code 0; its text is data.
    if (error.get_exit_code() == 0) {
        std::ostringstream text;
        application.exit(error, text, text);
        return printData(text.str());
    }
    const std::vector<CLI::App*> chosen = application.get_subcommands();
    return failUsage(error.what(), chosen.empty() ? "" : chosen.front()->get_name());
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

ExitCode run(int argc, char** argv)
{
    CLI::App application("Composes photos. Without a subcommand it opens the window; with one it works from the shell.",
                         "lamina");
    // The parser's own flag for it throws, and that costs a start a megabyte and a millisecond.
    bool wantsVersion = false;
    application.add_flag("--version", wantsVersion, "Print the version and leave");
    application.set_help_flag("-h,--help", "Print this help and leave");
    application.require_subcommand(0, 1);
    std::string screen;
    std::vector<std::string> folders;
    application
        .add_option("--screen", screen,
                    "Open the window with this screen: home, two, three, blend, picker or "
                    "live")
        ->check(CLI::IsMember({"home", "two", "three", "blend", "picker", "live"}));
    application
        .add_option("--photos", folders,
                    "A folder that belongs to the photo library beside the one for pictures; may be given again")
        ->type_name("DIR")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    bool ownWindow = false;
    application.add_flag("--new-window", ownWindow, "Open a window of its own where one is open already");
    std::vector<std::string> pictures;
    application
        .add_option("PHOTO", pictures,
                    "Open the window with these photos: one or two begin a blend, three a collage, or what --screen "
                    "says; a window that is open already takes them")
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
    MovieCommand movie(application);
    CaptureCommand capture(application);
    StickersCommand stickers(application);
    PhotosCommand photos(application);

    try {
        application.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return endOfParsing(application, error);
    }
    if (wantsVersion)
        return printData("lamina " LAMINA_VERSION "\n");
    for (Command* command : std::initializer_list<Command*>{&blend, &collage, &op, &filter, &filters, &exporting,
                                                            &movie, &capture, &stickers, &photos}) {
        if (command->isChosen() && pictures.empty())
            return command->run();
        if (command->isChosen())
            return fail({beginning(pictures.front()), "stands before the subcommand"}, ExitCode::Usage);
    }
    if (const Outcome found = checkPhotos(pictures); !found)
        return fail(found.error(), ExitCode::Usage);
    std::vector<std::string> window;
    if (!screen.empty())
        window.insert(window.end(), {"--screen", screen});
    for (const std::string& folder : folders)
        window.insert(window.end(), {"--photos", folder});
    if (ownWindow)
        window.emplace_back("--new-window");
    if (!pictures.empty())
        window.emplace_back("--"); // a name may begin with a dash
    window.insert(window.end(), pictures.begin(), pictures.end());
    return becomeWindow(window);
}

} // namespace

int main(int argc, char** argv)
{
    openStandardStreams();
    const bool hidesLines = hidesLinesOfLibraries();
    if (hidesLines)
        keepStandardErrorToOurselves();
    installLastNets("lamina", hidesLines);
    installInterruptionHandlers();
    return withoutExceptions("lamina", [&] { return static_cast<int>(run(argc, argv)); });
}
