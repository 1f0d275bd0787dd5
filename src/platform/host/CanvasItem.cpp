#include "platform/host/CanvasItem.h"

#include "platform/host/ImageConversion.h"
#include "platform/host/ImageNode.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/view/UIPointerShape.h"

#include <QGuiApplication>
#include <QQuickWindow>

#include <utility>

namespace lamina {

namespace {

/// Without a frame for so long, nothing moves any more.
constexpr int kRestMilliseconds = 150;

Qt::CursorShape cursorFor(UIPointerShape shape)
{
    switch (shape) {
    case UIPointerShape::Arrow:
        return Qt::ArrowCursor;
    case UIPointerShape::OpenHand:
        return Qt::OpenHandCursor;
    case UIPointerShape::ClosedHand:
        return Qt::ClosedHandCursor;
    case UIPointerShape::ResizeAcross:
        return Qt::SizeHorCursor;
    case UIPointerShape::ResizeDiagonally:
        return Qt::SizeBDiagCursor;
    case UIPointerShape::Cross:
        return Qt::CrossCursor;
    }
    return Qt::ArrowCursor;
}

} // namespace

ClosedHand::ClosedHand()
{
    QGuiApplication::setOverrideCursor(Qt::ClosedHandCursor);
}

ClosedHand::~ClosedHand()
{
    QGuiApplication::restoreOverrideCursor();
}

CanvasItem::CanvasItem(QQuickItem* parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    setAcceptedMouseButtons(Qt::LeftButton);
    setAcceptTouchEvents(true);
    setAcceptHoverEvents(true);
    m_rest.setSingleShot(true);
    m_rest.setInterval(kRestMilliseconds);
    connect(&m_rest, &QTimer::timeout, this, [this] {
        m_formerImage = {};
        if (m_renderer)
            m_renderer->setMoving(false);
    });
}

CanvasItem::~CanvasItem() = default;

void CanvasItem::setController(QObject* controller)
{
    if (m_controller == controller)
        return;
    m_controller = controller;
    auto* const screen = dynamic_cast<UIViewController*>(controller);
    if (screen)
        screen->view(); // a screen makes its canvas as it loads
    showView(screen ? screen->canvasView() : nullptr);
    emit controllerChanged();
}

void CanvasItem::setAcceptsInput(bool accepts)
{
    if (m_acceptsInput == accepts)
        return;
    m_acceptsInput = accepts;
    if (m_input && !accepts)
        m_input->cancel();
    releaseMouse();
    emit acceptsInputChanged();
}

void CanvasItem::showView(std::shared_ptr<UIView> view)
{
    m_rest.stop();
    m_renderer.reset();
    m_input.reset();
    m_closedHand.reset();
    m_elements.update(nullptr);
    m_image = {};
    m_formerImage = {};
    m_imageChanged = true;
    m_view = std::move(view);
    if (m_view) {
        m_renderer = std::make_unique<CanvasRenderer>(m_view, 1);
        m_input = std::make_unique<CanvasInput>(m_view);
        settleScale();
        m_renderer->setChangeHandler([this] { polish(); });
    }
    polish();
    update();
}

void CanvasItem::settleScale()
{
    if (!m_view || !window() || width() <= 0)
        return;
    const double points = m_view->bounds().size.width;
    if (points <= 0)
        return;
    m_renderer->setScale(width() * window()->effectiveDevicePixelRatio() / points);
    m_input->setPointsPerUnit(points / width());
}

void CanvasItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() == oldGeometry.size())
        return;
    settleScale();
    polish();
}

void CanvasItem::itemChange(ItemChange change, const ItemChangeData& data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) {
        settleScale();
        polish();
    } else if (change == ItemVisibleHasChanged && !data.boolValue && m_input) {
        m_input->cancel();
    } else if (change == ItemVisibleHasChanged && data.boolValue) {
        polish();
    }
}

// ---- painting ----

void CanvasItem::updatePolish()
{
    if (!m_renderer || !isVisible() || !window() || width() <= 0)
        return;
    settleScale();         // a tree may have another size by now
    if (m_rest.isActive()) // so soon after another frame, this is one of a movement
        m_renderer->setMoving(true);
    const IntRect painted = m_renderer->render();
    m_elements.update(m_view.get());
    setPointer();
    if (painted.isEmpty())
        return;
    m_rest.start();
    copyPainted(painted);
    m_imageChanged = true;
    update();
}

/// The renderer keeps R, G, B, A in memory. Qt blits its own order of bytes several times as fast, and a picture of our
/// own leaves the renderer's bitmap unshared, so that it need not be copied whole at the next stroke. Nor need the
/// picture, which the window holds: while it does, the one before it is brought up to date and takes its place.
void CanvasItem::copyPainted(IntRect area)
{
    const CGImage shown = m_renderer->image();
    if (!shown)
        return;
    const IntRect all{0, 0, shown.width(), shown.height()};
    if (m_image.isDetached()) {
        m_formerMisses = m_formerMisses.unionWith(area);
    } else {
        std::swap(m_image, m_formerImage);
        area = area.unionWith(std::exchange(m_formerMisses, area)).intersection(all);
    }
    if (m_image.width() != all.width || m_image.height() != all.height) {
        m_image = QImage(all.width, all.height, QImage::Format_ARGB32_Premultiplied);
        area = all;
    }
    if (!m_image.isNull())
        copyPixels(shown, area, m_image);
}

QSGNode* CanvasItem::updatePaintNode(QSGNode* former, UpdatePaintNodeData*)
{
    // Pixel on pixel: the bitmap has whole ones, the item's sides may end between two.
    const QSizeF size = QSizeF(m_image.size()) / window()->effectiveDevicePixelRatio();
    return showImage(former, *window(), m_image, QRectF(QPointF(), size), m_imageChanged);
}

// ---- input ----

bool CanvasItem::event(QEvent* event)
{
    if (event->type() == QEvent::NativeGesture && m_input && m_acceptsInput)
        return takeNativeGesture(static_cast<QNativeGestureEvent&>(*event));
    return QQuickItem::event(event);
}

bool CanvasItem::takeNativeGesture(QNativeGestureEvent& event)
{
    const bool taken = m_input->nativeGesture(event);
    event.setAccepted(taken);
    if (taken)
        emit touched();
    return true;
}

void CanvasItem::hoverEnterEvent(QHoverEvent* event)
{
    hoverMoveEvent(event);
}

void CanvasItem::hoverMoveEvent(QHoverEvent* event)
{
    m_pointer = event->position();
    setPointer();
}

void CanvasItem::hoverLeaveEvent(QHoverEvent*)
{
    m_pointer.reset();
}

void CanvasItem::setPointer()
{
    if (!m_pointer || m_closedHand)
        return;
    const bool live = m_input && m_acceptsInput;
    const Qt::CursorShape wanted = cursorFor(live ? m_input->pointerShape(*m_pointer) : UIPointerShape::Arrow);
    if (cursor().shape() != wanted)
        setCursor(wanted);
}

void CanvasItem::takeMouse(const QMouseEvent& event)
{
    setKeepMouseGrab(true);
    forceActiveFocus(Qt::MouseFocusReason);
    emit touched();
    if (!m_closedHand && m_input->pointerShape(event.position()) == UIPointerShape::OpenHand)
        m_closedHand.emplace();
    m_input->mousePressed(event);
}

void CanvasItem::releaseMouse()
{
    m_closedHand.reset();
    setPointer();
}

void CanvasItem::mousePressEvent(QMouseEvent* event)
{
    if (!m_input || !m_acceptsInput)
        return event->ignore();
    takeMouse(*event);
}

void CanvasItem::mouseMoveEvent(QMouseEvent* event)
{
    if (m_input)
        m_input->mouseMoved(*event);
}

void CanvasItem::mouseReleaseEvent(QMouseEvent* event)
{
    setKeepMouseGrab(false);
    const CanvasInput::Taps taps = m_input ? m_input->mouseReleased(*event) : CanvasInput::Taps();
    m_pointer = event->position();
    releaseMouse();
    tellTaps(taps);
}

void CanvasItem::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (!m_input || !m_acceptsInput)
        return event->ignore();
    const CGPoint point = m_input->treePoint(event->position());
    takeMouse(*event); // two drags that follow each other quickly are drags both
    emit doubleTapped(point.x, point.y);
}

void CanvasItem::mouseUngrabEvent()
{
    if (m_input)
        m_input->cancel();
    releaseMouse();
}

void CanvasItem::touchEvent(QTouchEvent* event)
{
    if (!m_input || !m_acceptsInput)
        return event->ignore();
    if (event->type() == QEvent::TouchBegin) {
        setKeepTouchGrab(true);
        forceActiveFocus(Qt::MouseFocusReason);
        emit touched();
    }
    tellTaps(m_input->touched(*event));
    event->accept();
}

void CanvasItem::tellTaps(const CanvasInput::Taps& taps)
{
    if (taps.tap)
        emit tapped(taps.tap->x, taps.tap->y);
    if (taps.doubleTap)
        emit doubleTapped(taps.doubleTap->x, taps.doubleTap->y);
}

void CanvasItem::touchUngrabEvent()
{
    if (m_input)
        m_input->cancel();
}

void CanvasItem::wheelEvent(QWheelEvent* event)
{
    if (!m_input || !m_acceptsInput || !m_input->wheelTurned(*event))
        return event->ignore();
    emit touched();
    event->accept();
}

} // namespace lamina
