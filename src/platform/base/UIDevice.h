#pragma once

namespace lamina {

/// How the device is held. The values are the platform's.
enum class UIDeviceOrientation {
    Unknown = 0,
    Portrait = 1,
    PortraitUpsideDown = 2,
    LandscapeLeft = 3,
    LandscapeRight = 4,
    FaceUp = 5,
    FaceDown = 6,
};

/// What is known of the device that the process runs on.
struct UIDevice {
    /// The last value that was set; `Unknown` until then. From any thread.
    static UIDeviceOrientation orientation();
    /// For what reads the sensor. From any thread.
    static void setOrientation(UIDeviceOrientation orientation);
};

} // namespace lamina
