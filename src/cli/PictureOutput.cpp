#include "cli/PictureOutput.h"

#include "cli/Messages.h"
#include "platform/files/FileWriting.h"
#include "platform/image/codecs/ImageSaving.h"
#include "platform/image/codecs/PictureEncoding.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <strings.h>
#include <unistd.h>
#include <vector>

namespace lamina {

namespace {

constexpr const char* kStandardOutput = "standard output";

struct OutputFormat {
    const char* extension;
    std::string_view uti;
};
constexpr std::array kFormats{
    OutputFormat{".png", kUTTypePNG},   OutputFormat{".jpg", kUTTypeJPEG}, OutputFormat{".jpeg", kUTTypeJPEG},
    OutputFormat{".gif", kUTTypeGIF},   OutputFormat{".bmp", kUTTypeBMP},  OutputFormat{".tif", kUTTypeTIFF},
    OutputFormat{".tiff", kUTTypeTIFF},
};

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

/// The format that the name of a file asks for; null when it asks for none.
const OutputFormat* formatOf(const std::string& path)
{
    const std::string extension = std::filesystem::path(path).extension().string();
    const auto found = std::ranges::find_if(
        kFormats, [&](const OutputFormat& format) { return strcasecmp(extension.c_str(), format.extension) == 0; });
    return found == kFormats.end() ? nullptr : &*found;
}

} // namespace

std::string outputExtensions()
{
    std::string list;
    for (const OutputFormat& format : kFormats)
        list += (list.empty() ? "" : &format == &kFormats.back() ? " or " : ", ") + std::string(format.extension);
    return list;
}

Outcome checkOutputName(const std::string& path)
{
    if (path == "-" || formatOf(path))
        return std::monostate();
    return Error{path, "the name of the output must end in " + outputExtensions()};
}

Outcome writePicture(const UIImage& picture, const std::string& path)
{
    if (path == "-" && isatty(STDOUT_FILENO))
        return Error{kStandardOutput, "is a terminal; send the picture to a file or a program"};
    const OutputFormat* format = formatOf(path);
    ImageSavingOptions options;
    options.uti = format ? format->uti : kUTTypePNG;
    const Result<std::vector<std::uint8_t>> file = encodeImage(picture, options, path);
    if (!file)
        return file.error();
    return path == "-" ? writeStandardOutput(*file) : writeFileAtomically(path, *file);
}

std::string sizeInPixels(IntSize size)
{
    return std::to_string(size.width) + " x " + std::to_string(size.height) + " pixels";
}

ExitCode deliverPicture(const UIImage& picture, const std::string& path, bool quiet)
{
    if (const Outcome written = writePicture(picture, path); !written)
        return fail(written.error(), ExitCode::Output);
    if (!quiet)
        note(path + ": " + sizeInPixels(picture.pixelSize()));
    return ExitCode::Good;
}

} // namespace lamina
