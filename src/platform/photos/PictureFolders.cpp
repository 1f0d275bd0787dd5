#include "platform/photos/PictureFolders.h"

#include "platform/image/codecs/PictureFormats.h"
#include "platform/photos/PhotoFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <filesystem>

namespace lamina {

namespace fs = std::filesystem;

namespace {

/// Cameras and screenshots put theirs one folder deeper.
constexpr int kDeepest = 1;
/// Enough to meet a picture in any folder for pictures, and soon looked through on a slow card.
constexpr int kMostEntries = 5000;

/// Whether the folder, or a folder in it, holds a picture by its name. What is hidden does not count, nor what lies in
/// the folder to which this application saves; of a very large folder only a part is looked at.
bool holdsPictures(const std::string& folder)
{
    const std::string own = photoLibraryFolder();
    std::error_code failure;
    fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, failure);
    for (int left = kMostEntries; !failure && left > 0 && entry != fs::end(entry); --left, entry.increment(failure)) {
        const std::string name = entry->path().filename().string();
        std::error_code gone;
        if (name.starts_with('.') || entry.depth() >= kDeepest || entry->path().string() == own)
            entry.disable_recursion_pending();
        if (!name.starts_with('.') && pictureFormatForFileName(name) && entry->is_regular_file(gone))
            return true;
    }
    return false;
}

} // namespace

std::string picturesFolder()
{
    const QString folder = QDir::cleanPath(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
    // Who has set up no folder for pictures has all of their home there.
    return (folder == QDir::homePath() ? folder + QStringLiteral("/Pictures") : folder).toStdString();
}

std::string documentsFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation).toStdString() + "/Lamina";
}

std::string samplesFolder()
{
    const QString told = qEnvironmentVariable("LAMINA_SAMPLES");
    if (!told.isEmpty())
        return QFileInfo(told).isDir() ? told.toStdString() : std::string();
    const QString beside = QCoreApplication::applicationDirPath() + QStringLiteral("/../share/lamina/samples");
    if (QFileInfo(beside).isDir())
        return QFileInfo(beside).canonicalFilePath().toStdString();
    return QStandardPaths::locate(QStandardPaths::GenericDataLocation, QStringLiteral("lamina/samples"),
                                  QStandardPaths::LocateDirectory)
        .toStdString();
}

std::string samplesForBeginners()
{
    const std::string samples = samplesFolder();
    return samples.empty() || holdsPictures(picturesFolder()) ? std::string() : samples;
}

} // namespace lamina
