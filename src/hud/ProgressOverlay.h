#pragma once

#include "hud/MBProgressHUD.h"
#include "hud/MBProgressHUDRoundedButton.h"
#include "platform/base/DispatchTimer.h"
#include "platform/base/Result.h"
#include "platform/view/UIViewController.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <string>

namespace lamina {

/// What lies over all screens while something is under way: the panel of `SVProgressHUD`, which is the way to it. The
/// window shows `canvasView` as long as there is a panel. One a process, never destroyed. Main thread.
class ProgressOverlay : public UIViewController {
    Q_OBJECT
    /// Whether there is a panel: waiting to be seen, seen, or on its way out.
    Q_PROPERTY(bool present READ isPresent NOTIFY changed FINAL)
    /// Whether no touch and no key may reach what lies below.
    Q_PROPERTY(bool blocking READ isBlocking NOTIFY changed FINAL)
    /// Whether the panel has a button, and so waits for the user.
    Q_PROPERTY(bool asks READ asks NOTIFY changed FINAL)
    /// What the panel says; empty while it is not seen, and on its way out.
    Q_PROPERTY(QString text READ text NOTIFY changed FINAL)
    /// How much larger than usual the user wants letters; 1 at first. For panels that come.
    Q_PROPERTY(double textScale MEMBER m_textScale FINAL)

public:
    /// The process's one, made at the first call.
    static ProgressOverlay& shared();

    bool isPresent() const { return m_hud != nullptr; }
    /// See the property.
    bool isBlocking() const { return m_state != State::Hidden && (m_maskType == kDarkMask || asks()); }
    /// See the property.
    bool asks() const;
    /// See the property.
    QString text() const;
    /// The panel; null while there is none.
    MBProgressHUD* hud() const { return m_hud.get(); }

    /// The root view's size, points.
    Q_INVOKABLE void takeSize(double width, double height);
    /// The key for a step back: closes what has failed, cancels what can be cancelled; otherwise nothing.
    Q_INVOKABLE void giveUp();

    /// As the operation of SVProgressHUD of this name; so are the next six.
    void setDefaultAnimationType(int type) { m_animationType = type; }
    /// See SVProgressHUD.
    void setDefaultMaskType(int type) { m_maskType = type; }
    /// See SVProgressHUD.
    void showWithStatus(const std::string& status);
    /// See SVProgressHUD.
    void setProgress(double progress);
    /// See SVProgressHUD.
    void setCancelAction(std::function<void()> cancel);
    /// See SVProgressHUD.
    void showFailure(const Error& error, std::function<void()> closed, const std::string& actionTitle,
                     std::function<void()> action);
    /// See SVProgressHUD.
    void dismiss();

    std::shared_ptr<UIView> canvasView() override { return sharedView(); }

signals:
    void changed();

protected:
    void loadView() override;

private:
    static constexpr int kDarkMask = 4;
    enum class State { Hidden, Busy, Failed };

    void makePanel();
    void present(State state, bool soon);
    void setButton(MBProgressHUDRoundedButton& button, const std::string& title);
    void noteEnd();
    void pressed(std::function<void()>& answer);

    std::shared_ptr<MBProgressHUD> m_hud;
    State m_state = State::Hidden;
    int m_animationType = 0;
    int m_maskType = 0;
    double m_textScale = 1;
    std::function<void()> m_answer; ///< of the button: cancels, or closes
    std::function<void()> m_choice; ///< of the second button
    DispatchTimer m_seenTimer;
};

} // namespace lamina
