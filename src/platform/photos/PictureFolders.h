#pragma once

#include <string>

namespace lamina {

/// The user's own folder for pictures, without a slash at its end, whether it exists or not: never all of their home,
/// then it is "Pictures" in it. Usable from any thread.
std::string picturesFolder();

/// The folder into which the application puts finished documents: "Lamina" inside the user's folder for documents. It
/// is not made here; `makeFolder` does. Usable from any thread.
std::string documentsFolder();

/// The folder of the sample photos; empty: there are none. The variable LAMINA_SAMPLES of the environment names it,
/// else it is share/lamina/samples of the installation or of the system. Reads the disk: for a background thread.
std::string samplesFolder();

/// The same while the user has no pictures of their own yet, otherwise empty. What this application has saved is not
/// their own. Reads the disk: for a background thread.
std::string samplesForBeginners();

} // namespace lamina
