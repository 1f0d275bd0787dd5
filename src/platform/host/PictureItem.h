#pragma once

#include "platform/host/DrawnItem.h"

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/UIImage.h"

#include <QVariant>

namespace lamina {

/// The rectangle in which a picture of that size covers `box`, their middles in one place.
CGRect coveringRect(CGSize picture, const CGRect& box);

/// A picture of ours in the chrome: a thumbnail that fills the item, its middle kept, with rounded corners. A
/// translucent one stands on white, as it leaves the application.
class PictureItem : public DrawnItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(Picture)
    /// A `lamina::UIImage`; anything else, or an empty one, shows nothing.
    Q_PROPERTY(QVariant picture READ picture WRITE setPicture NOTIFY pictureChanged FINAL)
    /// Of the corners, in the item's units. Default 0.
    Q_PROPERTY(qreal radius READ radius WRITE setRadius NOTIFY radiusChanged FINAL)
    Q_PROPERTY(bool empty READ isEmpty NOTIFY pictureChanged FINAL)

public:
    using DrawnItem::DrawnItem;

    /// The picture on show, a `lamina::UIImage`. Setting one that shares its pixels with it changes nothing.
    QVariant picture() const;
    void setPicture(const QVariant& picture);
    /// Of the corners, in the item's units; 0: square.
    qreal radius() const { return m_radius; }
    void setRadius(qreal radius);
    bool isEmpty() const { return !m_picture; }

signals:
    void pictureChanged();
    void radiusChanged();

protected:
    QImage drawn(double pixelsPerUnit) const override;

private:
    UIImage m_picture;
    qreal m_radius = 0;
};

} // namespace lamina
