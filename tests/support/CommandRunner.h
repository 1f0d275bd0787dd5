#pragma once

#include "ProcessUsage.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace lamina::test {

/// How one run of a program ended.
struct CommandResult : ProcessUsage {
    int exitCode = -1;  ///< -1: ended by a signal
    std::string output; ///< standard output
    std::string errors; ///< standard error
};

/// What a run is given beside its arguments.
struct CommandOptions {
    std::string input;                          ///< standard input
    std::optional<std::uint64_t> fileSizeLimit; ///< bytes a file may grow to (as a full disk would)
    std::optional<int> cores;                   ///< pins the run to the first so many
    std::optional<int> interruptAfterMs;        ///< keeps standard input open and sends SIGINT
};

CommandResult runCommand(const std::string& program, const std::vector<std::string>& arguments,
                         const CommandOptions& options = {});

/// A folder of its own, removed with everything in it.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string path(const std::string& name = "") const
    {
        return name.empty() ? m_path.string() : (m_path / name).string();
    }
    /// Names of what lies in it, sorted.
    std::vector<std::string> names() const;

private:
    std::filesystem::path m_path;
};

std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& content);

} // namespace lamina::test
