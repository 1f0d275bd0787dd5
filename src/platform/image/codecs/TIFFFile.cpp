#include "platform/image/codecs/TIFFFile_p.h"

#include "platform/base/Causes.h"
#include "platform/base/LazyLibrary.h"
#include "platform/image/codecs/PictureDecoder_p.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>

namespace lamina {

const TIFFLibrary* TIFFLibrary::shared()
{
    static const auto loaded = [] {
        struct {
            TIFFLibrary table{};
            bool complete = false;
        } result;
        TIFFLibrary& table = result.table;
        LazyLibrary library("libtiff.so.6");
        library.find(table.openOptionsAlloc, "TIFFOpenOptionsAlloc");
        library.find(table.openOptionsFree, "TIFFOpenOptionsFree");
        library.find(table.setMaxSingleMemAlloc, "TIFFOpenOptionsSetMaxSingleMemAlloc");
        library.find(table.setErrorHandler, "TIFFOpenOptionsSetErrorHandlerExtR");
        library.find(table.setWarningHandler, "TIFFOpenOptionsSetWarningHandlerExtR");
        library.find(table.clientOpen, "TIFFClientOpenExt");
        library.find(table.close, "TIFFClose");
        library.find(table.getField, "TIFFGetField");
        library.find(table.getFieldDefaulted, "TIFFGetFieldDefaulted");
        library.find(table.setField, "TIFFSetField");
        library.find(table.isTiled, "TIFFIsTiled");
        library.find(table.scanlineSize, "TIFFScanlineSize");
        library.find(table.stripSize, "TIFFStripSize");
        library.find(table.tileSize, "TIFFTileSize");
        library.find(table.tileRowSize, "TIFFTileRowSize");
        library.find(table.numberOfStrips, "TIFFNumberOfStrips");
        library.find(table.numberOfTiles, "TIFFNumberOfTiles");
        library.find(table.computeStrip, "TIFFComputeStrip");
        library.find(table.computeTile, "TIFFComputeTile");
        library.find(table.readScanline, "TIFFReadScanline");
        library.find(table.readEncodedStrip, "TIFFReadEncodedStrip");
        library.find(table.readEncodedTile, "TIFFReadEncodedTile");
        library.find(table.rgbaBegin, "TIFFRGBAImageBegin");
        library.find(table.rgbaGet, "TIFFRGBAImageGet");
        library.find(table.rgbaEnd, "TIFFRGBAImageEnd");
        library.find(table.writeEncodedStrip, "TIFFWriteEncodedStrip");
        library.find(table.flush, "TIFFFlush");
        result.complete = library.complete();
        return result;
    }();
    return loaded.complete ? &loaded.table : nullptr;
}

Result<std::unique_ptr<TIFFFile>> TIFFFile::open(const TIFFLibrary& library, ByteSource& source,
                                                 std::size_t largestAllocation)
{
    std::unique_ptr<TIFFFile> file(new TIFFFile(library, source));
    const std::unique_ptr<TIFFOpenOptions, decltype(library.openOptionsFree)> options(library.openOptionsAlloc(),
                                                                                      library.openOptionsFree);
    if (!options)
        return Error{{}, cause::kNoMemory};
    constexpr auto kMost = static_cast<std::size_t>(std::numeric_limits<tmsize_t>::max());
    library.setMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(std::min(largestAllocation, kMost)));
    library.setErrorHandler(options.get(), onError, file.get());
    library.setWarningHandler(options.get(), onWarning, file.get());
    file->m_tiff = library.clientOpen(
        "picture", "r", file.get(),
        [](thandle_t self, void* target, tmsize_t size) {
            const std::span bytes(static_cast<std::uint8_t*>(target),
                                  static_cast<std::size_t>(std::max<tmsize_t>(0, size)));
            return static_cast<tmsize_t>(static_cast<TIFFFile*>(self)->read(bytes));
        },
        [](thandle_t, void*, tmsize_t) { return tmsize_t{-1}; },
        [](thandle_t self, toff_t offset, int origin) -> toff_t {
            return static_cast<TIFFFile*>(self)->seek(offset, origin);
        },
        [](thandle_t) { return 0; }, [](thandle_t self) -> toff_t { return static_cast<TIFFFile*>(self)->fileBytes(); },
        [](thandle_t, void**, toff_t*) { return 0; }, [](thandle_t, void*, toff_t) {}, options.get());
    // The library leaves out a tag whose value lies beyond the end; without its palette or profile a picture would show
    // wrong colours.
    if (!file->m_tiff || file->m_endReached)
        return file->failure();
    return file;
}

TIFFFile::~TIFFFile()
{
    if (m_tiff)
        m_library.close(m_tiff);
}

std::size_t TIFFFile::read(std::span<std::uint8_t> target)
{
    const std::size_t count = m_position < m_source.size() ? m_source.read(m_position, target) : 0;
    m_position += count;
    m_endReached = m_endReached || count < target.size();
    return count;
}

std::uint64_t TIFFFile::seek(std::uint64_t offset, int origin)
{
    // Negative distances come as their two's complement, so that the sum is right all the same.
    if (origin == SEEK_CUR)
        offset += m_position;
    else if (origin == SEEK_END)
        offset += m_source.size();
    m_position = offset;
    m_endReached = m_endReached || offset > m_source.size();
    return offset;
}

void TIFFFile::beginPixels()
{
    m_complained = false;
}

Error TIFFFile::failure() const
{
    return {{}, m_endReached ? cause::kTruncated : cause::kDamaged};
}

int TIFFFile::onError(TIFF*, void* self, const char*, const char*, std::va_list)
{
    static_cast<TIFFFile*>(self)->m_complained = true;
    return 1;
}

int TIFFFile::onWarning(TIFF*, void* self, const char*, const char* format, std::va_list arguments)
{
    // The codecs of JPEG and fax fill up what is missing, and only mention it.
    std::array<char, 256> text{};
    std::vsnprintf(text.data(), text.size(), format, arguments);
    for (const char* sign : {"remature end", "Premature EOF"}) {
        if (std::strstr(text.data(), sign)) {
            static_cast<TIFFFile*>(self)->m_complained = true;
            static_cast<TIFFFile*>(self)->m_endReached = true;
        }
    }
    return 1;
}

} // namespace lamina
