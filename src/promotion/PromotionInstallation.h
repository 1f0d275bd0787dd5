#pragma once

#include <string>

namespace lamina {

class UIStoryboard;

/// The scene of `InterstitialPresentController`.
inline constexpr const char* kInterstitialScene = "InterstitialPresentController";

/// Adds the promotion's screen.
void addPromotionScenes(UIStoryboard& storyboard);

/// Has share screens show promotions for the application of that name from now on, where a server is named
/// (`promotionRoot`); none otherwise. Main thread.
void installPromotion(const std::string& displayName);

} // namespace lamina
