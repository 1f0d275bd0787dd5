#pragma once

#include "app/AboutViewController.h"

#include "platform/view/UIViewController.h"

#include <string>

namespace lamina {

/// The application's own menu, over a screen: the live screen, the keys, the folders with photos, and what this is.
void presentAppMenu(UIViewController& over);
/// The live screen, with this movie or, where that is empty, the camera.
void presentLive(UIViewController& over, const std::string& movie = {});
/// The card about the application with this page; where `over` is such a card, it turns to the page.
void presentAbout(UIViewController& over, AboutViewController::Page page);

} // namespace lamina
