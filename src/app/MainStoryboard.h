#pragma once

namespace lamina {

/// Fills the storyboard "Main" with the screens by their identifiers and the transitions between them. Once, before the
/// first screen is made; main thread.
void registerMainStoryboard();

} // namespace lamina
