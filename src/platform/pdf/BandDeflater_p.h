#pragma once

#include "platform/base/Result.h"
#include "platform/pdf/PDFModule_p.h"

#include <cstddef>
#include <cstdint>
#include <functional>

namespace lamina {

/// Rows of bytes that are to be compressed. `read` gives row y; it is called from several threads at once.
struct DeflateRows {
    int count = 0;
    std::size_t bytes = 0;      ///< of a row
    std::size_t pixelBytes = 1; ///< 1 to 4: how far apart a pixel's neighbours are
    std::function<void(int y, std::uint8_t* row)> read;
};

/// Whether rows get smaller as differences to their neighbours (PNG's filters), going by a few of them. Noise doesn't,
/// and is written faster without.
bool differencesPay(const DeflateRows& rows);

/// Writes rows as one zlib stream (RFC 1950): bands of a fixed height, each compressed by itself on the worker pool, so
/// that the bytes don't depend on the number of cores. `predicted`: with PNG's filters. `told` hears the share that is
/// done after each turn and may end the work by an error.
Outcome deflateRows(const DeflateRows& rows, bool predicted, const PDFSink& sink,
                    const std::function<Outcome(double done)>& told);

} // namespace lamina
