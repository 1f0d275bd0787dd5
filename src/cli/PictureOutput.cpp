#include "cli/PictureOutput.h"

#include "platform/image/PictureEncoding.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <strings.h>
#include <unistd.h>
#include <vector>

namespace lamina {

namespace {

constexpr const char* kStandardOutput = "standard output";

Outcome writeStandardOutput(std::span<const std::uint8_t> bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return Error{kStandardOutput, std::strerror(errno)};
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return std::monostate();
}

} // namespace

Outcome checkOutputName(const std::string& path)
{
    if (path == "-")
        return std::monostate();
    const std::string extension = std::filesystem::path(path).extension().string();
    if (strcasecmp(extension.c_str(), ".png") == 0)
        return std::monostate();
    return Error{path, "the name of the output must end in .png"};
}

Outcome writePicture(const UIImage& picture, const std::string& path)
{
    if (path == "-" && isatty(STDOUT_FILENO))
        return Error{kStandardOutput, "is a terminal; send the picture to a file or a program"};
    const Result<std::vector<std::uint8_t>> file = encodePNG(picture.cgImage(), path);
    if (!file)
        return file.error();
    return path == "-" ? writeStandardOutput(*file) : writeFileAtomically(path, *file);
}

} // namespace lamina
