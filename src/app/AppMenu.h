#pragma once

#include "app/AboutViewController.h"

#include "platform/view/UIViewController.h"

namespace lamina {

/// The application's own menu, over a screen: the keys, the folders with photos, and what this is.
void presentAppMenu(UIViewController& over);
/// The card about the application with this page; where `over` is such a card, it turns to the page.
void presentAbout(UIViewController& over, AboutViewController::Page page);

} // namespace lamina
