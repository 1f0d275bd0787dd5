#pragma once

#include "editors/blend/PhotoCutting.h"
#include "platform/view/UIStoryboard.h"

namespace lamina {

/// The identifiers of the screens and transitions of the application's storyboard, `kMainStoryboard`.
namespace scene {
inline constexpr const char* kHome = "ViewController";
inline constexpr const char* kSourceChoice = "ImagePIckingViewController";
inline constexpr const char* kCrop = blendscene::kCrop;
inline constexpr const char* kAbout = "AboutViewController";
inline constexpr const char* kLive = "LiveViewController";
inline constexpr const char* kBlend = "BlendPhotoViewController";
inline constexpr const char* kCollage = "CreateCollageViewController";
} // namespace scene

namespace segue {
inline constexpr const char* kToBlend = "toBlend";          ///< from the second crop
inline constexpr const char* kPickedToBlend = "blend";      ///< from the home screen, with picked photos
inline constexpr const char* kPickedToCollage = "nextPage"; ///< from the home screen, with picked photos
} // namespace segue

/// Puts all screens and the transitions between them into that storyboard, in the place of those of the same
/// identifiers. At the start; main thread.
void registerMainStoryboard();

} // namespace lamina
