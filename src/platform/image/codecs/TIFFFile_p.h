#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/ByteSource_p.h"

#include <tiffio.h>

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace lamina {

/// The functions of libtiff that reading and writing TIFF use; the library is loaded with the first file that needs it.
struct TIFFLibrary {
    /// Null when the library isn't installed. Usable from any thread.
    static const TIFFLibrary* shared();

    decltype(&TIFFOpenOptionsAlloc) openOptionsAlloc;
    decltype(&TIFFOpenOptionsFree) openOptionsFree;
    decltype(&TIFFOpenOptionsSetMaxSingleMemAlloc) setMaxSingleMemAlloc;
    decltype(&TIFFOpenOptionsSetErrorHandlerExtR) setErrorHandler;
    decltype(&TIFFOpenOptionsSetWarningHandlerExtR) setWarningHandler;
    decltype(&TIFFClientOpenExt) clientOpen;
    decltype(&TIFFClose) close;
    decltype(&TIFFGetField) getField;
    decltype(&TIFFGetFieldDefaulted) getFieldDefaulted;
    decltype(&TIFFSetField) setField;
    decltype(&TIFFIsTiled) isTiled;
    decltype(&TIFFScanlineSize) scanlineSize;
    decltype(&TIFFStripSize) stripSize;
    decltype(&TIFFTileSize) tileSize;
    decltype(&TIFFTileRowSize) tileRowSize;
    decltype(&TIFFNumberOfStrips) numberOfStrips;
    decltype(&TIFFNumberOfTiles) numberOfTiles;
    decltype(&TIFFComputeStrip) computeStrip;
    decltype(&TIFFComputeTile) computeTile;
    decltype(&TIFFReadScanline) readScanline;
    decltype(&TIFFReadEncodedStrip) readEncodedStrip;
    decltype(&TIFFReadEncodedTile) readEncodedTile;
    decltype(&TIFFRGBAImageBegin) rgbaBegin;
    decltype(&TIFFRGBAImageGet) rgbaGet;
    decltype(&TIFFRGBAImageEnd) rgbaEnd;
    decltype(&TIFFWriteEncodedStrip) writeEncodedStrip;
    decltype(&TIFFFlush) flush;
};

/// A TIFF file open at its first page, read from a source that must outlive it. Messages of the library go nowhere but
/// into `failure()`.
class TIFFFile {
public:
    /// Fails when the header or the first directory with all its values can't be read. `largestAllocation`: the most
    /// bytes that the library may take at once.
    static Result<std::unique_ptr<TIFFFile>> open(const TIFFLibrary& library, ByteSource& source,
                                                  std::size_t largestAllocation);
    ~TIFFFile();
    TIFFFile(const TIFFFile&) = delete;
    TIFFFile& operator=(const TIFFFile&) = delete;

    const TIFFLibrary& library() const { return m_library; }
    TIFF* handle() const { return m_tiff; }
    std::uint64_t fileBytes() const { return m_source.size(); }

    /// The value of a tag with one number of type `T`, or of its default where there is one.
    template <class T>
    std::optional<T> field(std::uint32_t tag) const
    {
        T value{};
        return m_library.getFieldDefaulted(m_tiff, tag, &value) == 1 ? std::optional(value) : std::nullopt;
    }

    /// Forgets messages so far; to be called when the pixels begin.
    void beginPixels();
    /// Whether the library complained about the pixels. It returns some damaged data as if they were sound.
    bool complained() const { return m_complained; }
    /// Why reading failed, or what was complained about.
    Error failure() const;

private:
    TIFFFile(const TIFFLibrary& library, ByteSource& source)
        : m_library(library)
        , m_source(source)
    {
    }
    std::size_t read(std::span<std::uint8_t> target);
    std::uint64_t seek(std::uint64_t offset, int origin);
    static int onError(TIFF*, void* self, const char* module, const char* format, std::va_list arguments);
    static int onWarning(TIFF*, void* self, const char* module, const char* format, std::va_list arguments);

    const TIFFLibrary& m_library;
    ByteSource& m_source;
    TIFF* m_tiff = nullptr;
    std::uint64_t m_position = 0;
    bool m_endReached = false;
    bool m_complained = false;
};

} // namespace lamina
