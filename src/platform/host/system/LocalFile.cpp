#include "platform/host/system/LocalFile.h"

#include "platform/base/Localization.h"

namespace lamina {

namespace {

bool isOfThisDevice(const QUrl& uri)
{
    const QString host = uri.host();
    return uri.scheme() == QLatin1String("file") && (host.isEmpty() || host == QLatin1String("localhost"));
}

std::string shownName(const QUrl& uri)
{
    const QString name = uri.fileName();
    return (name.isEmpty() ? uri.toDisplayString(QUrl::RemoveUserInfo) : name).toStdString();
}

} // namespace

Result<std::string> localFilePath(const QUrl& uri)
{
    if (!isOfThisDevice(uri))
        return Error{shownName(uri), localizedString("the photo is not on this device")};
    // Not toLocalFile: it makes text of the bytes, and a name that is no text would not be found any more.
    std::string path = QByteArray::fromPercentEncoding(uri.path(QUrl::FullyEncoded).toLatin1()).toStdString();
    if (path.empty() || path.front() != '/' || path.find('\0') != std::string::npos)
        return Error{shownName(uri), localizedString("this is not the name of a file")};
    return path;
}

} // namespace lamina
