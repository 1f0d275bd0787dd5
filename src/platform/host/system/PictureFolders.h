#pragma once

#include <string>

namespace lamina {

/// The user's own folder for pictures, whether it exists or not. Usable from any thread.
std::string picturesFolder();

/// The folder of the sample photos: what the variable LAMINA_SAMPLES of the environment names, else
/// share/lamina/samples of the installation or of the system. Empty when there is none. Usable from any thread.
std::string samplesFolder();

/// Whether the folder, or a folder in it, holds a picture by its name. What is hidden does not count; of a very large
/// folder only a part is looked at. Reads the disk: for a background thread.
bool holdsPictures(const std::string& folder);

/// The samples' folder while the user has no pictures yet (and there are samples); otherwise empty. Reads the disk:
/// for a background thread.
std::string samplesForBeginners();

} // namespace lamina
