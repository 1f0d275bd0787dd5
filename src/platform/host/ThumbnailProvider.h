#pragma once

#include <QQuickAsyncImageProvider>

namespace lamina {

/// Small squares of photo files, "image://thumbnail/" and the percent-encoded path, read on threads of their own.
class ThumbnailProvider : public QQuickAsyncImageProvider {
public:
    QQuickImageResponse* requestImageResponse(const QString& id, const QSize& requestedSize) override;
};

} // namespace lamina
