#include "export/functions/ExportSteps_p.h"

#include "platform/base/Log.h"
#include "platform/files/FileWriting.h"

namespace lamina {

Outcome readyToExport(const ExportSource& source, const ExportWatch& watch)
{
    if (!source.picture)
        return Error{{}, "there is no picture"};
    if (watch.isCancelled())
        return cancelledExport();
    return success();
}

CGSize exportedSize(const UIImage& picture, const ExportOptions& options)
{
    const CGSize own = picture.size();
    return {options.width > 0 ? options.width : own.width, options.height > 0 ? options.height : own.height};
}

Outcome writeExport(const std::string& path, std::span<const std::uint8_t> bytes, const ExportWatch& watch,
                    const std::string& complaint)
{
    if (watch.isCancelled())
        return cancelledExport();
    Outcome written = writeFileAtomically(path, bytes);
    if (!written)
        logDebug(complaint + written.error().message());
    return written;
}

} // namespace lamina
