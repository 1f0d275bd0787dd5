#pragma once

#include <string>

namespace lamina {

/// The user's own folder for pictures, whether it exists or not. Usable from any thread.
std::string picturesFolder();

/// The folder of the sample photos while the user has no pictures yet; otherwise empty, and where there are no samples.
/// The variable LAMINA_SAMPLES of the environment names it, else it is share/lamina/samples of the installation or of
/// the system. Reads the disk: for a background thread.
std::string samplesForBeginners();

} // namespace lamina
