#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PhotoSource.h"
#include "platform/view/UIView.h"

#include <QObject>

#include <functional>
#include <memory>

namespace lamina {

/// A photo that was taken.
struct UIImagePickerPhoto {
    UIImage image;      ///< upright, as it was seen; empty: there is none
    PhotoSource source; ///< from which it can be read again
};

/// The camera of a `UIImagePickerController`; what can be done with it is between its layout and who makes it. It has
/// the camera to itself between `start` and `stop`. Main thread.
class UIImagePickerCamera : public QObject {
public:
    /// Where it is seen.
    virtual std::shared_ptr<UIView> view() = 0;
    /// Shows what the camera sees. Nothing where it does already, or a photo was taken.
    virtual void start() = 0;
    /// Lets go of the camera, which is free when this returns. A photo that was taken stays.
    virtual void stop() = 0;
    /// That was taken and not given up.
    virtual UIImagePickerPhoto photo() const = 0;

    /// Told that a photo could not be taken.
    std::function<void(const Error&)> photoFailed;
};

} // namespace lamina
