#include "platform/host/ArtProvider.h"

#include "platform/base/CGGeometry.h"
#include "platform/host/ImageConversion.h"
#include "platform/image/named/NamedPictures.h"

#include <QColor>
#include <QPainter>
#include <QUrl>

#include <string>
#include <utility>

namespace lamina {

namespace {

/// The picture's shape in one colour.
QImage tinted(QImage image, const QColor& color)
{
    image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

} // namespace

ArtProvider::ArtProvider()
    : QQuickImageProvider(QQuickImageProvider::Image)
{
}

QImage ArtProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize)
{
    const qsizetype mark = id.indexOf(QLatin1Char('?'));
    const std::string name = id.left(mark).toStdString();
    const CGSize own = sizeOfImageNamed(name);
    const CGSize pixels = requestedSize.isEmpty() ? own
                                                  : CGSize{static_cast<double>(requestedSize.width()),
                                                           static_cast<double>(requestedSize.height())};
    QImage image = qImage(imageNamed(name, pixels, 1).cgImage());
    if (mark >= 0)
        image = tinted(std::move(image), QColor(QUrl::fromPercentEncoding(id.mid(mark + 1).toLatin1())));
    if (size)
        *size = image.size();
    return image;
}

} // namespace lamina
