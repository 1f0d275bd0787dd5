#pragma once

#include "picker/PickedPhotos.h"
#include "platform/photos/PhotoSource.h"

#include <functional>
#include <optional>
#include <vector>

namespace lamina {

class UIViewController;

/// Reads photos for the screen as large as an editor needs them, behind the busy panel, since large ones take their
/// time: until it is gone nothing else can be done, so that all comes in the order in which it would come at once. Then
/// calls `done`, as long as the screen is there: with none when the user has cancelled; photos that are damaged are
/// told of after it. Main thread.
void readPhotosBehindPanel(UIViewController& screen, std::vector<PhotoSource> photos,
                           std::function<void(std::optional<PickedPhotos>)> done);

} // namespace lamina
