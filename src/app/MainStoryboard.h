#pragma once

namespace lamina {

/// The storyboard of all screens of the application.
inline constexpr const char* kMainStoryboard = "Main";

/// Its screens.
namespace scene {
inline constexpr const char* kHome = "ViewController";
inline constexpr const char* kSourceChooser = "ImagePIckingViewController";
inline constexpr const char* kCrop = "PinchZoomViewController";
inline constexpr const char* kBlend = "BlendPhotoViewController";
} // namespace scene

/// The transitions between them.
namespace segue {
inline constexpr const char* kBlend = "blend";
inline constexpr const char* kToBlend = "toBlend";
inline constexpr const char* kToCollage = "nextPage";
} // namespace segue

/// Fills the storyboard with the screens, each with its layout, and the transitions. Once, before the first screen is
/// made; main thread.
void registerMainStoryboard();

} // namespace lamina
