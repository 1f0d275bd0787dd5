#include "hud/MBProgressHUD.h"

#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"
#include "platform/view/UIViewAnimation.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lamina {

namespace {

using Animation = MBProgressHUDAnimation;

constexpr double kCornerRadius = 5;
constexpr double kLabelFontSize = 16;
constexpr double kDetailsFontSize = 12;
constexpr double kAnimationSeconds = 0.3;
constexpr double kSmallScale = 0.5;
constexpr double kLargeScale = 1.5;
constexpr double kMotionReach = 10;

std::shared_ptr<UILabel> makeLabel(double fontSize, int lines)
{
    auto label = std::make_shared<UILabel>();
    label->setFont(UIFont::systemFontOfSize(fontSize, UIFontWeight::Bold));
    label->setTextAlignment(NSTextAlignment::Center);
    label->setNumberOfLines(lines);
    label->setAccessibilityElement(true);
    return label;
}

CGAffineTransform scale(double factor)
{
    return CGAffineTransform::scaling(factor, factor);
}

} // namespace

MBProgressHUD::MBProgressHUD(const CGRect& frame)
    : UIView(frame)
    , m_progressObjectDisplayLink([this] {
        if (m_progressObject)
            setProgress(static_cast<float>(m_progressObject->fractionCompleted()));
    })
{
    setOpaque(false);
    setBackgroundColor(UIColor::clear());
    setAlpha(0);
    setAutoresizingMask(UIViewAutoresizing::FlexibleWidth | UIViewAutoresizing::FlexibleHeight);
    makeParts();
    setDefaultMotionEffectsEnabled(true);
    updateIndicators();
}

MBProgressHUD::MBProgressHUD(const UIView& view)
    : MBProgressHUD(view.bounds())
{
}

void MBProgressHUD::makeParts()
{
    m_backgroundView = std::make_shared<MBBackgroundView>(bounds());
    m_backgroundView->setStyle(MBProgressHUDBackgroundStyle::SolidColor);
    m_backgroundView->setColor(UIColor::clear());
    m_backgroundView->setAutoresizingMask(UIViewAutoresizing::FlexibleWidth | UIViewAutoresizing::FlexibleHeight);
    m_backgroundView->setAlpha(0);
    m_bezelView = std::make_shared<MBBackgroundView>();
    m_bezelView->layer().setCornerRadius(kCornerRadius);
    m_bezelView->setAlpha(0);
    m_label = makeLabel(kLabelFontSize, 1);
    m_detailsLabel = makeLabel(kDetailsFontSize, 0);
    m_choiceButton = std::make_shared<MBProgressHUDRoundedButton>();
    m_button = std::make_shared<MBProgressHUDRoundedButton>();
    addSubview(m_backgroundView);
    addSubview(m_bezelView);
    for (const std::shared_ptr<UIView>& part :
         std::initializer_list<std::shared_ptr<UIView>>{m_label, m_detailsLabel, m_choiceButton, m_button})
        m_bezelView->addSubview(part);
    for (CALayer* const text :
         {&m_label->layer(), &m_detailsLabel->layer(), &m_choiceButton->titleLayer(), &m_button->titleLayer()})
        m_textObservers.push_back(text->observeChanges([this] { setNeedsLayout(); }));
    updateColors();
}

// ---- one for a view ----

std::shared_ptr<MBProgressHUD> MBProgressHUD::showHUDAddedTo(UIView& view, bool animated)
{
    auto hud = std::make_shared<MBProgressHUD>(view);
    hud->removeFromSuperViewOnHide = true;
    view.addSubview(hud);
    hud->showAnimated(animated);
    return hud;
}

bool MBProgressHUD::hideHUDForView(UIView& view, bool animated)
{
    const auto hud = HUDForView(view);
    if (!hud)
        return false;
    hud->removeFromSuperViewOnHide = true;
    hud->hideAnimated(animated);
    return true;
}

std::shared_ptr<MBProgressHUD> MBProgressHUD::HUDForView(const UIView& view)
{
    for (auto child = view.subviews().rbegin(); child != view.subviews().rend(); ++child)
        if (auto hud = std::dynamic_pointer_cast<MBProgressHUD>(*child); hud && !hud->hasFinished())
            return hud;
    return nullptr;
}

MBProgressHUDAppearance& MBProgressHUD::appearance()
{
    static auto* const appearance = new MBProgressHUDAppearance;
    return *appearance;
}

// ---- showing and hiding ----

void MBProgressHUD::showAnimated(bool animated)
{
    m_minShowTimer.cancel();
    m_useAnimation = animated;
    m_finished = false;
    if (!(graceTime > 0))
        return showUsingAnimation(animated);
    m_graceTimer = DispatchTimer(DispatchQueue::main(), graceTime, [this] {
        if (!m_finished)
            showUsingAnimation(m_useAnimation);
    });
}

void MBProgressHUD::showUsingAnimation(bool animated)
{
    m_hideDelayTimer.cancel();
    m_showStarted = Clock::shared()->now();
    setAlpha(1);
    layoutIfNeeded();
    updateProgressLink(true);
    if (animated)
        return animateIn(true, animationType, {});
    m_bezelView->setTransform(CGAffineTransform::identity());
    m_bezelView->setAlpha(1);
    m_backgroundView->setAlpha(1);
}

void MBProgressHUD::hideAnimated(bool animated)
{
    m_graceTimer.cancel();
    m_useAnimation = animated;
    m_finished = true;
    const double seen = m_showStarted ? Clock::shared()->now() - *m_showStarted : minShowTime;
    if (minShowTime > 0 && seen < minShowTime)
        m_minShowTimer =
            DispatchTimer(DispatchQueue::main(), minShowTime - seen, [this] { hideUsingAnimation(m_useAnimation); });
    else
        hideUsingAnimation(animated);
}

void MBProgressHUD::hideAnimated(bool animated, double afterDelay)
{
    m_hideDelayTimer = DispatchTimer(DispatchQueue::main(), afterDelay, [this, animated] { hideAnimated(animated); });
}

void MBProgressHUD::hideUsingAnimation(bool animated)
{
    m_hideDelayTimer.cancel();
    const bool wasShown = m_showStarted.has_value();
    m_showStarted.reset();
    if (animated && wasShown)
        return animateIn(false, animationType, [this] { done(); });
    m_bezelView->setAlpha(0);
    m_backgroundView->setAlpha(1); // the view's own alpha hides it
    done();
}

void MBProgressHUD::animateIn(bool in, Animation type, std::function<void()> completion)
{
    if (type == Animation::Zoom)
        type = in ? Animation::ZoomIn : Animation::ZoomOut;
    if (in && m_bezelView->alpha() == 0 && type != Animation::Fade)
        m_bezelView->setTransform(scale(type == Animation::ZoomIn ? kSmallScale : kLargeScale));
    const auto change = [&] {
        if (in)
            m_bezelView->setTransform(CGAffineTransform::identity());
        else if (type != Animation::Fade)
            m_bezelView->setTransform(scale(type == Animation::ZoomOut ? kSmallScale : kLargeScale));
        m_bezelView->setAlpha(in ? 1 : 0);
        m_backgroundView->setAlpha(in ? 1 : 0);
    };
    std::function<void(bool)> ended;
    if (completion)
        ended = [self = shared_from_this(), completion = std::move(completion)](bool) { completion(); };
    animate(kAnimationSeconds, 0, {.spring = UIViewSpring{}}, change, std::move(ended));
}

void MBProgressHUD::done()
{
    const auto self = weak_from_this().lock(); // what is told may let go of it
    if (m_finished) {                          // otherwise it is shown anew already
        updateProgressLink(false);
        setAlpha(0);
        if (removeFromSuperViewOnHide)
            removeFromSuperview();
    }
    if (completionBlock)
        completionBlock();
    if (const auto listener = delegate.lock())
        listener->hudWasHidden(*this);
}

// ---- what is set ----

void MBProgressHUD::setProgressObject(std::shared_ptr<const NSProgress> progress)
{
    m_progressObject = std::move(progress);
    updateProgressLink(true);
}

void MBProgressHUD::updateProgressLink(bool runs)
{
    if (runs && m_progressObject)
        m_progressObjectDisplayLink.start();
    else
        m_progressObjectDisplayLink.stop();
}

void MBProgressHUD::setOffset(CGPoint offset)
{
    if (isFinite(offset))
        m_offset = offset;
    setNeedsLayout();
}

void MBProgressHUD::setMargin(double margin)
{
    if (std::isfinite(margin))
        m_margin = std::max(0.0, margin);
    setNeedsLayout();
}

void MBProgressHUD::setMinSize(CGSize size)
{
    if (isFinite(size))
        m_minSize = size;
    setNeedsLayout();
}

void MBProgressHUD::setSquare(bool square)
{
    m_square = square;
    setNeedsLayout();
}

void MBProgressHUD::setDefaultMotionEffectsEnabled(bool enabled)
{
    using Axis = UIInterpolatingMotionEffect::Axis;
    m_motionEffects.clear();
    if (enabled)
        m_motionEffects = {{"center.x", Axis::Horizontal, -kMotionReach, kMotionReach},
                           {"center.y", Axis::Vertical, -kMotionReach, kMotionReach}};
}

void MBProgressHUD::didMoveToSuperview()
{
    if (superview())
        setFrame(superview()->bounds());
}

} // namespace lamina
