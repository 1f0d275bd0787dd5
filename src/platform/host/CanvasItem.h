#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/host/CanvasElements.h"
#include "platform/host/CanvasInput.h"
#include "platform/view/CanvasRenderer.h"
#include "platform/view/UIView.h"
#include "platform/view/UIViewController.h"

#include <QAbstractItemModel>
#include <QImage>
#include <QPointF>
#include <QPointer>
#include <QQuickItem>
#include <QTimer>

#include <memory>
#include <optional>

namespace lamina {

/// A closed hand wherever the mouse goes, for as long as this lives.
class ClosedHand {
public:
    ClosedHand();
    ~ClosedHand();
    ClosedHand(const ClosedHand&) = delete;
    ClosedHand& operator=(const ClosedHand&) = delete;
};

/// The place in the window where a screen's tree of views is seen and touched: `canvasView()` of the controller, drawn
/// at the display's own pixels and stretched to this item's width. Fingers, mouse, wheel and touchpad reach the tree in
/// its own points, whatever the item's size. Give the item the tree's proportions.
///
/// It paints when the tree changes and at no other time, and only what has changed. The mouse's pointer is what the
/// tree says, and a closed hand while the mouse drags from a place that has an open one.
class CanvasItem : public QQuickItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(ViewCanvas)
    /// The screen; null shows nothing. A screen without a canvas shows nothing either.
    Q_PROPERTY(QObject* controller READ controller WRITE setController NOTIFY controllerChanged FINAL)
    /// Default true. Off: the tree is only seen; fingers down are cancelled.
    Q_PROPERTY(bool acceptsInput READ acceptsInput WRITE setAcceptsInput NOTIFY acceptsInputChanged FINAL)
    /// The tree's accessibility elements; see CanvasElements.
    Q_PROPERTY(QAbstractItemModel* elements READ elements CONSTANT FINAL)

public:
    explicit CanvasItem(QQuickItem* parent = nullptr);
    ~CanvasItem() override;

    /// The `UIViewController` whose tree is on show; not owned, and null once it is gone.
    QObject* controller() const { return m_controller; }
    void setController(QObject* controller);
    /// Whether touches reach the tree; taking that away cancels those that are under way.
    bool acceptsInput() const { return m_acceptsInput; }
    void setAcceptsInput(bool accepts);
    /// Stays owned by this item.
    QAbstractItemModel* elements() { return &m_elements; }

    /// What is on show, at the display's pixels. Null when nothing is.
    const QImage& shownImage() const { return m_image; }

signals:
    void controllerChanged();
    void acceptsInputChanged();
    /// The first touch or turn of a wheel of a gesture.
    void touched();
    /// A quick tap of one finger or the mouse, whatever the tree has made of it; the point in the tree's coordinates.
    void tapped(qreal x, qreal y);
    /// Two quick taps of one finger or the mouse, after the two; the point likewise.
    void doubleTapped(qreal x, qreal y);

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void updatePolish() override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    bool event(QEvent* event) override;
    void hoverEnterEvent(QHoverEvent* event) override;
    void hoverMoveEvent(QHoverEvent* event) override;
    void hoverLeaveEvent(QHoverEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void touchEvent(QTouchEvent* event) override;
    void touchUngrabEvent() override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void showView(std::shared_ptr<UIView> view);
    void settleScale();
    void copyPainted(IntRect area);
    void takeMouse(const QMouseEvent& event);
    void tellTaps(const CanvasInput::Taps& taps);
    void releaseMouse();
    void setPointer();
    bool takeNativeGesture(QNativeGestureEvent& event);

    QPointer<QObject> m_controller;
    std::shared_ptr<UIView> m_view;
    std::unique_ptr<CanvasRenderer> m_renderer;
    std::unique_ptr<CanvasInput> m_input;
    CanvasElements m_elements;
    std::optional<QPointF> m_pointer; ///< where the mouse hovers
    std::optional<ClosedHand> m_closedHand;
    QTimer m_rest; ///< runs while frames follow one another
    QImage m_image;
    QImage m_formerImage;   ///< shown before it, while frames follow one another
    IntRect m_formerMisses; ///< what was painted since
    bool m_imageChanged = false;
    bool m_acceptsInput = true;
};

} // namespace lamina
