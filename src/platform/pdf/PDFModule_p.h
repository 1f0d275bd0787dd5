#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/pdf/PDFPage.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

/// What the module with qpdf and HarfBuzz does, as a function that is looked up when it is loaded. It gets plain memory
/// and callbacks, so that it shares no state with the libraries of the program.
namespace lamina {

/// Takes a document's bytes, one stretch after another.
using PDFSink = std::function<Outcome(std::span<const std::uint8_t> bytes)>;

/// What the numbers of a picture mean.
enum class PDFColors { SRGB, Gray, CMYK, Alpha };

constexpr int componentCount(PDFColors colors)
{
    switch (colors) {
    case PDFColors::SRGB:
        return 3;
    case PDFColors::CMYK:
        return 4;
    case PDFColors::Gray:
    case PDFColors::Alpha:
        break;
    }
    return 1;
}

/// Samples of 8 bits as a zlib stream, which is made while it is written.
struct PDFSamples {
    PDFColors colors = PDFColors::SRGB;
    IntSize size;
    bool predicted = false; ///< rows are differences, as PNG has them
    std::function<Outcome(const PDFSink& sink)> write;
};

/// All that a document is made of.
struct PDFParts {
    const PDFPage* page = nullptr;
    PDFSamples picture;
    std::optional<PDFSamples> alpha;
    std::span<const std::uint8_t> profile; ///< of the picture's colours; empty: the device's own
    std::span<const std::uint8_t> font;    ///< an OpenType file, where the page has a text
    std::string date;                      ///< as documents write it
};

/// The functions. Every error is a value without a subject; nothing is thrown.
struct PDFModule {
    const char* version; ///< of Lamina, which must be the program's
    Outcome (*write)(const PDFParts& parts, const PDFSink& sink);
};

/// The name under which the module gives its functions: `const PDFModule* laminaPDFModule()`.
inline constexpr const char* kPDFModuleEntry = "laminaPDFModule";

/// The module, loaded when it is first asked for. The error, without a subject, is the same at every call.
Result<const PDFModule*> pdfModule();

} // namespace lamina
