#include "platform/photos/PhotoFolder.h"

#include "platform/files/FileCopying.h"
#include "platform/files/FileWriting.h"
#include "platform/files/PrivateFolder.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/photos/PictureFolders.h"

#include <QDateTime>

#include <filesystem>
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
Result<std::string> saveNew(const std::string& extension, const Content& content)
{
    const std::string folder = photoLibraryFolder();
    if (Outcome made = makeFolder(folder); !made)
        return made.error();
    return writeNumberedFile(folder + '/' + nameForNow(), extension, content);
}

} // namespace

std::string photoLibraryFolder()
{
    return picturesFolder() + "/Lamina";
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
    const Result<FileFiller> content = contentsOf(path);
    if (!content)
        return content.error();
    return saveNew(std::filesystem::path(path).extension().string(), *content);
}

} // namespace lamina
