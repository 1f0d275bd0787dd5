#include "app/PhotoFolders.h"

#include "platform/files/FileURL.h"
#include "platform/files/PrivateFolder.h"
#include "platform/photos/PHPhotoLibrary.h"

#include <QLatin1String>
#include <QSettings>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace lamina {

namespace {

constexpr const char* kKey = "folders";

/// Those of the command line.
std::vector<std::string>& givenFolders()
{
    static std::vector<std::string> folders;
    return folders;
}

QString fileName()
{
    return QString::fromStdString(stateFolder() + "/photos.ini");
}

/// Absolute and without a slash at its end; empty for what is no path.
std::string wholePath(const std::string& path)
{
    std::error_code failure;
    std::string whole = path.empty() ? path : std::filesystem::absolute(path, failure).lexically_normal().string();
    if (whole.size() > 1 && whole.ends_with('/'))
        whole.pop_back();
    return failure ? std::string() : whole;
}

void add(const std::string& path, std::vector<std::string>& folders)
{
    const std::string whole = wholePath(path);
    if (!whole.empty() && std::find(folders.begin(), folders.end(), whole) == folders.end())
        folders.push_back(whole);
}

void tellLibrary(std::vector<std::string> folders)
{
    for (const std::string& folder : givenFolders())
        add(folder, folders);
    PHPhotoLibrary::setFurtherFolders(std::move(folders));
}

} // namespace

std::vector<std::string> keptPhotoFolders()
{
    std::vector<std::string> folders;
    if (stateFolder().empty())
        return folders;
    for (const QString& entry : QSettings(fileName(), QSettings::IniFormat).value(QLatin1String(kKey)).toStringList()) {
        const Result<std::string> path = pathOfFileURL(entry.toStdString());
        if (path || entry.startsWith(QLatin1Char('/')))
            add(path ? *path : entry.toStdString(), folders);
    }
    return folders;
}

Outcome keepPhotoFolders(const std::vector<std::string>& folders)
{
    if (const Outcome made = makePrivateFolder(stateFolder()); !made)
        return made;
    QStringList entries;
    for (const std::string& folder : folders)
        entries.append(QString::fromStdString(fileURLOfPath(folder)));
    QSettings file(fileName(), QSettings::IniFormat);
    file.setValue(QLatin1String(kKey), entries);
    file.sync();
    if (file.status() != QSettings::NoError)
        return Error{fileName().toStdString(), "can't be written"};
    tellLibrary(keptPhotoFolders());
    return success();
}

void openPhotoFolders(std::vector<std::string> given)
{
    givenFolders() = std::move(given);
    tellLibrary(keptPhotoFolders());
}

} // namespace lamina
