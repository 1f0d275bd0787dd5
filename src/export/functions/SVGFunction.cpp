#include "export/functions/SVGFunction.h"

#include "export/functions/Base64_p.h"
#include "export/functions/ExportPlaces.h"
#include "export/functions/ExportSteps_p.h"
#include "export/functions/PNGFunctionClass.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"
#include "platform/base/Log.h"
#include "platform/base/NumberText.h"
#include "platform/base/UIColor.h"
#include "platform/files/FileWriting.h"
#include "platform/image/codecs/PictureEncoding.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace lamina {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr const char* kFileName = "UntitledSVG.svg";
constexpr const char* kComplaint = "Failed to save SVG file: ";

std::span<const std::uint8_t> bytesOf(const std::string& text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// A document piece by piece, so that a large one need not be whole in memory.
class DocumentPieces {
public:
    DocumentPieces(std::span<const std::uint8_t> png, CGSize size)
        : m_png(png)
    {
        const std::string width = decimalText(size.width);
        const std::string height = decimalText(size.height);
        const std::string sides = "\" width=\"" + width + "\" height=\"" + height;
        m_head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                 "<svg xmlns=\"http://www.w3.org/2000/svg" +
                 sides + "\" viewBox=\"0 0 " + width + ' ' + height +
                 "\">\n"
                 "    <image href=\"data:image/png;base64,";
        m_tail = sides + "\" />\n</svg>";
    }

    /// Letters of the whole.
    std::size_t length() const { return m_head.size() + base64Length(m_png.size()) + m_tail.size(); }

    /// Valid until the next call; empty at the end.
    const std::string& next()
    {
        constexpr std::size_t kPiece = 3 * (std::size_t{1} << 14); // whole groups of letters
        m_piece.clear();
        if (!m_head.empty()) {
            m_piece = std::exchange(m_head, {});
        } else if (!m_png.empty()) {
            const std::size_t count = std::min(kPiece, m_png.size());
            appendBase64(m_png.first(count), m_piece);
            m_png = m_png.subspan(count);
        } else {
            m_piece = std::exchange(m_tail, {});
        }
        return m_piece;
    }

private:
    std::span<const std::uint8_t> m_png;
    std::string m_head;
    std::string m_tail;
    std::string m_piece;
};

/// What goes into the document; empty when memory is short.
UIImage pictureSVG(const UIImage& picture, const ExportOptions& options)
{
    if (options.transparency)
        return picture.upright();
    const CGSize size = picture.size();
    return PNGFunctionClass::shared().addBackground(picture, UIColor::white(), size.width, size.height);
}

/// The path, with a word in the log.
Result<std::string> written(const std::string& path, const FilePieces& pieces)
{
    if (const Outcome outcome = writeFileAtomically(path, pieces); !outcome) {
        logDebug(kComplaint + outcome.error().message());
        return outcome.error();
    }
    logDebug("SVG file saved to: " + path);
    return path;
}

} // namespace

const SVGFunction& SVGFunction::shared()
{
    static const SVGFunction function;
    return function;
}

std::string SVGFunction::svgString(const UIImage& image, double width, double height) const
{
    const Result<Bytes> png = encodePNG(image.upright().cgImage(), {});
    if (!png)
        return {};
    DocumentPieces pieces(*png, {width, height});
    std::string document;
    document.reserve(pieces.length());
    for (const std::string* piece = &pieces.next(); !piece->empty(); piece = &pieces.next())
        document += *piece;
    return document;
}

Result<std::string> SVGFunction::saveSVG(const std::string& document, const ExportPlace& place) const
{
    Result<std::string> path = exportPath(place, kFileName);
    if (!path)
        return path;
    return written(*path, [rest = bytesOf(document)]() mutable { return std::exchange(rest, {}); });
}

Result<ExportedFile> exportSVG(const ExportSource& source, const ExportOptions& options, const ExportPlace& place,
                               const ExportWatch& watch)
{
    if (const Outcome ready = readyToExport(source, watch); !ready)
        return ready.error();
    const Result<std::string> path = exportPath(place, kFileName);
    if (!path)
        return path.error();
    const UIImage flat = pictureSVG(source.picture, options);
    if (watch.isCancelled())
        return cancelledExport();
    const Result<Bytes> png = flat ? encodePNG(flat.upright().cgImage(), *path) : Error{*path, cause::kNoMemory};
    if (!png)
        return png.error();
    if (watch.isCancelled())
        return cancelledExport();
    DocumentPieces pieces(*png, source.picture.size());
    const Result<std::string> file = written(*path, [&pieces] { return bytesOf(pieces.next()); });
    if (!file)
        return file.error();
    return ExportedFile{flat, *file, {}};
}

} // namespace lamina
