#include "editors/stickers/IQStickerView.h"

#include "editors/stickers/StickerHandle_p.h"
#include "platform/base/UIColor.h"
#include "platform/view/CALayer.h"
#include "platform/view/TouchDispatcher.h"
#include "platform/view/UITapGestureRecognizer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lamina {

namespace {

constexpr double kHandleSide = 2 * IQStickerView::kGlobalInset;

std::shared_ptr<IQStickerView>& active()
{
    static auto* const view = new std::shared_ptr<IQStickerView>;
    return *view;
}

bool isPossible(CGSize size)
{
    const auto fits = [](double side) {
        return side >= IQStickerView::kLeastSide && side <= IQStickerView::kLargestSide;
    };
    return fits(size.width) && fits(size.height);
}

/// NaN counts as the least.
double possibleSide(double side)
{
    return std::fmin(std::fmax(side, IQStickerView::kLeastSide), IQStickerView::kLargestSide);
}

/// How far `to` lies from `from`.
CGPoint difference(CGPoint to, CGPoint from)
{
    return {to.x - from.x, to.y - from.y};
}

/// The point turned back by `angle` about `center`.
CGPoint unturned(CGPoint point, CGPoint center, double angle)
{
    const auto [dx, dy] = difference(point, center);
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {center.x + c * dx + s * dy, center.y - s * dx + c * dy};
}

} // namespace

IQStickerView::IQStickerView(const CGRect& frame)
    : UIView({frame.origin, {possibleSide(frame.size.width), possibleSide(frame.size.height)}})
{
    setOpaque(false);
    makeHandles();
    attachGestures();
    setEnableClose(true);
    setEnableResize(true);
    setEnableRotate(true);
    setShowContentShadow(false);
    hideEditingHandles();
}

void IQStickerView::makeHandles()
{
    const double right = bounds().size.width - kHandleSide;
    const double bottom = bounds().size.height - kHandleSide;
    m_closeView =
        makeStickerHandle(StickerHandleKind::Close, {0, 0, kHandleSide, kHandleSide}, [this](int) { close(); });
    m_rotateView = makeStickerHandle(StickerHandleKind::Rotate, {right, bottom, kHandleSide, kHandleSide},
                                     [this](int steps) { turnBy(steps * TouchDispatcher::kWheelRotationStep); });
    m_resizeView = makeStickerHandle(StickerHandleKind::Resize, {0, bottom, kHandleSide, kHandleSide},
                                     [this](int steps) { scaleBy(std::pow(TouchDispatcher::kWheelZoomStep, steps)); });
    // Where a sticker is so small that they overlap, the one that makes it larger lies on top.
    for (const auto& handle : {m_closeView, m_rotateView, m_resizeView})
        addSubview(handle);
}

void IQStickerView::attachGestures()
{
    const auto attach = [](UIView& view, auto recognizer, auto action) {
        using Recognizer = typename decltype(recognizer)::element_type;
        recognizer->addAction([action](UIGestureRecognizer& gesture) { action(static_cast<Recognizer&>(gesture)); });
        view.addGestureRecognizer(std::move(recognizer));
    };
    const auto pressAtOnce = [] {
        auto press = std::make_shared<UILongPressGestureRecognizer>();
        press->setMinimumPressDuration(0);
        return press;
    };
    attach(*m_closeView, std::make_shared<UITapGestureRecognizer>(), [this](auto&) { singleTap(); });
    attach(*m_rotateView, pressAtOnce(), [this](auto& gesture) { rotateViewPanGesture(gesture); });
    attach(*m_resizeView, pressAtOnce(), [this](auto& gesture) { resizeTranslate(gesture); });
    attach(*this, std::make_shared<UIPanGestureRecognizer>(), [this](auto& gesture) { moveGesture(gesture); });
    attach(*this, std::make_shared<UITapGestureRecognizer>(), [this](auto&) { contentTapped(); });
}

const std::shared_ptr<IQStickerView>& IQStickerView::activeStickerView()
{
    return active();
}

void IQStickerView::releaseActiveStickerView(const UIView& tree)
{
    if (active() && (!active()->superview() || active()->isDescendantOf(tree)))
        active().reset();
}

// ---- content ----

void IQStickerView::setContentView(std::shared_ptr<UIView> content)
{
    if (m_contentView)
        m_contentView->removeFromSuperview();
    m_contentView = std::move(content);
    if (!m_contentView)
        return;
    layOutContent();
    m_contentView->setAutoresizingMask(UIViewAutoresizing::FlexibleWidth | UIViewAutoresizing::FlexibleHeight);
    m_contentView->setBackgroundColor(UIColor::clear());
    m_contentView->layer().setBorderColor(UIColor::brown());
    m_contentView->layer().setBorderWidth(1);
    insertSubview(m_contentView, 0);
    settle();
}

bool IQStickerView::showsBorder() const
{
    return m_contentView && m_contentView->layer().borderWidth() > 0 &&
           m_contentView->layer().borderColor() != UIColor::clear();
}

void IQStickerView::setShowsBorder(bool shows)
{
    if (m_contentView)
        m_contentView->layer().setBorderColor(shows ? UIColor::brown() : UIColor::clear());
}

/// Following by its mask it would drift by roundings, and differ from that of a sticker made anew.
void IQStickerView::layOutContent()
{
    if (m_contentView)
        m_contentView->setFrame(bounds().insetBy(kGlobalInset, kGlobalInset));
}

void IQStickerView::settle()
{
    if (content() && !m_isInGesture)
        content()->sizeDidSettle();
}

// ---- handles ----

void IQStickerView::setHandleEnabled(UIImageView& handle, bool& flag, bool enable)
{
    flag = enable;
    handle.setHidden(!enable);
    handle.setUserInteractionEnabled(enable);
}

void IQStickerView::setEnableClose(bool enable)
{
    setHandleEnabled(*m_closeView, m_enableClose, enable);
}

void IQStickerView::setEnableResize(bool enable)
{
    setHandleEnabled(*m_resizeView, m_enableResize, enable);
}

void IQStickerView::setEnableRotate(bool enable)
{
    setHandleEnabled(*m_rotateView, m_enableRotate, enable);
}

void IQStickerView::setShowContentShadow(bool show)
{
    m_showContentShadow = show;
    layer().setShadow(show ? CALayer::Shadow{UIColor::black(), 1, {0, 5}, 4}
                           : CALayer::Shadow{UIColor::clear(), 0, {0, 0}, 0});
}

void IQStickerView::setHandlesHidden(bool hidden)
{
    const std::pair<UIView*, bool> handles[] = {
        {m_closeView.get(), m_enableClose}, {m_rotateView.get(), m_enableRotate}, {m_resizeView.get(), m_enableResize}};
    for (const auto& [handle, enabled] : handles) {
        if (enabled)
            handle->setHidden(hidden);
    }
}

void IQStickerView::showEditingHandles()
{
    if (const std::shared_ptr<IQStickerView> former = active())
        former->hideEditingHandles();
    m_isShowingEditingHandles = true;
    active() = std::static_pointer_cast<IQStickerView>(shared_from_this());
    setHandlesHidden(false);
    refresh();
    if (const auto told = delegate())
        told->stickerViewDidShowEditingHandles(*this);
}

void IQStickerView::hideEditingHandles()
{
    const std::shared_ptr<IQStickerView> former = std::exchange(active(), nullptr); // it may be this one's last holder
    m_isShowingEditingHandles = false;
    setHandlesHidden(true);
    settle();
    if (const auto told = delegate())
        told->stickerViewDidHideEditingHandles(*this);
}

void IQStickerView::refresh()
{
    if (!superview())
        return;
    const CGAffineTransform t = superview()->transform();
    const double sx = std::sqrt(t.a * t.a + t.c * t.c);
    const double sy = std::sqrt(t.b * t.b + t.d * t.d);
    const auto inverse = CGAffineTransform::scaling(sx, sy).inverted();
    if (!inverse)
        return; // nothing is seen in a parent that is flattened to nothing
    for (const auto& handle : {m_closeView, m_rotateView, m_resizeView})
        handle->setTransform(*inverse);
    if (m_contentView)
        m_contentView->layer().setBorderWidth(m_isShowingEditingHandles ? 1 / sx : 0);
}

void IQStickerView::didMoveToSuperview()
{
    refresh();
}

void IQStickerView::setFrame(const CGRect& frame)
{
    UIView::setFrame(frame);
    refresh();
    layOutContent();
    settle();
}

void IQStickerView::setBounds(const CGRect& bounds)
{
    UIView::setBounds(bounds);
    layOutContent();
    settle();
}

// ---- gestures ----

void IQStickerView::contentTapped()
{
    const auto self = shared_from_this();
    if (m_isShowingEditingHandles) {
        hideEditingHandles();
        setShowsBorder(false);
        if (superview())
            superview()->bringSubviewToFront(*this);
    } else {
        showEditingHandles();
        setShowsBorder(true);
    }
    if (const auto told = observer())
        told->stickerWasTapped(*this);
}

void IQStickerView::singleTap()
{
    const auto self = shared_from_this();
    removeFromSuperview();
    if (const auto told = delegate())
        told->stickerViewDidClose(*this);
    if (const auto told = observer())
        told->stickerWasDeleted(*this);
}

void IQStickerView::moveGesture(UIPanGestureRecognizer& gesture)
{
    if (gesture.state() == UIGestureRecognizerState::Began)
        m_beginningCenter = center();
    if (superview()) {
        const CGPoint way = gesture.translationInView(superview());
        setCenter({m_beginningCenter.x + way.x, m_beginningCenter.y + way.y});
    }
    tellStep(gesture);
}

void IQStickerView::resizeTranslate(UILongPressGestureRecognizer& gesture)
{
    if (superview()) {
        const CGPoint touch = unturned(gesture.locationInView(superview()), frameCenter(), angle());
        // The handle is at the bottom left: away from the middle is to the left and down.
        if (gesture.state() == UIGestureRecognizerState::Changed)
            growBy(m_prevPoint.x - touch.x, touch.y - m_prevPoint.y);
        m_prevPoint = touch;
    }
    tellStep(gesture);
}

/// The middle stays, so that a side grows at both its ends.
void IQStickerView::growBy(double wChange, double hChange)
{
    const CGPoint middle = frameCenter();
    const CGAffineTransform turned = transform();
    setTransform({});
    const CGSize now = frame().size;
    const double width = possibleSide(now.width + 2 * wChange);
    const double height = possibleSide(now.height + 2 * hChange);
    setFrame({middle.x - width / 2, middle.y - height / 2, width, height});
    setTransform(turned);
}

void IQStickerView::rotateViewPanGesture(UILongPressGestureRecognizer& gesture)
{
    if (superview()) {
        const auto [dx, dy] = difference(gesture.locationInView(superview()), frameCenter());
        const double distance = std::sqrt(dx * dx + dy * dy);
        if (gesture.state() == UIGestureRecognizerState::Began) {
            m_deltaAngle = std::atan2(dy, dx) - angle();
            m_initialBounds = bounds();
            m_initialDistance = distance;
        } else if (gesture.state() == UIGestureRecognizerState::Changed) {
            setTransform(CGAffineTransform::rotation(std::atan2(dy, dx) - m_deltaAngle));
            // The root makes the size follow the finger calmly; it is taken in single precision.
            scaleBounds(m_initialBounds, std::sqrt(static_cast<float>(distance / m_initialDistance)));
        }
    }
    tellStep(gesture);
}

bool IQStickerView::scaleBounds(const CGRect& from, double scale)
{
    const CGSize size{from.size.width * scale, from.size.height * scale};
    if (!isPossible(size))
        return false;
    setBounds({{from.origin.x * scale, from.origin.y * scale}, size});
    return true;
}

CGPoint IQStickerView::frameCenter() const
{
    const CGRect box = frame();
    return {box.midX(), box.midY()};
}

double IQStickerView::angle() const
{
    return std::atan2(transform().b, transform().a);
}

void IQStickerView::tellStep(const UIGestureRecognizer& gesture)
{
    const auto self = shared_from_this();
    const auto told = delegate();
    const auto heard = observer();
    if (gesture.state() == UIGestureRecognizerState::Began) {
        m_isInGesture = true;
        if (told)
            told->stickerViewDidBeginEditing(*this);
        if (heard)
            heard->stickerDidBegin(*this);
    } else if (gesture.state() == UIGestureRecognizerState::Changed) {
        if (told)
            told->stickerViewDidChangeEditing(*this);
        if (heard)
            heard->stickerDidChange(*this);
    } else {
        m_isInGesture = false;
        settle();
        if (told)
            told->stickerViewDidEndEditing(*this);
        tellEnd(gesture.numberOfTouches() > 0 ? EditSeries::None : EditSeries::Move);
    }
}

void IQStickerView::tellEnd(EditSeries series)
{
    if (const auto heard = observer())
        heard->stickerDidEnd(*this, series);
}

// ---- without a finger ----

bool IQStickerView::moveBy(double dx, double dy)
{
    const CGPoint there{center().x + dx, center().y + dy};
    if (!isFinite(there))
        return false;
    setCenter(there);
    tellEnd(EditSeries::Move);
    return true;
}

bool IQStickerView::scaleBy(double factor)
{
    const bool wasInGesture = std::exchange(m_isInGesture, true);
    const bool scaled = scaleBounds(bounds(), factor);
    m_isInGesture = wasInGesture;
    if (!scaled)
        return false;
    if (content())
        content()->sizeDidChange();
    tellEnd(EditSeries::Zoom);
    return true;
}

bool IQStickerView::turnBy(double angle)
{
    if (!std::isfinite(angle))
        return false;
    setTransform(CGAffineTransform::rotation(this->angle() + angle));
    tellEnd(EditSeries::Rotate);
    return true;
}

bool IQStickerView::magnifyBy(double factor)
{
    if (m_isShowingEditingHandles)
        scaleBy(factor);
    return m_isShowingEditingHandles;
}

bool IQStickerView::rotateBy(double angle)
{
    if (m_isShowingEditingHandles)
        turnBy(angle);
    return m_isShowingEditingHandles;
}

} // namespace lamina
