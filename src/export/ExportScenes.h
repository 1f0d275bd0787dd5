#pragma once

namespace lamina {

class UIStoryboard;

/// The identifiers of an export's screens, which the application's storyboard holds.
namespace exportscene {
inline constexpr const char* kChooser = "SavingTypeController";
inline constexpr const char* kShare = "ShareController";
inline constexpr const char* kColorProfile = "ColorProfileController";
} // namespace exportscene

/// The scene of the exporter of a type: "JPGController" and so on, by the type's number.
inline constexpr const char* kExporterScenes[] = {
    "JPGController", "PNGController",      "PDFStandardController", "PDFPrintController",
    "SVGController", "MP4VideoController", "TiffController",
};

/// Adds the chooser, the exporters and the sheet of profiles. Main thread.
void addExportScenes(UIStoryboard& storyboard);

} // namespace lamina
