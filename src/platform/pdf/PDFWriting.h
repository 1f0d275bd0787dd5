#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/pdf/PDFPage.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Writing PDF: documents of one page with one picture, upright, at its own pixels and without loss. Pictures are in
// sRGB, by a profile (grey ones as a table of its greys), and keep their alpha as a soft mask; those of 8 bits in inks
// without alpha are written as they are: by their profile, or by none where the document names its printing condition.
//
// A plain document is PDF 1.4; one with an output intent is PDF/X-1a:2001, which is PDF 1.3: no transparency, no
// profiles, marks on every plate. Dates are those of SOURCE_DATE_EPOCH (seconds since 1970), or else fixed, and the ID
// is a checksum: the same page gives the same bytes, whatever the number of cores. Numbers have points in any locale.
//
// The picture is compressed in bands over the worker pool while it is written, so that no more of it than some bands is
// held twice. qpdf and HarfBuzz are loaded with the first document. All of it is usable from any thread, and blocks its
// caller.

namespace lamina {

/// How one follows the writing of a document.
struct PDFWatch {
    /// Told from 0 to 1, never downwards, in the caller's thread.
    std::function<void(double)> progress = {};
    /// Set from any thread to stop with the cause "cancelled".
    const std::atomic<bool>* cancelled = nullptr;
};

/// Writes the document whole or not at all; an existing file keeps its contents on failure. Pipes and devices are
/// refused. The error's subject is the path.
Outcome writePDF(const UIImage& picture, const PDFPage& page, const std::string& path, const PDFWatch& watch = {});

/// The document's bytes. The error has no subject.
Result<std::vector<std::uint8_t>> pdfBytes(const UIImage& picture, const PDFPage& page, const PDFWatch& watch = {});

} // namespace lamina
