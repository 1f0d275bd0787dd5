#include "platform/host/ThumbnailProvider.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/host/ImageConversion.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PictureQueue.h"
#include "platform/photos/Thumbnail.h"

#include <QImage>
#include <QUrl>

#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>
#include <string>

namespace lamina {

namespace {

/// `picture` has scale 1.
QImage onPaper(const UIImage& picture)
{
    const CGRect whole({}, picture.size());
    std::optional<CGContext> context = CGContext::image(whole.size, true, 1);
    if (!context)
        return {};
    drawOnPaper(picture, *context, whole, whole);
    return qImage(context->makeImage());
}

class ThumbnailResponse : public QQuickImageResponse {
public:
    ThumbnailResponse(std::string path, int side)
        : m_cancelled(std::make_shared<std::atomic<bool>>(false))
    {
        runShortPictureWork([this, path = std::move(path), side, cancelled = m_cancelled] {
            if (const Result<UIImage> picture = loadThumbnail(path, side, cancelled.get()))
                m_image = onPaper(*picture);
            emit finished(); // the engine deletes this afterwards, also when it was cancelled
        });
    }
    QQuickTextureFactory* textureFactory() const override
    {
        return QQuickTextureFactory::textureFactoryForImage(m_image);
    }
    QString errorString() const override { return m_image.isNull() ? QStringLiteral("not a picture") : QString(); }
    void cancel() override { *m_cancelled = true; }

private:
    std::shared_ptr<std::atomic<bool>> m_cancelled;
    QImage m_image;
};

} // namespace

QQuickImageResponse* ThumbnailProvider::requestImageResponse(const QString& id, const QSize& requestedSize)
{
    constexpr int kUsualSide = 96;
    constexpr int kLargestSide = 512;
    const int side = requestedSize.width() > 0 ? std::min(requestedSize.width(), kLargestSide) : kUsualSide;
    return new ThumbnailResponse(QUrl::fromPercentEncoding(id.toUtf8()).toStdString(), side);
}

} // namespace lamina
