#include "platform/host/ArtProvider.h"

#include "platform/base/Log.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace lamina {

ArtProvider::ArtProvider()
    : QQuickImageProvider(QQuickImageProvider::Image)
{
}

QImage ArtProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize)
{
    QSvgRenderer art;
    for (const char* const folder : {"icons", "art"}) {
        const QString path = QStringLiteral(":/lamina/%1/%2.svg").arg(QLatin1String(folder), id);
        if (QFile::exists(path) && art.load(path))
            break;
    }
    if (!art.isValid()) {
        logError("no art is called " + id.toStdString());
        return {};
    }
    QSize target = requestedSize.isEmpty() ? art.defaultSize() : requestedSize;
    if (size)
        *size = target;
    QImage image(target, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return {};
    image.fill(Qt::transparent);
    QPainter painter(&image);
    art.setAspectRatioMode(Qt::KeepAspectRatio);
    art.render(&painter);
    return image;
}

} // namespace lamina
