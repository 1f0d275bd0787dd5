#pragma once

#include "platform/host/system/Portal.h"

#include <QDBusMessage>
#include <QObject>

#include <memory>
#include <optional>

class QDBusPendingCallWatcher;
class QDBusServiceWatcher;

namespace lamina {

/// What the user has set for all applications, followed while it changes: told by the desktop's settings portal.
/// Until it has answered, and where there is none, the defaults hold; nothing waits for it.
///
/// The variables LAMINA_TEXT_SCALE (a number) and LAMINA_REDUCED_MOTION (0 or 1) of the environment take precedence,
/// each by itself. Main thread.
class SystemSettings : public QObject {
    Q_OBJECT
    /// By how much texts are larger than drawn, 0.5 to 2; default 1.
    Q_PROPERTY(double textScale READ textScale NOTIFY textScaleChanged FINAL)
    /// Whether things should change without moving; default false.
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY reducedMotionChanged FINAL)

public:
    explicit SystemSettings(BusConnector connector = sessionBus, QObject* parent = nullptr);
    /// Waits for a connection that is just being made: Qt's own end must not overtake it.
    ~SystemSettings() override;

    double textScale() const { return m_textScale; }
    bool reducedMotion() const { return m_reducedMotion; }

signals:
    void textScaleChanged();
    void reducedMotionChanged();

private slots:
    void settingChanged(const QDBusMessage& message);

private:
    /// What desktops say; each knows some of it.
    struct Told {
        std::optional<double> textScale;
        bool animationsOff = false;        ///< GNOME
        bool motionReduced = false;        ///< the desktops' common setting
        bool animationsTakeNoTime = false; ///< KDE
    };
    static void note(Told& told, const QString& group, const QString& key, const QVariant& value);

    void listen(const QDBusConnection& bus);
    void read(const QDBusConnection& bus);
    void take(const QDBusMessage& reply);
    void apply();

    std::optional<double> m_fixedTextScale;
    std::optional<bool> m_fixedReducedMotion;
    Told m_told;
    double m_textScale = 1;
    bool m_reducedMotion = false;
    bool m_connecting = false;
    std::unique_ptr<QDBusServiceWatcher> m_watcher;
};

} // namespace lamina
