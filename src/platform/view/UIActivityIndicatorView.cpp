#include "platform/view/UIActivityIndicatorView.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/image/drawing/UIBezierPath.h"
#include "platform/view/PresentationHost.h"

#include <algorithm>
#include <numbers>
#include <optional>

namespace lamina {

namespace {

constexpr double kSide = 37;
constexpr double kLineWidth = 3;
constexpr int kSteps = 16; ///< of one turn
constexpr double kTurnsPerSecond = 1;
constexpr double kPart = 0.3; ///< of the ring
constexpr double kRingAlpha = 0.2;

} // namespace

UIActivityIndicatorView::UIActivityIndicatorView()
    : UIView({0, 0, kSide, kSide})
    , m_ring(std::make_shared<CAShapeLayer>())
    , m_part(std::make_shared<CAShapeLayer>())
    , m_link([this] { turn(); }, kSteps * kTurnsPerSecond)
{
    setOpaque(false);
    setUserInteractionEnabled(false);
    for (const auto& line : {m_ring, m_part}) {
        line->setFillColor(std::nullopt);
        line->setLineWidth(kLineWidth);
        layer().addSublayer(line);
    }
    setColor(m_color);
    shape();
}

void UIActivityIndicatorView::setColor(const UIColor& color)
{
    m_color = color;
    m_ring->setStrokeColor(color.withAlpha(color.alpha * kRingAlpha));
    m_part->setStrokeColor(color);
}

void UIActivityIndicatorView::startAnimating()
{
    m_animating = true;
    if (PresentationHost::current()->showsMotion())
        m_link.start();
}

void UIActivityIndicatorView::stopAnimating()
{
    m_animating = false;
    m_link.stop();
}

void UIActivityIndicatorView::turn()
{
    m_step = (m_step + 1) % kSteps;
    shape();
}

CGSize UIActivityIndicatorView::intrinsicContentSize() const
{
    return {kSide, kSide};
}

void UIActivityIndicatorView::setFrame(const CGRect& frame)
{
    UIView::setFrame(frame);
    shape();
}

void UIActivityIndicatorView::setBounds(const CGRect& bounds)
{
    UIView::setBounds(bounds);
    shape();
}

void UIActivityIndicatorView::shape()
{
    using std::numbers::pi;
    const CGPoint middle{bounds().midX(), bounds().midY()};
    const double radius = (std::min({bounds().size.width, bounds().size.height, kSide}) - kLineWidth) / 2;
    const double start = 2 * pi * m_step / kSteps - pi / 2;
    m_ring->setPath(UIBezierPath::withArcCenter(middle, radius, 0, 2 * pi, true));
    UIBezierPath part = UIBezierPath::withArcCenter(middle, radius, start, start + 2 * pi * kPart, true);
    part.lineCap = UIBezierPath::LineCap::Round;
    m_part->setPath(part);
}

} // namespace lamina
