#pragma once

#include "gpu/core/GPUImageRotationMode.h"
#include "platform/base/UIDevice.h"
#include "platform/media/AVCaptureTypes.h"
#include "platform/view/UIViewController.h"

namespace lamina {

/// How frames are turned that are to be seen in this orientation; any other value: not at all. A camera whose place
/// nobody has told counts as one on the back. The table is that of a sensor that lies across the device.
GPUImageRotationMode rotationForCamera(AVCaptureDevicePosition position, bool mirrored,
                                       UIInterfaceOrientation orientation);

/// The orientation in which frames are upright, for a front camera when they are mirrored. `rotation`: in degrees
/// clockwise, what makes them upright while the device is held upright.
UIInterfaceOrientation orientationOfUprightFrames(AVCaptureDevicePosition position, int rotation,
                                                  UIDeviceOrientation held);

} // namespace lamina
