#include "cli/BlendCommand.h"
#include "cli/Interruption.h"

#include <CLI/CLI.hpp>
#include <cstdio>

using namespace lamina;

namespace {

int usageError(const CLI::App& application, const CLI::ParseError& error)
{
    // Help and version are thrown too, with code 0; their texts are data.
    if (error.get_exit_code() == 0)
        return application.exit(error);
    const bool blend = application.got_subcommand("blend");
    std::fprintf(stderr, "lamina: %s\nRun 'lamina %s--help' to see how it is used.\n", error.what(),
                 blend ? "blend " : "");
    return static_cast<int>(ExitCode::Usage);
}

} // namespace

int main(int argc, char** argv)
{
    installInterruptionHandlers();

    CLI::App application("Composes photos: blends two into one, from the shell.", "lamina");
    application.set_version_flag("--version", "lamina " LAMINA_VERSION, "Print the version and leave");
    application.set_help_flag("-h,--help", "Print this help and leave");
    application.require_subcommand(1);
    application.footer(
        "Exit codes: 0 good, 1 failed, 2 wrong usage, 3 an input is missing, unreadable or unsupported,\n"
        "4 an output can't be written, 130 interrupted.");
    BlendCommand blend(application);

    try {
        application.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return usageError(application, error);
    }
    return static_cast<int>(blend.run());
}
