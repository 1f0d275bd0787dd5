#include "hud/ProgressOverlay.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Localization.h"
#include "platform/base/UIColor.h"
#include "platform/text/UIFont.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/PresentationHost.h"
#include "platform/view/UIControl.h"
#include "platform/view/UIView.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace lamina {

namespace {

/// What is over so soon isn't told.
constexpr double kGraceSeconds = 0.15;

constexpr UIColor kPaper = UIColor::fromWhite(233.0 / 255, 1);
constexpr UIColor kScrim = UIColor::fromWhite(3.0 / 255, 0.35);
constexpr CALayer::Shadow kShadow{UIColor::black(), 0.55, {0, 2}, 0};
constexpr CGSize kLeastPanel{156, 124};
constexpr double kFontSize = 15;

constexpr const char* kCancel = QT_TRANSLATE_NOOP("Lamina", "Cancel");
constexpr const char* kClose = QT_TRANSLATE_NOOP("Lamina", "Close");

} // namespace

ProgressOverlay& ProgressOverlay::shared()
{
    static auto* const overlay = new std::shared_ptr<ProgressOverlay>(std::make_shared<ProgressOverlay>());
    return **overlay;
}

void ProgressOverlay::loadView()
{
    auto view = std::make_shared<UIView>(CGRect{{}, windowSize()});
    view->setOpaque(false);
    setView(std::move(view));
}

void ProgressOverlay::takeSize(double width, double height)
{
    view().setFrame({0, 0, width, height});
    if (m_hud)
        m_hud->layoutIfNeeded();
}

bool ProgressOverlay::asks() const
{
    return m_state != State::Hidden && !(m_hud->button().title().empty() && m_hud->choiceButton().title().empty());
}

QString ProgressOverlay::text() const
{
    if (m_state == State::Hidden || m_hud->alpha() == 0)
        return {};
    const std::string& title = m_hud->label().text();
    return QString::fromStdString(title.empty() ? m_hud->detailsLabel().text() : title);
}

// ---- the panel ----

void ProgressOverlay::makePanel()
{
    m_hud = std::make_shared<MBProgressHUD>(view());
    m_hud->removeFromSuperViewOnHide = true;
    m_hud->completionBlock = [this] { noteEnd(); };
    m_hud->bezelView().setStyle(MBProgressHUDBackgroundStyle::SolidColor);
    m_hud->bezelView().setColor(kPaper);
    m_hud->bezelView().layer().setShadow(kShadow);
    m_hud->setMinSize(kLeastPanel);
    const UIFont font = UIFont::systemFontOfSize(kFontSize * m_textScale, UIFontWeight::Semibold);
    m_hud->label().setFont(font);
    m_hud->detailsLabel().setFont(font);
    m_hud->button().setFont(font);
    m_hud->choiceButton().setFont(font);
    m_hud->button().addTarget([this](UIControl&) { pressed(m_answer); }, UIControlEvents::TouchUpInside);
    m_hud->choiceButton().addTarget([this](UIControl&) { pressed(m_choice); }, UIControlEvents::TouchUpInside);
}

/// Shows the panel: one that is seen already at once, and otherwise with a moment's grace where it may be `soon` over.
void ProgressOverlay::present(State state, bool soon)
{
    const bool seen = m_hud->alpha() > 0;
    m_state = state;
    m_hud->graceTime = soon && !seen && PresentationHost::current()->showsFrames() ? kGraceSeconds : 0;
    m_hud->animationType = static_cast<MBProgressHUDAnimation>(std::clamp(m_animationType, 0, 3));
    const bool dark = m_maskType == kDarkMask || state == State::Failed;
    m_hud->backgroundView().setColor(dark ? kScrim : UIColor::clear());
    if (!m_hud->superview())
        view().addSubview(m_hud);
    m_hud->showAnimated(true);
    m_hud->layoutIfNeeded();
    m_seenTimer = DispatchTimer(DispatchQueue::main(), m_hud->graceTime, [this] { emit changed(); });
    emit changed();
}

void ProgressOverlay::noteEnd()
{
    if (m_state != State::Hidden)
        return; // it is shown anew already
    m_hud.reset();
    emit changed();
}

void ProgressOverlay::setButton(MBProgressHUDRoundedButton& button, const std::string& title)
{
    button.setTitle(title);
    button.setHidden(title.empty());
}

/// An answer is given once.
void ProgressOverlay::pressed(std::function<void()>& answer)
{
    if (const auto given = std::exchange(answer, nullptr))
        given();
}

void ProgressOverlay::giveUp()
{
    pressed(m_answer);
}

// ---- the calls ----

void ProgressOverlay::showWithStatus(const std::string& status)
{
    if (!m_hud)
        makePanel();
    m_hud->setMode(MBProgressHUDMode::Indeterminate);
    m_hud->setProgress(0);
    m_hud->label().setText(status);
    m_hud->detailsLabel().setText({});
    setCancelAction({});
    setButton(m_hud->choiceButton(), {});
    m_choice = {};
    present(State::Busy, true);
}

void ProgressOverlay::setProgress(double progress)
{
    if (m_state != State::Busy)
        return;
    m_hud->setMode(MBProgressHUDMode::AnnularDeterminate);
    m_hud->setProgress(static_cast<float>(progress));
}

void ProgressOverlay::setCancelAction(std::function<void()> cancel)
{
    if (!m_hud || m_state == State::Failed)
        return;
    setButton(m_hud->button(), cancel ? localizedString(kCancel) : std::string());
    m_answer = {};
    if (cancel) {
        m_answer = [this, cancel = std::move(cancel)] {
            setButton(m_hud->button(), {}); // there is nothing more to press
            emit changed();
            cancel();
        };
    }
    emit changed();
}

void ProgressOverlay::showFailure(const Error& error, std::function<void()> closed, const std::string& actionTitle,
                                  std::function<void()> action)
{
    if (!m_hud)
        makePanel();
    const auto leaving = [this](std::function<void()> then) {
        return [this, then = std::move(then)] {
            dismiss();
            if (then)
                then();
        };
    };
    m_hud->setMode(MBProgressHUDMode::Text);
    m_hud->label().setText({});
    m_hud->detailsLabel().setText(failureText(error));
    setButton(m_hud->button(), localizedString(kClose));
    setButton(m_hud->choiceButton(), actionTitle);
    m_answer = leaving(std::move(closed));
    m_choice = leaving(std::move(action));
    present(State::Failed, false);
}

void ProgressOverlay::dismiss()
{
    if (m_state == State::Hidden)
        return;
    m_state = State::Hidden;
    m_answer = {};
    m_choice = {};
    m_seenTimer.cancel();
    m_hud->hideAnimated(true);
    emit changed();
}

} // namespace lamina
