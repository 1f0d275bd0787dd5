#pragma once

#include "export/functions/ExportWork.h"

#include <QtGlobal>

#include <array>
#include <cstddef>
#include <optional>

// What the screens say of the types of saving: lists by the type's number. Texts are English, and translated where they
// are shown.

namespace lamina {

inline constexpr std::array<const char*, kSavingTypeCount> kSavingTypeTitles = {
    QT_TRANSLATE_NOOP("Lamina", "JPG"),          QT_TRANSLATE_NOOP("Lamina", "PNG"),
    QT_TRANSLATE_NOOP("Lamina", "PDF Standard"), QT_TRANSLATE_NOOP("Lamina", "PDF Print"),
    QT_TRANSLATE_NOOP("Lamina", "SVG"),          QT_TRANSLATE_NOOP("Lamina", "MP4 Video"),
    QT_TRANSLATE_NOOP("Lamina", "TIFF"),
};

/// Names of icons. TIFF's own is called by another format's name.
inline constexpr std::array<const char*, kSavingTypeCount> kSavingTypeIcons = {
    "ic_jpg", "ic_png", "ic_pdf", "ic_pdfprint", "ic_svg", "ic_mp4", "ic_gif",
};

inline constexpr std::array<const char*, kSavingTypeCount> kSavingTypeInfos = {
    QT_TRANSLATE_NOOP("Lamina", "Best for sharing"),
    QT_TRANSLATE_NOOP("Lamina", "Best for complex images, illustrations"),
    QT_TRANSLATE_NOOP("Lamina", "Best for document (and emailing)"),
    QT_TRANSLATE_NOOP("Lamina", "Best for printing"),
    QT_TRANSLATE_NOOP("Lamina", "Best for web design and animations"),
    QT_TRANSLATE_NOOP("Lamina", "High quality video"),
    QT_TRANSLATE_NOOP("Lamina", "Store raster graphics information."),
};

/// The name that a file is offered under where the user chooses its place.
inline constexpr std::array<const char*, kSavingTypeCount> kSuggestedFileNames = {
    "default.jpg",     "default.png", "UntitledPdf.pdf", "UntitledPdf.pdf",
    "UntitledSVG.svg", "Convert.mp4", "default.tiff",
};

/// The profiles of a page for print; the first is RGB.
inline constexpr std::array<const char*, 2> kColorProfileTitles = {
    QT_TRANSLATE_NOOP("Lamina", "RGB (best for digital use)"),
    QT_TRANSLATE_NOOP("Lamina", "CMYK (best for professional printing)"),
};

/// The type's place in the lists above.
constexpr std::size_t indexOf(SavingtypeMethod type)
{
    return static_cast<std::size_t>(type);
}

/// The type of that number; nothing for one that stands for none.
constexpr std::optional<SavingtypeMethod> savingTypeOf(int rawValue)
{
    if (rawValue < 0 || rawValue >= kSavingTypeCount)
        return std::nullopt;
    return static_cast<SavingtypeMethod>(rawValue);
}

} // namespace lamina
