#pragma once

#include "platform/host/ScreenModel.h"
#include "platform/view/PresentationHost.h"
#include "platform/view/UIWindow.h"

#include <QObject>
#include <vector>

namespace lamina {

/// Mirrors the screens of a `UIWindow` in the real window: a screen is drawn by the QML file that its scene names, one
/// of the system's by a file of this folder, and comes and goes as its transition says. One whose file is missing is
/// logged as an error and shown as an empty screen with its name. Main thread.
class ScreenHost : public QObject, public PresentationHost {
    Q_OBJECT

public:
    ScreenHost();

    /// Whose screens are mirrored.
    UIWindow& window() { return m_window; }
    /// They as rows for the window's QML.
    ScreenModel& screens() { return m_screens; }

    /// Seconds that a transition takes, by its kind; 0 while the system asks for little motion.
    struct Durations {
        double slide = 0;
        double fade = 0;
        double sheet = 0;
    };
    void setDurations(const Durations& durations) { m_durations = durations; }

    /// Whether screens are on their way.
    bool inTransition() const { return m_inTransition; }

    void startTransition(const PresentationTransition& transition, std::function<void()> finished) override;
    /// As the durations say.
    bool showsMotion() const override { return m_durations.slide > 0 || m_durations.fade > 0; }
    bool showsFrames() const override { return true; }

signals:
    /// A screen is about to be presented.
    void presenting(UIViewController* controller);
    /// Milliseconds that the transition under way takes.
    void transitionStarted(int duration);
    /// It is over, and what was to follow it has followed.
    void transitionEnded();

private:
    std::vector<ScreenModel::Row> wantedScreens() const;
    int durationOf(const PresentationTransition& transition) const;

    UIWindow m_window;
    ScreenModel m_screens;
    Durations m_durations;
    bool m_inTransition = false;
};

} // namespace lamina
