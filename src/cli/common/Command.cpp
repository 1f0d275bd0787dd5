#include "cli/common/Command.h"

namespace lamina {

Command::Command(CLI::App& application, const std::string& name, const std::string& about)
    : m_options(*application.add_subcommand(name, about))
    , m_name(name)
{
    m_options.set_help_flag("-h,--help", "Print this help and leave");
}

void Command::addQuiet(CLI::App& options)
{
    options.add_flag("-q,--quiet", m_quiet, "Say nothing but errors");
}

} // namespace lamina
