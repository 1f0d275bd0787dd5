#pragma once

namespace lamina {

class UIStoryboard;

/// Adds the screens that the photo picker opens, each under the name of its class, by which those that are made by hand
/// find their layouts. One that the storyboard makes is empty. Main thread.
void addPickerScenes(UIStoryboard& storyboard);

} // namespace lamina
