#include "platform/files/ProgramFolder.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace lamina {

std::string programFolder()
{
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : program.parent_path().string();
}

std::string installedFile(const char* variable, const std::string& folder, const std::string& name)
{
    std::error_code error;
    if (const char* told = std::getenv(variable); told && *told) {
        const std::filesystem::path file = std::filesystem::path(told) / name;
        if (std::filesystem::exists(file, error))
            return file.string();
    }
    const std::string program = programFolder();
    const std::filesystem::path file = (std::filesystem::path(program) / folder / name).lexically_normal();
    return !program.empty() && std::filesystem::exists(file, error) ? file.string() : std::string();
}

} // namespace lamina
