#pragma once

#include <QImage>
#include <QRectF>

class QQuickWindow;
class QSGNode;

namespace lamina {

/// The node that shows `image` over `rect`, for an item's updatePaintNode: the former frame's node, or a new one.
/// `changed` tells that the picture is another than in the former frame, and is taken back. Null, and the former node
/// gone, when there is nothing to show. Render thread, while the main thread waits.
QSGNode* showImage(QSGNode* former, QQuickWindow& window, const QImage& image, const QRectF& rect, bool& changed);

} // namespace lamina
