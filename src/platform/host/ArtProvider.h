#pragma once

#include <QQuickImageProvider>

namespace lamina {

/// Our own line art by name, "image://art/Pan1", drawn at the size that is asked for: icons, the home cards' prints and
/// the chooser's backdrops. With a colour behind it, "image://art/check?%23ff000000", its shape is in that colour
/// alone. Any thread.
class ArtProvider : public QQuickImageProvider {
public:
    ArtProvider();
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace lamina
