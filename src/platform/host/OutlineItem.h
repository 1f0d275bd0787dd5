#pragma once

#include "platform/host/DrawnItem.h"

#include <QColor>
#include <QVariantList>

namespace lamina {

/// The edge of a shape that others may lie over, as far as it can be seen; drawn inside of it, on a wider line, so that
/// it is read on every photo.
class OutlineItem : public DrawnItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(Outline)
    /// The shape and then those that lie over it, each a `lamina::UIBezierPath` in a square of side 1, which fills the
    /// item; what lies outside is cut. Empty: nothing is shown.
    Q_PROPERTY(QVariantList paths MEMBER m_paths NOTIFY shownChanged FINAL)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY shownChanged FINAL)
    /// Of the line below, which is one unit wider.
    Q_PROPERTY(QColor underColor MEMBER m_underColor NOTIFY shownChanged FINAL)
    /// In the item's units. Default 2.
    Q_PROPERTY(qreal lineWidth MEMBER m_lineWidth NOTIFY shownChanged FINAL)

public:
    explicit OutlineItem(QQuickItem* parent = nullptr);

signals:
    void shownChanged();

protected:
    QImage drawn(double pixelsPerUnit) const override;

private:
    QVariantList m_paths;
    QColor m_color = Qt::white;
    QColor m_underColor = Qt::transparent;
    qreal m_lineWidth = 2;
};

} // namespace lamina
