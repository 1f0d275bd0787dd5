#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/SequentialReader_p.h"

#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <png.h>
#include <span>
#include <vector>

namespace lamina {

inline constexpr std::uint8_t kPNGSignature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

/// What a PNG file claims to hold.
struct PNGHeader {
    png_uint_32 width = 0;
    png_uint_32 height = 0;
    bool interlaced = false;
    bool grey = false;
    bool translucent = false;
    PixelKind kind = PixelKind::Any;
};

/// The reader of libpng over a ByteSource or over data that arrive, with its error jumps kept in. A checksum that fails
/// is an error in the chunks that make up the picture; elsewhere the chunk is passed over.
///
/// Every call into the library goes through `attempt`. Not movable: the library points into it.
class PNGInput {
public:
    PNGInput(ByteSource& source, const DecodeOptions& options);
    /// Over data that arrive: `receive` takes them.
    explicit PNGInput(const DecodeOptions& options);
    ~PNGInput();
    PNGInput(const PNGInput&) = delete;
    PNGInput& operator=(const PNGInput&) = delete;

    /// False when memory was short.
    explicit operator bool() const { return m_info != nullptr; }
    png_structp png() { return m_png; }
    png_infop info() { return m_info; }
    /// Why the library gave up.
    Error error() const { return {{}, m_cause}; }

    /// Runs `body`; false when the library gave up in it. The jump passes over `body`, which may therefore not own
    /// anything.
    template <class Body>
    bool attempt(Body body)
    {
        if (setjmp(m_jump) != 0) // NOLINT: the library's only way to report
            return false;
        body();
        return true;
    }

    [[noreturn]] void giveUp(const char* cause);
    void stopIfCancelled();

    /// Reads a source to its pixels; within `attempt`.
    void readHeader();
    /// Whom the library calls of data that arrive: before the pixels, where `prepareRows` is due, with each row, and at
    /// the end. `target` comes back from `png_get_progressive_ptr`.
    void setCallbacks(void* target, png_progressive_info_ptr haveInfo, png_progressive_row_ptr haveRow,
                      png_progressive_end_ptr haveEnd);
    /// Takes data that arrive, each byte once; within `attempt`.
    void receive(std::span<const std::uint8_t> data);

    /// To be asked when all chunks before the pixels are read. Nothing has been allocated for the claim yet.
    PNGHeader header() const;
    /// Whether the claim may be believed, given the bytes that the picture itself will hold.
    Outcome weigh(std::uint64_t pictureBytes, std::uint64_t fileBytes) const;
    /// Sets the library to give 8-bit RGBA; within `attempt`. It allocates its rows here, so the claim must have been
    /// accepted.
    void prepareRows();
    /// The EXIF block as far as it has been read; empty when there is none.
    std::span<const std::uint8_t> exif() const;
    /// The profile that the rows are in; empty for sRGB.
    std::vector<std::uint8_t> profile() const;

private:
    void limitChunks();
    std::vector<std::uint8_t> statedColors() const;
    static void failed(png_structp png, png_const_charp text);
    static void read(png_structp png, png_bytep target, std::size_t count);

    std::optional<SequentialReader> m_reader;
    const DecodeOptions& m_options;
    const char* m_cause;
    std::jmp_buf m_jump;
    png_structp m_png;
    png_infop m_info;
};

} // namespace lamina
