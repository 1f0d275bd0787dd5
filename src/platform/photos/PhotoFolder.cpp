#include "platform/photos/PhotoFolder.h"

#include "platform/files/FileCopying.h"
#include "platform/files/FileWriting.h"
#include "platform/files/PrivateFolder.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/photos/PictureFolders.h"

#include <QDateTime>

#include <filesystem>
#include <utility>
#include <variant>
#include <vector>

namespace lamina {

namespace {

std::string nameForNow()
{
    // Full stops, since colons can't stand in names on sticks and cards.
    return "Lamina " + QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH.mm.ss")).toStdString();
}

/// `content`: bytes, or what fills a file.
template <class Content>
Result<std::string> saveIn(const std::string& folder, const std::string& extension, const Content& content)
{
    return writeNumberedFile(folder + '/' + nameForNow(), extension, content);
}

/// The same in our own folder, which is made.
template <class Content>
Result<std::string> saveNew(const std::string& extension, const Content& content)
{
    const std::string folder = photoLibraryFolder();
    if (Outcome made = makeFolder(folder); !made)
        return made.error();
    return saveIn(folder, extension, content);
}

} // namespace

std::string photoLibraryFolder()
{
    return picturesFolder() + "/Lamina";
}

Result<NewPhoto> copyOf(const std::string& path)
{
    Result<FileFiller> content = contentsOf(path);
    if (!content)
        return content.error();
    return NewPhoto{std::filesystem::path(path).extension().string(), *std::move(content)};
}

Result<std::string> saveInFolder(const std::string& folder, const NewPhoto& photo)
{
    return std::visit([&](const auto& content) { return saveIn(folder, photo.extension, content); }, photo.content);
}

Result<std::string> savePNGToPhotoLibrary(const CGImage& image)
{
    const Result<std::vector<std::uint8_t>> png = encodePNG(image, photoLibraryFolder());
    if (!png)
        return png.error();
    return saveToPhotoLibrary(*png, ".png");
}

Result<std::string> saveToPhotoLibrary(std::span<const std::uint8_t> bytes, const std::string& extension)
{
    return saveNew(extension, bytes);
}

Result<std::string> copyToPhotoLibrary(const std::string& path)
{
    const Result<NewPhoto> copy = copyOf(path);
    return copy ? saveNew(copy->extension, std::get<FileFiller>(copy->content)) : copy.error();
}

} // namespace lamina
