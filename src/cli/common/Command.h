#pragma once

#include "cli/common/ExitCode.h"

#include <CLI/App.hpp>
#include <functional>
#include <string>
#include <utility>

namespace lamina {

/// A subcommand of `lamina`: its options and its work.
class Command {
public:
    virtual ~Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    /// Whether the command line that was parsed names this subcommand.
    bool isChosen() const { return m_options.parsed(); }
    /// Does the work, and tells on standard error what stood in its way. Once, where this subcommand is chosen.
    virtual ExitCode run() = 0;

protected:
    /// Adds the subcommand, with `--help`; options are listed in the order in which they are added.
    Command(CLI::App& application, const std::string& name, const std::string& about);

    /// The parser of what stands behind the subcommand's name. It outlives the command.
    CLI::App& options() const { return m_options; }
    const std::string& name() const { return m_name; }

    /// Adds `--quiet`, or to an action of the subcommand.
    void addQuiet() { addQuiet(m_options); }
    void addQuiet(CLI::App& options);
    bool isQuiet() const { return m_quiet; }

private:
    CLI::App& m_options;
    std::string m_name;
    bool m_quiet = false;
};

/// Has the option parser check a text by `parse`, a function that gives a `Result`: its cause and the text are told.
template <class Parse>
std::function<std::string(const std::string& text)> checkedBy(Parse parse)
{
    return [parse = std::move(parse)](const std::string& text) {
        const auto value = parse(text);
        return value ? std::string() : value.error().cause + ", not '" + text + "'";
    };
}

} // namespace lamina
