#include "platform/host/ImageNode.h"

#include <QQuickWindow>
#include <QSGImageNode>

namespace lamina {

QSGNode* showImage(QSGNode* former, QQuickWindow& window, const QImage& image, const QRectF& rect, bool& changed)
{
    auto* node = static_cast<QSGImageNode*>(former);
    if (image.isNull() || rect.isEmpty()) {
        delete node;
        return nullptr;
    }
    if (!node) {
        node = window.createImageNode();
        node->setOwnsTexture(true);
        changed = true;
    }
    if (changed) {
        changed = false;
        node->setTexture(window.createTextureFromImage(image));
        node->setSourceRect(QRectF(QPointF(), image.size()));
    }
    node->setFiltering(QSGTexture::Linear);
    node->setRect(rect);
    return node;
}

} // namespace lamina
