#pragma once

#include "platform/base/CGGeometry.h"

#include <string>

namespace lamina {

/// Whether the user lets the application at the cameras. The values are the platform's.
enum class AVAuthorizationStatus { NotDetermined = 0, Restricted = 1, Denied = 2, Authorized = 3 };

/// Where a camera looks, seen from the user. The values are the platform's.
enum class AVCaptureDevicePosition { Unspecified = 0, Back = 1, Front = 2 };

/// A mode of a camera.
struct AVCaptureDeviceFormat {
    IntSize size;            ///< of frames as they come, before they are turned
    double minFrameRate = 0; ///< frames a second
    double maxFrameRate = 0;
    std::string encoding = {}; ///< as the device lays its pixels: "NV12", "YUY2", "BGRx", "MJPG" ...
    friend bool operator==(const AVCaptureDeviceFormat&, const AVCaptureDeviceFormat&) = default;
};

// Presets of a session. Frames come in the camera's mode that is nearest.
inline constexpr const char* kAVCaptureSessionPreset352x288 = "AVCaptureSessionPreset352x288";
inline constexpr const char* kAVCaptureSessionPreset640x480 = "AVCaptureSessionPreset640x480";
inline constexpr const char* kAVCaptureSessionPreset1280x720 = "AVCaptureSessionPreset1280x720";
inline constexpr const char* kAVCaptureSessionPreset1920x1080 = "AVCaptureSessionPreset1920x1080";
inline constexpr const char* kAVCaptureSessionPreset3840x2160 = "AVCaptureSessionPreset3840x2160";
inline constexpr const char* kAVCaptureSessionPresetLow = "AVCaptureSessionPresetLow";       ///< 192 × 144
inline constexpr const char* kAVCaptureSessionPresetMedium = "AVCaptureSessionPresetMedium"; ///< 480 × 360
inline constexpr const char* kAVCaptureSessionPresetHigh = "AVCaptureSessionPresetHigh";     ///< 1920 × 1080
/// Frames to look at (1280 × 960) until a still is taken, which has all of the camera's pixels.
inline constexpr const char* kAVCaptureSessionPresetPhoto = "AVCaptureSessionPresetPhoto";

/// What a preset stands for; also of any other text that ends in WIDTHxHEIGHT. Empty: it is none.
IntSize sizeOfCaptureSessionPreset(const std::string& preset);

/// How near a mode is to what is wanted, the less the nearer: a mode that has all that is wanted is nearer than one
/// that lacks some, then the one with fewer pixels too many (or too few); a size in the same proportions is preferred.
double distanceBetweenSizes(IntSize wanted, IntSize mode);

} // namespace lamina
