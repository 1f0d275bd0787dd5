#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PhotoSource.h"
#include "platform/view/UIView.h"

#include <QObject>
#include <QString>

#include <memory>
#include <string>

namespace lamina {

/// A photo that was taken.
struct UIImagePickerPhoto {
    UIImage image;      ///< upright, as it was seen
    PhotoSource source; ///< from which it can be read again
};

/// The camera of a `UIImagePickerController`: what it sees, and the photo that is taken with it. It has the camera to
/// itself between `start` and `stop`, but lets go of it while a photo that was taken is looked at. Main thread.
class UIImagePickerCamera : public QObject {
    Q_OBJECT
    Q_PROPERTY(State state READ state NOTIFY changed FINAL)
    Q_PROPERTY(double aspectRatio READ aspectRatio NOTIFY changed FINAL)
    Q_PROPERTY(bool canSwitch READ canSwitch NOTIFY changed FINAL)
    Q_PROPERTY(QString deviceName READ deviceName NOTIFY changed FINAL)
    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(QString message READ message NOTIFY changed FINAL)
    Q_PROPERTY(bool canTryAgain READ canTryAgain NOTIFY changed FINAL)
    Q_PROPERTY(bool refused READ isRefused NOTIFY changed FINAL)

public:
    enum State {
        Starting, ///< nothing is seen yet
        Live,     ///< what it sees is seen
        Taking,   ///< the photo is on its way
        Taken,    ///< the photo is seen
        Failed,   ///< there is nothing to see; the texts say why, and what can be done
    };
    Q_ENUM(State)

    UIImagePickerCamera();
    ~UIImagePickerCamera() override;

    State state() const { return m_shown.state; }
    /// Width by height of what is seen.
    double aspectRatio() const { return m_shown.size.width / m_shown.size.height; }
    /// Whether there is another camera.
    bool canSwitch() const { return m_shown.canSwitch; }
    /// Of the camera in use; empty before one is.
    QString deviceName() const { return QString::fromStdString(m_shown.deviceName); }
    /// What there is to tell in states without a picture, in the user's language; mostly empty while it starts.
    QString title() const { return QString::fromStdString(m_shown.title); }
    QString message() const { return QString::fromStdString(m_shown.message); }
    /// Whether `tryAgain` makes sense.
    bool canTryAgain() const { return m_shown.canTryAgain; }
    /// Whether the user has refused the camera, which the system's settings can change.
    bool isRefused() const { return m_shown.refused; }

    /// Where it is seen; it takes the size that `place` tells.
    virtual std::shared_ptr<UIView> view() = 0;
    Q_INVOKABLE virtual void place(double width, double height) = 0;
    /// Whether anybody can see it; not while the window is hidden. A camera that nobody has seen for some time is let
    /// go until somebody does.
    Q_INVOKABLE virtual void setInSight(bool inSight) = 0;

    /// Asks the user where that is due, opens the camera and shows what it sees. Nothing where it does already.
    virtual void start() = 0;
    /// Lets go of the camera, which is free when this returns. A photo that was taken stays.
    virtual void stop() = 0;

    /// Only while live.
    Q_INVOKABLE virtual void takePhoto() = 0;
    /// Gives the photo up; only where one was taken.
    Q_INVOKABLE virtual void retake() = 0;
    /// Goes to the next camera.
    Q_INVOKABLE virtual void switchCamera() = 0;
    /// Only where it has failed.
    Q_INVOKABLE virtual void tryAgain() = 0;
    /// Opens the system's settings for this application.
    Q_INVOKABLE virtual void openSettings() = 0;

    /// That was taken; the empty picture before.
    virtual UIImagePickerPhoto photo() const = 0;

signals:
    void changed();
    /// A photo could not be taken; what the camera sees is seen again.
    void photoFailed(const lamina::Error& error);

protected:
    /// All that views show of it.
    struct Shown {
        State state = Starting;
        CGSize size{3, 4}; ///< of what is seen, in any unit
        bool canSwitch = false;
        std::string deviceName = {};
        std::string title = {};
        std::string message = {};
        bool canTryAgain = false;
        bool refused = false;
        friend bool operator==(const Shown&, const Shown&) = default;
    };
    const Shown& shown() const { return m_shown; }
    /// Tells views where it differs.
    void show(const Shown& shown);

private:
    Shown m_shown;
};

} // namespace lamina
