#pragma once

#include "platform/host/DrawnItem.h"

#include "platform/image/pixels/UIImage.h"

#include <QColor>
#include <QString>
#include <QVariant>
#include <QVariantList>

namespace lamina {

/// A photo's print that lies askew: a sheet of paper with art or a picture on it and a hard shadow of stacked edges,
/// all turned together about the item's centre and drawn as one picture, so that its edges are smooth under every
/// renderer. It sticks out of the item by what its corners and the shadow need.
class PrintItem : public DrawnItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(Print)
    /// A named picture that covers the sheet; empty: none.
    Q_PROPERTY(QString art MEMBER m_art NOTIFY shownChanged FINAL)
    /// A `lamina::UIImage` in the place of art, its middle kept; translucent ones let the paper through.
    Q_PROPERTY(QVariant picture READ picture WRITE setPicture NOTIFY shownChanged FINAL)
    /// What is seen of the paper round the picture, in the item's units. Default 0.
    Q_PROPERTY(qreal margin MEMBER m_margin NOTIFY shownChanged FINAL)
    /// Degrees, clockwise. Default 0.
    Q_PROPERTY(qreal turn MEMBER m_turn NOTIFY shownChanged FINAL)
    /// Of the sheet's corners, in the item's units.
    Q_PROPERTY(qreal radius MEMBER m_radius NOTIFY shownChanged FINAL)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY shownChanged FINAL)
    /// Its alpha is multiplied by that of each edge.
    Q_PROPERTY(QColor shadowColor MEMBER m_shadowColor NOTIFY shownChanged FINAL)
    /// The shadow's edges, the lowest first: `offset` down, `grow` on every side, `alpha`.
    Q_PROPERTY(QVariantList shadow MEMBER m_shadow NOTIFY shownChanged FINAL)

public:
    explicit PrintItem(QQuickItem* parent = nullptr);

    QVariant picture() const { return QVariant::fromValue(m_picture); }
    void setPicture(const QVariant& picture);

signals:
    void shownChanged();

protected:
    QImage drawn(double pixelsPerUnit) const override;
    QRectF drawnRect() const override;

private:
    QString m_art;
    UIImage m_picture;
    qreal m_margin = 0;
    qreal m_turn = 0;
    qreal m_radius = 0;
    QColor m_color = Qt::white;
    QColor m_shadowColor = Qt::black;
    QVariantList m_shadow;
};

} // namespace lamina
