#pragma once

#include "hud/MBBackgroundView.h"
#include "hud/MBProgressHUDRoundedButton.h"
#include "hud/MBProgressIndicator.h"
#include "platform/base/DispatchTimer.h"
#include "platform/base/NSProgress.h"
#include "platform/view/CADisplayLink.h"
#include "platform/view/CALayer.h"
#include "platform/view/UILabel.h"
#include "platform/view/UIView.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

class MBProgressHUD;

/// What a progress HUD shows besides its texts.
enum class MBProgressHUDMode {
    Indeterminate = 0,            ///< an indicator that turns
    Determinate = 1,              ///< a pie
    DeterminateHorizontalBar = 2, ///< a bar
    AnnularDeterminate = 3,       ///< an arc on a ring
    CustomView = 4,               ///< the custom view
    Text = 5,                     ///< nothing
};

/// How a progress HUD comes and goes.
enum class MBProgressHUDAnimation {
    Fade = 0,
    Zoom = 1,    ///< in when it comes, out when it goes
    ZoomOut = 2, ///< comes from half as large again, goes to half the size
    ZoomIn = 3,  ///< comes from half the size, goes to half as large again
};

/// Hears of a progress HUD's end.
class MBProgressHUDDelegate {
public:
    virtual ~MBProgressHUDDelegate() = default;
    virtual void hudWasHidden(MBProgressHUD&) {}
};

/// What a view does when the device is tilted, by a way of its centre in points. Kept for those who can tell a tilt: a
/// desktop can't.
struct UIInterpolatingMotionEffect {
    /// In which direction of the tilt.
    enum class Axis { Horizontal, Vertical };
    std::string keyPath;
    Axis axis = Axis::Horizontal;
    double minimumRelativeValue = 0;
    double maximumRelativeValue = 0;
};

/// Colours that the indicators of all HUDs take instead of the HUD's own; none, the default: the HUD's.
struct MBProgressHUDAppearance {
    std::optional<UIColor> activityIndicatorColor = {};
    std::optional<UIColor> progressTintColor = {};   ///< of round views
    std::optional<UIColor> backgroundTintColor = {}; ///< likewise
    std::optional<UIColor> progressColor = {};       ///< of bars
    std::optional<UIColor> lineColor = {};           ///< likewise
};

/// Work under way, over a view that it covers: a panel in the middle with an indicator, two texts and a button. It
/// takes all touches of that view while it is seen. Where it is shown is where it is added, and it follows its parent's
/// size.
///
/// It waits (grace time), shows, waits to hide (least time) or is hidden; timers go by the shared clock. What is shown
/// is laid out on a later turn of the main queue, or by `layoutIfNeeded`. Must be held by std::shared_ptr; lengths in
/// points, times in seconds. Numbers that are not finite are ignored. Main thread.
class MBProgressHUD : public UIView {
public:
    /// Hidden, to be added to a view.
    explicit MBProgressHUD(const CGRect& frame = {});
    /// As large as `view`, which is not touched.
    explicit MBProgressHUD(const UIView& view);

    /// Makes one that leaves the view when it hides, adds it and shows it.
    static std::shared_ptr<MBProgressHUD> showHUDAddedTo(UIView& view, bool animated);
    /// Hides the one that `HUDForView` finds, which then leaves the view. False when there is none.
    static bool hideHUDForView(UIView& view, bool animated);
    /// The topmost HUD among the view's children that is not finished; null: none.
    static std::shared_ptr<MBProgressHUD> HUDForView(const UIView& view);
    /// In force for indicators that are coloured afterwards.
    static MBProgressHUDAppearance& appearance();

    /// After the grace time; at once without one.
    void showAnimated(bool animated);
    /// When it has been seen for the least time; at once without one, or when it is not seen yet.
    void hideAnimated(bool animated);
    /// Takes the place of a delayed hide that is still to come.
    void hideAnimated(bool animated, double afterDelay);
    /// From `hideAnimated` until it is shown anew. True at first.
    bool hasFinished() const { return m_finished; }

    /// Called when it is hidden, or would be; after `completionBlock`. Not owned.
    std::weak_ptr<MBProgressHUDDelegate> delegate;
    std::function<void()> completionBlock;
    /// Seconds that pass before it is shown. A hide meanwhile: it never is, and its end is told all the same.
    double graceTime = 0;
    /// Seconds that it is seen at least.
    double minShowTime = 0;
    bool removeFromSuperViewOnHide = false;
    MBProgressHUDAnimation animationType = MBProgressHUDAnimation::Fade;

    /// Default Indeterminate.
    MBProgressHUDMode mode() const { return m_mode; }
    void setMode(MBProgressHUDMode mode);
    /// Handed on to an indicator that takes one. Default 0.
    float progress() const { return m_progress; }
    void setProgress(float progress);
    /// Read into `progress` with every frame from showing to the end; default null.
    const std::shared_ptr<const NSProgress>& progressObject() const { return m_progressObject; }
    void setProgressObject(std::shared_ptr<const NSProgress> progress);
    /// The indicator of mode CustomView; default null. Its size is what it takes by itself, else its bounds'.
    const std::shared_ptr<UIView>& customView() const { return m_customView; }
    void setCustomView(std::shared_ptr<UIView> view);
    /// What is shown now by the mode; null: nothing.
    UIView* indicator() const { return m_indicator.get(); }

    /// Of the texts, the button and the indicator; default black with alpha 0.7.
    UIColor contentColor() const { return m_contentColor; }
    void setContentColor(const UIColor& color);
    /// Of the panel from the middle, as far as the margin lets it; default none.
    CGPoint offset() const { return m_offset; }
    void setOffset(CGPoint offset);
    /// Around the panel and within it; default 20.
    double margin() const { return m_margin; }
    void setMargin(double margin);
    /// Of the panel, where there is room; default none.
    CGSize minSize() const { return m_minSize; }
    void setMinSize(CGSize size);
    /// Whether the panel is as high as wide, where there is room; default false.
    bool isSquare() const { return m_square; }
    void setSquare(bool square);
    /// Default true.
    bool defaultMotionEffectsEnabled() const { return !m_motionEffects.empty(); }
    void setDefaultMotionEffectsEnabled(bool enabled);
    /// Those of the panel.
    const std::vector<UIInterpolatingMotionEffect>& motionEffects() const { return m_motionEffects; }

    /// The parts, whose looks and texts are the user's: the panel, the backdrop over the whole view, a title of one
    /// line, a text of any number of lines, and the button, which is seen once it has a title.
    MBBackgroundView& bezelView() const { return *m_bezelView; }
    MBBackgroundView& backgroundView() const { return *m_backgroundView; }
    UILabel& label() const { return *m_label; }
    UILabel& detailsLabel() const { return *m_detailsLabel; }
    MBProgressHUDRoundedButton& button() const { return *m_button; }
    /// One more between `detailsLabel` and `button`, for a second choice.
    MBProgressHUDRoundedButton& choiceButton() const { return *m_choiceButton; }

    /// To be called when a part was changed that the HUD doesn't know of: it is laid out on a later turn.
    void setNeedsLayout();
    /// Now, if something waits for it.
    void layoutIfNeeded();

    void setFrame(const CGRect& frame) override;
    void setBounds(const CGRect& bounds) override;
    void didMoveToSuperview() override;

private:
    struct Column;

    void makeParts();
    void showUsingAnimation(bool animated);
    void hideUsingAnimation(bool animated);
    void animateIn(bool in, MBProgressHUDAnimation type, std::function<void()> completion);
    void done();
    void updateIndicators();
    void setIndicator(std::shared_ptr<UIView> indicator);
    void updateColors();
    void updateProgressLink(bool runs);
    void layoutNow();
    Column column(double width) const;
    CGSize panelSize(CGSize content, CGSize room) const;
    CGPoint panelCenter(CGSize panel) const;

    MBProgressHUDMode m_mode = MBProgressHUDMode::Indeterminate;
    float m_progress = 0;
    std::shared_ptr<const NSProgress> m_progressObject;
    std::shared_ptr<UIView> m_customView;
    std::shared_ptr<UIView> m_indicator;
    UIColor m_contentColor = UIColor::fromWhite(0, 0.699999988079071);
    CGPoint m_offset;
    double m_margin = 20;
    CGSize m_minSize;
    bool m_square = false;
    std::vector<UIInterpolatingMotionEffect> m_motionEffects;

    std::shared_ptr<MBBackgroundView> m_backgroundView;
    std::shared_ptr<MBBackgroundView> m_bezelView;
    std::shared_ptr<UILabel> m_label;
    std::shared_ptr<UILabel> m_detailsLabel;
    std::shared_ptr<MBProgressHUDRoundedButton> m_choiceButton;
    std::shared_ptr<MBProgressHUDRoundedButton> m_button;

    bool m_useAnimation = true;
    bool m_finished = true;
    std::optional<double> m_showStarted; ///< on the shared clock
    bool m_layoutDue = false;
    bool m_layingOut = false;
    DispatchTimer m_graceTimer;
    DispatchTimer m_minShowTimer;
    DispatchTimer m_hideDelayTimer;
    DispatchTimer m_layoutTimer;
    CADisplayLink m_progressObjectDisplayLink;
    std::vector<CALayer::ChangeObserver> m_textObservers;
};

} // namespace lamina
