#include "platform/host/ArtProvider.h"

#include "platform/base/CGGeometry.h"
#include "platform/host/ImageConversion.h"
#include "platform/image/named/NamedPictures.h"

#include <string>

namespace lamina {

ArtProvider::ArtProvider()
    : QQuickImageProvider(QQuickImageProvider::Image)
{
}

QImage ArtProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize)
{
    const std::string name = id.toStdString();
    const CGSize own = sizeOfImageNamed(name);
    const CGSize pixels = requestedSize.isEmpty() ? own
                                                  : CGSize{static_cast<double>(requestedSize.width()),
                                                           static_cast<double>(requestedSize.height())};
    QImage image = qImage(imageNamed(name, pixels, 1).cgImage());
    if (size)
        *size = image.size();
    return image;
}

} // namespace lamina
