#pragma once

#include "platform/photos/PhotoSource.h"

#include <string>
#include <vector>

namespace lamina {

class ViewController;

/// Begins, from the home screen, what a start or another program asks for: the screen "home", "two", "three", "blend",
/// "picker" (that for three photos) or "live"; empty is "home". With photos its work begins with them; where the screen
/// says nothing of the kind, their number decides: three or more begin a collage, fewer a blend. Main thread.
void openFirstScreen(ViewController& home, const std::string& screen, std::vector<PhotoSource> photos);

} // namespace lamina
