#pragma once

#include "picker/PhotoGridCell.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/media/AVCaptureSession.h"

#include <QVariant>

#include <memory>

namespace lamina {

/// The tile that takes a photo: what the camera sees, under a veil, or the plain veil with its icon where the camera
/// can't be used. Main thread.
class YMSCameraCell : public PhotoGridCell {
    Q_OBJECT
    Q_PROPERTY(double veilAlpha READ veilAlpha NOTIFY veilAlphaChanged FINAL)
    Q_PROPERTY(bool available READ isAvailable NOTIFY availableChanged FINAL)
    Q_PROPERTY(QVariant preview READ previewVariant NOTIFY previewChanged FINAL)

public:
    YMSCameraCell();
    /// The session ends with it, unless somebody else holds it.
    ~YMSCameraCell() override;

    /// The camera's session. As long as it has no camera, and the user has answered whether cameras may be used, each
    /// call makes a new one and tries to open the default camera. Null while that question is open; without inputs
    /// where there is no camera or it can't be opened.
    std::shared_ptr<AVCaptureSession> session();
    /// Ends the session, so that others can have the camera; what was seen last stays.
    void closeCamera();

    /// Of the coloured veil: 0.5 over what the camera sees, else 1.
    double veilAlpha() const { return m_veilAlpha; }

    /// Whether a photo can be taken at all; looked up by `updateAvailability`.
    bool isAvailable() const { return m_available; }
    /// Looks it up.
    void updateAvailability();

    /// What the camera sees, a `UIImage` that is to fill the tile; empty: nothing.
    const UIImage& preview() const { return m_preview; }
    /// The same for views.
    QVariant previewVariant() const;
    /// How the preview is to be turned, a number of `UIDeviceOrientation`: the device's where that is upside down or
    /// lying, else upright. To be asked when the tile is laid out.
    Q_INVOKABLE int previewOrientation() const;

signals:
    void veilAlphaChanged();
    void availableChanged();
    void previewChanged();

private:
    bool openCamera();
    void showFrame(const UIImage& frame);
    void setVeilAlpha(double alpha);

    std::shared_ptr<AVCaptureSession> m_session;
    double m_veilAlpha = 1;
    bool m_available = false;
    UIImage m_preview;
};

} // namespace lamina
