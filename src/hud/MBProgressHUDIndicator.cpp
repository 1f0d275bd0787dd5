// What a progress HUD shows by its mode, and in which colours.
#include "hud/MBBarProgressView.h"
#include "hud/MBProgressHUD.h"
#include "hud/MBRoundProgressView.h"
#include "platform/base/UIColor.h"
#include "platform/view/UIActivityIndicatorView.h"

#include <utility>

namespace lamina {

namespace {

using Mode = MBProgressHUDMode;

constexpr double kBackgroundTintAlpha = 0.1;

std::shared_ptr<UIView> startedActivityIndicator()
{
    auto indicator = std::make_shared<UIActivityIndicatorView>();
    indicator->startAnimating();
    return indicator;
}

/// In the HUD's colour, or what is set for all HUDs.
void colour(UIView& indicator, const UIColor& content)
{
    const MBProgressHUDAppearance& set = MBProgressHUD::appearance();
    if (auto* const activity = dynamic_cast<UIActivityIndicatorView*>(&indicator)) {
        activity->setColor(set.activityIndicatorColor.value_or(content));
    } else if (auto* const round = dynamic_cast<MBRoundProgressView*>(&indicator)) {
        round->setProgressTintColor(set.progressTintColor.value_or(content));
        round->setBackgroundTintColor(set.backgroundTintColor.value_or(content.withAlpha(kBackgroundTintAlpha)));
    } else if (auto* const bar = dynamic_cast<MBBarProgressView*>(&indicator)) {
        bar->setProgressColor(set.progressColor.value_or(content));
        bar->setLineColor(set.lineColor.value_or(content));
    } else if (auto* const tinted = dynamic_cast<MBTintedIndicator*>(&indicator)) {
        tinted->setTintColor(content);
    }
}

} // namespace

void MBProgressHUD::setMode(Mode mode)
{
    if (mode == m_mode)
        return;
    m_mode = mode;
    updateIndicators();
}

void MBProgressHUD::setCustomView(std::shared_ptr<UIView> view)
{
    if (view == m_customView)
        return;
    m_customView = std::move(view);
    if (m_mode == Mode::CustomView)
        updateIndicators();
}

void MBProgressHUD::setProgress(float progress)
{
    m_progress = progress;
    if (auto* const shown = dynamic_cast<MBProgressIndicator*>(m_indicator.get()))
        shown->setProgress(progress);
}

void MBProgressHUD::updateIndicators()
{
    const bool isRound = dynamic_cast<MBRoundProgressView*>(m_indicator.get()) != nullptr;
    switch (m_mode) {
    case Mode::Indeterminate:
        if (!dynamic_cast<UIActivityIndicatorView*>(m_indicator.get()))
            setIndicator(startedActivityIndicator());
        break;
    case Mode::DeterminateHorizontalBar:
        setIndicator(std::make_shared<MBBarProgressView>());
        break;
    case Mode::Determinate:
    case Mode::AnnularDeterminate:
        if (!isRound)
            setIndicator(std::make_shared<MBRoundProgressView>());
        static_cast<MBRoundProgressView&>(*m_indicator).setAnnular(m_mode == Mode::AnnularDeterminate);
        break;
    case Mode::CustomView:
        setIndicator(m_customView);
        break;
    case Mode::Text:
        setIndicator(nullptr);
        break;
    }
    setProgress(m_progress);
    updateColors();
    setNeedsLayout();
}

void MBProgressHUD::setIndicator(std::shared_ptr<UIView> indicator)
{
    if (indicator == m_indicator)
        return;
    if (m_indicator)
        m_indicator->removeFromSuperview();
    m_indicator = std::move(indicator);
    if (m_indicator)
        m_bezelView->insertSubview(m_indicator, 0);
}

void MBProgressHUD::setContentColor(const UIColor& color)
{
    m_contentColor = color;
    updateColors();
}

void MBProgressHUD::updateColors()
{
    m_label->setTextColor(m_contentColor);
    m_detailsLabel->setTextColor(m_contentColor);
    m_choiceButton->setTitleColor(m_contentColor);
    m_button->setTitleColor(m_contentColor);
    if (m_indicator)
        colour(*m_indicator, m_contentColor);
}

} // namespace lamina
