#include "cli/WindowLauncher.h"

#include "cli/Messages.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace lamina {

namespace {

constexpr const char* kWindowProgram = "lamina-app";

/// Empty when this program can't tell where it stands.
std::string besideThisProgram()
{
    std::error_code error;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : (self.parent_path() / kWindowProgram).string();
}

} // namespace

ExitCode becomeWindow(const std::vector<std::string>& arguments)
{
    std::vector<std::string> texts = {kWindowProgram};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    argv.reserve(texts.size() + 1);
    for (std::string& text : texts)
        argv.push_back(text.data());
    argv.push_back(nullptr);

    if (const std::string beside = besideThisProgram(); !beside.empty())
        execv(beside.c_str(), argv.data());
    execvp(kWindowProgram, argv.data());
    return fail({kWindowProgram, std::strerror(errno)}, ExitCode::Failed);
}

} // namespace lamina
