#pragma once

#include "platform/host/DrawnItem.h"

#include "platform/image/drawing/UIBezierPath.h"

#include <QColor>
#include <QVariant>

namespace lamina {

/// An outline over a picture, read on every photo: a line on a wider one.
class OutlineItem : public DrawnItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(Outline)
    /// A `lamina::UIBezierPath` in a square of side 1, which fills the item; what lies outside is cut. Anything else
    /// shows nothing.
    Q_PROPERTY(QVariant path READ path WRITE setPath NOTIFY shownChanged FINAL)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY shownChanged FINAL)
    /// Of the line below, which is one unit wider on both sides.
    Q_PROPERTY(QColor underColor MEMBER m_underColor NOTIFY shownChanged FINAL)
    /// In the item's units. Default 2.
    Q_PROPERTY(qreal lineWidth MEMBER m_lineWidth NOTIFY shownChanged FINAL)

public:
    explicit OutlineItem(QQuickItem* parent = nullptr);

    QVariant path() const { return QVariant::fromValue(m_path); }
    void setPath(const QVariant& path);

signals:
    void shownChanged();

protected:
    QImage drawn(double pixelsPerUnit) const override;

private:
    UIBezierPath m_path;
    QColor m_color = Qt::white;
    QColor m_underColor = Qt::transparent;
    qreal m_lineWidth = 2;
};

} // namespace lamina
