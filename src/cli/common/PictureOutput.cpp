#include "cli/common/PictureOutput.h"

#include "cli/common/Messages.h"
#include "platform/files/FileCauses.h"
#include "platform/files/FileWriting.h"
#include "platform/files/GrowingFile.h"
#include "platform/image/codecs/ImageSaving.h"
#include "platform/image/codecs/PictureFormats.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string_view>
#include <system_error>
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
            return Error{kStandardOutput, writingFailure(errno)};
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return success();
}

Outcome checkStandardOutput()
{
    if (isatty(STDOUT_FILENO))
        return Error{kStandardOutput, "is a terminal; send the picture to a file or a program"};
    return success();
}

/// The format that the name of a file asks for; null when it asks for none.
const PictureFormat* formatOf(const std::string& path)
{
    const PictureFormat* format = pictureFormatForFileName(path);
    return format && format->encoder ? format : nullptr;
}

/// The picture as a file of the format that the name asks for, PNG where it asks for none.
Result<std::vector<std::uint8_t>> encodedFor(const std::string& path, const UIImage& picture)
{
    const PictureFormat* format = formatOf(path);
    ImageSavingOptions options;
    options.uti = format ? format->uti : kUTTypePNG;
    return encodeImage(picture, options, path);
}

} // namespace

std::string outputExtensions()
{
    std::vector<std::string_view> known;
    for (const PictureFormat& format : pictureFormats())
        if (format.encoder)
            known.insert(known.end(), format.extensions.begin(), format.extensions.end());
    std::string list;
    for (const std::string_view& extension : known)
        list.append(list.empty() ? "." : &extension == &known.back() ? " or ." : ", .").append(extension);
    return list;
}

Outcome checkOutputName(const std::string& path)
{
    if (path == "-" || formatOf(path))
        return success();
    return Error{path, "the name of the output must end in " + outputExtensions()};
}

Outcome checkOutputPlace(const std::string& path)
{
    if (path == "-")
        return checkStandardOutput();
    std::error_code missing;
    const std::filesystem::file_status status = std::filesystem::status(path, missing);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status) &&
        !std::filesystem::is_directory(status))
        return success();
    const Result<std::unique_ptr<GrowingFile>> file = GrowingFile::make(path);
    return file ? success() : Outcome(file.error());
}

Outcome writePicture(const UIImage& picture, const std::string& path)
{
    if (path == "-") {
        if (Outcome possible = checkStandardOutput(); !possible)
            return possible;
    }
    const Result<std::vector<std::uint8_t>> file = encodedFor(path, picture);
    if (!file)
        return file.error();
    return path == "-" ? writeStandardOutput(*file) : writeFileAtomically(path, *file);
}

Outcome writePicture(const UIImage& picture, const std::string& path, FileBatch& files)
{
    const Result<std::vector<std::uint8_t>> file = encodedFor(path, picture);
    return file ? files.write(path, *file) : Outcome(file.error());
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
