#include "cli/WindowLauncher.h"

#include "cli/common/Messages.h"
#include "platform/base/StandardStreams.h"
#include "platform/files/ProgramFolder.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace lamina {

namespace {

constexpr const char* kWindowProgram = "lamina-app";

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

    shareStandardErrorAgain();
    if (const std::string folder = programFolder(); !folder.empty())
        execv((folder + '/' + kWindowProgram).c_str(), argv.data());
    execvp(kWindowProgram, argv.data());
    return fail({kWindowProgram, std::strerror(errno)}, ExitCode::Failed);
}

} // namespace lamina
