#include "platform/photos/PhotoFolder.h"

#include "platform/files/FileWriting.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/photos/PictureFolders.h"

#include <QDateTime>

#include <cstdint>
#include <filesystem>
#include <vector>

namespace lamina {

namespace {

/// Far more than a user or a script saves in one second.
constexpr int kMostNames = 10'000;

std::string nameForNow()
{
    // Full stops, since colons can't stand in names on sticks and cards.
    return "Lamina " + QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH.mm.ss")).toStdString();
}

} // namespace

std::string photoLibraryFolder()
{
    return picturesFolder() + "/Lamina";
}

Result<std::string> savePNGToPhotoLibrary(const CGImage& image)
{
    const std::string folder = photoLibraryFolder();
    const std::string stem = folder + '/' + nameForNow();
    const Result<std::vector<std::uint8_t>> png = encodePNG(image, stem + ".png");
    if (!png)
        return png.error();

    std::error_code failure;
    std::filesystem::create_directories(folder, failure);
    if (failure)
        return Error{folder, "the folder can't be made"};
    for (int number = 1; number <= kMostNames; ++number) {
        const std::string path = stem + (number > 1 ? ' ' + std::to_string(number) : std::string()) + ".png";
        const Result<bool> written = writeNewFile(path, *png);
        if (!written)
            return written.error();
        if (*written)
            return path;
    }
    return Error{stem + ".png", "too many pictures of that second"};
}

} // namespace lamina
