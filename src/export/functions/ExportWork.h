#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

// The work behind each type of saving, without a screen: the exporters' screens and the command both run it. It blocks
// its caller and is usable from any thread.

namespace lamina {

/// The types of saving, in the order of the chooser's rows. The values are kept by who hands a type on as a number.
enum class SavingtypeMethod : int { jpg = 0, png = 1, pdfStandard = 2, pdfPrint = 3, svg = 4, mp4 = 5, tiff = 6 };

/// How many there are.
inline constexpr int kSavingTypeCount = 7;

/// What is exported.
struct ExportSource {
    UIImage picture;  ///< of a clip: one frame, which stands for it
    std::string clip; ///< the path of a clip, where that is what is exported; empty: the picture
};

/// The colours of a page for print.
enum class PrintColors { RGB, CMYK };

/// The quality of a film.
enum class VideoQuality { Low, Medium, High };

/// What the user may choose; a type reads its own and leaves the rest alone.
struct ExportOptions {
    double width = 0;                        ///< PNG and JPG: the size to come, in points; 0: the picture's own
    double height = 0;                       ///< see width
    bool transparency = false;               ///< PNG, SVG: keeps it; otherwise the picture lies on white
    double quality = 1;                      ///< JPG: 0 smallest to 1 best
    bool notes = false;                      ///< PDF: a line below the picture
    bool cropMarks = false;                  ///< print: marks where to cut
    PrintColors colors = PrintColors::RGB;   ///< print
    double pixelsPerInch = 72;               ///< print: how large the page is; a pixel is a point at 72
    VideoQuality video = VideoQuality::High; ///< MP4
};

/// Where an export puts its file: under the type's own name in the user's folder for documents, as long as nothing else
/// is said.
struct ExportPlace {
    std::string folder; ///< empty: the folder for documents
    std::string file;   ///< a name with its extension; empty: the type's own

    /// Whether the user has named the place: the photo library then gets no copy, and a JPG becomes a file.
    bool isChosen() const { return !folder.empty() || !file.empty(); }
};

/// How an export is followed, and stopped.
struct ExportWatch {
    /// Told from 0 to 1, never downwards, in the thread of the work; a type without a measure tells nothing.
    std::function<void(double)> progress = {};
    /// Set from any thread to stop with the cause "cancelled"; nothing is left behind then.
    const std::atomic<bool>* cancelled = nullptr;

    bool isCancelled() const { return cancelled && *cancelled; }
};

/// What came of it.
struct ExportedFile {
    UIImage picture;                 ///< what the share screen shows, see the types
    std::string path;                ///< empty: none was written (a JPG's bytes go to the photo library)
    std::vector<std::uint8_t> bytes; ///< JPG: the file as it is to be stored
};

/// Exports. The error's subject is the file or folder concerned, or empty. A file is written whole or not at all.
Result<ExportedFile> runExport(SavingtypeMethod type, const ExportSource& source, const ExportOptions& options,
                               const ExportPlace& place = {}, const ExportWatch& watch = {});

/// The work of one type, as `runExport` calls it.
using ExportFunction = Result<ExportedFile> (*)(const ExportSource& source, const ExportOptions& options,
                                                const ExportPlace& place, const ExportWatch& watch);

} // namespace lamina
