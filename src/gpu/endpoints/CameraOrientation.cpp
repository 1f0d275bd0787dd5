#include "gpu/endpoints/CameraOrientation.h"

namespace lamina {

namespace {

/// By orientation, from 1.
struct Turns {
    GPUImageRotationMode of[4];
};

constexpr Turns kBackMirrored{
    {kGPUImageRotateRightFlipVertical, kGPUImageRotate180, kGPUImageFlipVertical, kGPUImageFlipHorizontal}};
constexpr Turns kBack{{kGPUImageRotateRight, kGPUImageRotateLeft, kGPUImageNoRotation, kGPUImageRotate180}};
constexpr Turns kFrontMirrored{{kGPUImageRotateRightFlipVertical, kGPUImageRotateRightFlipHorizontal,
                                kGPUImageFlipVertical, kGPUImageFlipHorizontal}};
constexpr Turns kFront{{kGPUImageRotateRight, kGPUImageRotateLeft, kGPUImageRotate180, kGPUImageNoRotation}};

/// Degrees clockwise by which the device, seen by who looks at its screen, is turned back to be upright.
int degreesBack(UIDeviceOrientation held)
{
    switch (held) {
    case UIDeviceOrientation::LandscapeLeft: // its top points left
        return 90;
    case UIDeviceOrientation::PortraitUpsideDown:
        return 180;
    case UIDeviceOrientation::LandscapeRight:
        return 270;
    default:
        return 0;
    }
}

} // namespace

GPUImageRotationMode rotationForCamera(AVCaptureDevicePosition position, bool mirrored,
                                       UIInterfaceOrientation orientation)
{
    const int number = static_cast<int>(orientation);
    if (number < 1 || number > 4)
        return kGPUImageNoRotation;
    const bool isInFront = position == AVCaptureDevicePosition::Front;
    const Turns& turns = isInFront ? (mirrored ? kFrontMirrored : kFront) : (mirrored ? kBackMirrored : kBack);
    return turns.of[number - 1];
}

UIInterfaceOrientation orientationOfUprightFrames(AVCaptureDevicePosition position, int rotation,
                                                  UIDeviceOrientation held)
{
    // A camera in front sees the device turn the other way round than one on the back.
    const bool isInFront = position == AVCaptureDevicePosition::Front;
    const int turn = isInFront ? rotation + degreesBack(held) : rotation + 360 - degreesBack(held);
    switch (turn % 360) {
    case 90:
        return UIInterfaceOrientation::Portrait;
    case 180:
        return isInFront ? UIInterfaceOrientation::LandscapeRight : UIInterfaceOrientation::LandscapeLeft;
    case 270:
        return UIInterfaceOrientation::PortraitUpsideDown;
    default:
        return isInFront ? UIInterfaceOrientation::LandscapeLeft : UIInterfaceOrientation::LandscapeRight;
    }
}

} // namespace lamina
