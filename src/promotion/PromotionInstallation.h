#pragma once

#include <string>

namespace lamina {

/// The scene of `InterstitialPresentController`.
inline constexpr const char* kInterstitialScene = "InterstitialPresentController";

/// Has share screens show promotions for the application of that name from now on, where a server is named
/// (`promotionRoot`); none otherwise. Adds the promotion's screen to the main storyboard. For the window alone, so that
/// nothing else loads what networks need. Main thread.
void installPromotion(const std::string& displayName);

} // namespace lamina
