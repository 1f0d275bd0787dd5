#include "platform/host/system/PhotoPlaces.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QStandardPaths>

#include <algorithm>

namespace lamina {

namespace {

constexpr std::array kExtensions = {"jpg", "jpeg", "png", "webp", "heic", "heif", "avif", "tif", "tiff", "gif", "bmp"};

bool holdsPicture(const QString& folder)
{
    constexpr int kEntriesToSee = 400;
    QDirIterator entries(folder, QDir::Files, QDirIterator::Subdirectories);
    for (int seen = 0; entries.hasNext() && seen < kEntriesToSee; ++seen)
        if (hasPictureExtension(QFileInfo(entries.next()).fileName().toStdString()))
            return true;
    return false;
}

} // namespace

bool hasPictureExtension(std::string_view name)
{
    const std::size_t dot = name.find_last_of('.');
    if (dot == std::string_view::npos)
        return false;
    const std::string_view end = name.substr(dot + 1);
    const QString extension = QString::fromUtf8(end.data(), static_cast<qsizetype>(end.size())).toLower();
    return std::ranges::any_of(kExtensions, [&](const char* known) { return extension == QLatin1String(known); });
}

std::string picturesFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::PicturesLocation).toStdString();
}

std::string samplesFolder()
{
    const QString installed =
        QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("../share/lamina/samples"));
    for (const QString& folder : {qEnvironmentVariable("LAMINA_SAMPLES"), QDir::cleanPath(installed)})
        if (!folder.isEmpty() && QDir(folder).exists())
            return folder.toStdString();
    return {};
}

std::string firstFolder()
{
    return holdsPicture(QString::fromStdString(picturesFolder())) ? std::string() : samplesFolder();
}

} // namespace lamina
