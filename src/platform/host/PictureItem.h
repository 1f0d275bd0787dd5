#pragma once

#include "platform/host/DrawnItem.h"

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/UIImage.h"

#include <QVariant>

namespace lamina {

/// The rectangle in which a picture of that size covers `box`, their middles in one place.
CGRect coveringRect(CGSize picture, const CGRect& box);
/// The largest one in which it lies in `box` whole.
CGRect containedRect(CGSize picture, const CGRect& box);

/// A picture of ours in the chrome: a thumbnail that fills the item, its middle kept, with rounded corners. A
/// translucent one stands on white, as it leaves the application.
class PictureItem : public DrawnItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(Picture)
    /// A `lamina::UIImage`; anything else, or an empty one, shows nothing.
    Q_PROPERTY(QVariant picture READ picture WRITE setPicture NOTIFY pictureChanged FINAL)
    /// Of the corners, in the item's units. Default 0.
    Q_PROPERTY(qreal radius READ radius WRITE setRadius NOTIFY radiusChanged FINAL)
    /// A cut-out is shown whole, in the item's middle, and what lies behind it is seen round it. Default false.
    Q_PROPERTY(bool cutOut READ isCutOut WRITE setCutOut NOTIFY cutOutChanged FINAL)
    Q_PROPERTY(bool empty READ isEmpty NOTIFY pictureChanged FINAL)

public:
    using DrawnItem::DrawnItem;

    /// The picture on show, a `lamina::UIImage`. Setting one that shares its pixels with it changes nothing.
    QVariant picture() const;
    void setPicture(const QVariant& picture);
    /// Of the corners, in the item's units; 0: square.
    qreal radius() const { return m_radius; }
    void setRadius(qreal radius);
    /// Whether it is shown whole and without paper.
    bool isCutOut() const { return m_cutOut; }
    void setCutOut(bool cutOut);
    bool isEmpty() const { return !m_picture; }

signals:
    void pictureChanged();
    void radiusChanged();
    void cutOutChanged();

protected:
    QImage drawn(double pixelsPerUnit) const override;

private:
    UIImage m_picture;
    qreal m_radius = 0;
    bool m_cutOut = false;
};

} // namespace lamina
