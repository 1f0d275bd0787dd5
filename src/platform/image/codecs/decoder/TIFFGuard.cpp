#include "platform/image/codecs/decoder/TIFFGuard_p.h"

#include "platform/base/Causes.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/TIFFFile_p.h"
#include "platform/image/codecs/TIFFTags_p.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace lamina {

namespace {

constexpr std::uint64_t kMostSamples = 256;                   // sensors have up to some 250 bands
constexpr std::uint64_t kMostBlocks = std::uint64_t{1} << 21; // 400 million pixels in tiles of 16 x 16, and some
constexpr std::uint64_t kLargestProfile = std::uint64_t{4} << 20;
constexpr std::uint64_t kMostRows = 0xFFFFFFFF; // of a strip, unless it is told

constexpr const char* kUnreadKind = "this kind of TIFF can't be read";

/// A tag that is let through.
struct KnownTag {
    std::uint16_t tag;
    std::uint64_t mostValues;
    bool isNumber = true; ///< its values are whole numbers
};

constexpr std::array kKnownTags{
    KnownTag{TIFFTAG_SUBFILETYPE, 1},
    KnownTag{TIFFTAG_IMAGEWIDTH, 1},
    KnownTag{TIFFTAG_IMAGELENGTH, 1},
    KnownTag{TIFFTAG_BITSPERSAMPLE, kMostSamples},
    KnownTag{TIFFTAG_COMPRESSION, kMostSamples},
    KnownTag{TIFFTAG_PHOTOMETRIC, 1},
    KnownTag{TIFFTAG_FILLORDER, 1},
    KnownTag{TIFFTAG_STRIPOFFSETS, kMostBlocks},
    KnownTag{TIFFTAG_ORIENTATION, 1},
    KnownTag{TIFFTAG_SAMPLESPERPIXEL, 1},
    KnownTag{TIFFTAG_ROWSPERSTRIP, 1},
    KnownTag{TIFFTAG_STRIPBYTECOUNTS, kMostBlocks},
    KnownTag{TIFFTAG_PLANARCONFIG, 1},
    KnownTag{TIFFTAG_GROUP3OPTIONS, 1},
    KnownTag{TIFFTAG_GROUP4OPTIONS, 1},
    KnownTag{TIFFTAG_PREDICTOR, 1},
    KnownTag{TIFFTAG_COLORMAP, 3 << 16},
    KnownTag{TIFFTAG_TILEWIDTH, 1},
    KnownTag{TIFFTAG_TILELENGTH, 1},
    KnownTag{TIFFTAG_TILEOFFSETS, kMostBlocks},
    KnownTag{TIFFTAG_TILEBYTECOUNTS, kMostBlocks},
    KnownTag{TIFFTAG_INKSET, 1},
    KnownTag{TIFFTAG_EXTRASAMPLES, kMostSamples},
    KnownTag{TIFFTAG_SAMPLEFORMAT, kMostSamples},
    KnownTag{TIFFTAG_JPEGTABLES, 1 << 16, false},
    KnownTag{TIFFTAG_JPEGPROC, 1},
    KnownTag{TIFFTAG_JPEGIFOFFSET, 1},
    KnownTag{TIFFTAG_JPEGIFBYTECOUNT, 1},
    KnownTag{TIFFTAG_JPEGRESTARTINTERVAL, 1},
    KnownTag{TIFFTAG_JPEGQTABLES, 4},
    KnownTag{TIFFTAG_JPEGDCTABLES, 4},
    KnownTag{TIFFTAG_JPEGACTABLES, 4},
    KnownTag{TIFFTAG_YCBCRCOEFFICIENTS, 3, false},
    KnownTag{TIFFTAG_YCBCRSUBSAMPLING, 2},
    KnownTag{TIFFTAG_YCBCRPOSITIONING, 1},
    KnownTag{TIFFTAG_REFERENCEBLACKWHITE, 6, false},
    KnownTag{TIFFTAG_ICCPROFILE, kLargestProfile, false},
    KnownTag{TIFFTAG_STONITS, 1, false},
};

/// Without these the same bytes are other pixels. Where one isn't what it should be, the page isn't read without it.
constexpr std::array<std::uint16_t, 10> kDecisiveTags{
    TIFFTAG_IMAGEWIDTH,      TIFFTAG_IMAGELENGTH, TIFFTAG_BITSPERSAMPLE, TIFFTAG_COMPRESSION, TIFFTAG_PHOTOMETRIC,
    TIFFTAG_SAMPLESPERPIXEL, TIFFTAG_FILLORDER,   TIFFTAG_PLANARCONFIG,  TIFFTAG_PREDICTOR,   TIFFTAG_SAMPLEFORMAT};

/// The other name of a table of strips or tiles, under which libtiff takes it as well; 0: there is none.
std::uint16_t otherName(std::uint16_t tag)
{
    switch (tag) {
    case TIFFTAG_STRIPOFFSETS:
        return TIFFTAG_TILEOFFSETS;
    case TIFFTAG_TILEOFFSETS:
        return TIFFTAG_STRIPOFFSETS;
    case TIFFTAG_STRIPBYTECOUNTS:
        return TIFFTAG_TILEBYTECOUNTS;
    case TIFFTAG_TILEBYTECOUNTS:
        return TIFFTAG_STRIPBYTECOUNTS;
    default:
        return 0;
    }
}

/// A compression that is read.
struct KnownCompression {
    std::uint64_t number;
    /// What a strip or tile takes beside its pixels, in nanoseconds, about.
    std::uint32_t blockTime;
    bool bilevel = false; ///< knows no samples but of one bit, one a pixel
};

constexpr std::uint32_t kQuickStart = 1'000;
constexpr std::uint32_t kSlowStart = 30'000; // headers and tables for each strip or tile

constexpr std::array kKnownCompressions{
    KnownCompression{COMPRESSION_NONE, kQuickStart},
    KnownCompression{COMPRESSION_CCITTRLE, kQuickStart, true},
    KnownCompression{COMPRESSION_CCITTFAX3, kQuickStart, true},
    KnownCompression{COMPRESSION_CCITTFAX4, kQuickStart, true},
    KnownCompression{COMPRESSION_CCITTRLEW, kQuickStart, true},
    KnownCompression{COMPRESSION_LZW, kQuickStart},
    KnownCompression{COMPRESSION_OJPEG, kSlowStart},
    KnownCompression{COMPRESSION_JPEG, kSlowStart},
    KnownCompression{COMPRESSION_ADOBE_DEFLATE, kQuickStart},
    KnownCompression{COMPRESSION_DEFLATE, kQuickStart},
    KnownCompression{COMPRESSION_PACKBITS, kQuickStart},
    KnownCompression{COMPRESSION_SGILOG, kQuickStart},
    KnownCompression{COMPRESSION_SGILOG24, kQuickStart},
    KnownCompression{COMPRESSION_LZMA, kSlowStart},
    KnownCompression{COMPRESSION_ZSTD, kQuickStart},
    KnownCompression{COMPRESSION_WEBP, kSlowStart},
};

/// The file with other bytes in one place.
class PatchedSource final : public ByteSource {
public:
    PatchedSource(ByteSource& file, std::uint64_t place, std::vector<std::uint8_t> patch)
        : m_file(file)
        , m_place(place)
        , m_patch(std::move(patch))
    {
    }

    std::uint64_t size() const override { return m_file.size(); }
    std::size_t read(std::uint64_t offset, std::span<std::uint8_t> target) override
    {
        const std::size_t count = m_file.read(offset, target);
        const std::uint64_t first = std::max(offset, m_place);
        const std::uint64_t end = std::min(offset + count, m_place + m_patch.size());
        if (first < end)
            std::memcpy(target.data() + (first - offset), m_patch.data() + (first - m_place),
                        static_cast<std::size_t>(end - first));
        return count;
    }

private:
    ByteSource& m_file;
    std::uint64_t m_place;
    std::vector<std::uint8_t> m_patch;
};

std::uint64_t divideUp(std::uint64_t value, std::uint64_t divisor)
{
    return value / divisor + (value % divisor != 0 ? 1 : 0);
}

/// A directory being weighed.
class Directory {
public:
    Directory(ByteSource& file, const TIFFTags& tags)
        : m_file(file)
        , m_tags(tags)
    {
    }

    Outcome read()
    {
        const std::uint64_t place = m_tags.firstDirectory();
        const std::optional<std::uint64_t> count = m_tags.fieldCount(place);
        if (!count)
            return Error{{}, cause::kTruncated};
        if (*count > TIFFTags::kMostFields)
            return Error{{}, cause::kDamaged};
        std::uint64_t seen = 0;
        bool inside = true;
        bool decided = true;
        m_tags.eachField(place, [&](const TIFFTags::Field& field) {
            ++seen;
            const auto known = std::ranges::find(kKnownTags, field.tag, &KnownTag::tag);
            if (known == kKnownTags.end())
                return;
            if (isUseful(field, *known)) {
                inside = inside && m_tags.isInside(field);
                keep(field);
            } else {
                decided = decided && std::ranges::find(kDecisiveTags, field.tag) == kDecisiveTags.end();
            }
        });
        if (!decided)
            return Error{{}, cause::kDamaged};
        return seen == *count && inside ? success() : Error{{}, cause::kTruncated};
    }

    /// The first value of a tag, or `otherwise` where it isn't told.
    std::uint64_t number(std::uint16_t tag, std::uint64_t otherwise) const
    {
        const TIFFTags::Field* found = field(tag);
        return found ? m_tags.number(*found).value_or(otherwise) : otherwise;
    }
    const TIFFTags::Field* field(std::uint16_t tag) const
    {
        const auto found = std::ranges::find(m_fields, tag, &TIFFTags::Field::tag);
        return found == m_fields.end() ? nullptr : &*found;
    }
    /// Whether all values of a tag are alike.
    bool isEven(std::uint16_t tag) const
    {
        const TIFFTags::Field* found = field(tag);
        const std::uint64_t first = number(tag, 0);
        bool even = true;
        return !found ||
               (m_tags.eachNumber(*found, found->count, [&](auto value) { even = even && value == first; }) && even);
    }
    const TIFFTags& tags() const { return m_tags; }
    std::uint64_t fileBytes() const { return m_file.size(); }

    std::unique_ptr<ByteSource> patchedFile() const
    {
        return std::make_unique<PatchedSource>(m_file, m_tags.firstDirectory(), m_tags.directoryOf(m_fields));
    }

private:
    /// Too long a profile is none; whatever else is longer than it can be is cut off by the library.
    bool isUseful(const TIFFTags::Field& field, const KnownTag& known) const
    {
        return (!known.isNumber || TIFFTags::isWholeNumber(field)) && field.count <= known.mostValues;
    }
    /// As libtiff takes them: the first of a tag that stands there twice, the last of a table under either name.
    void keep(const TIFFTags::Field& field)
    {
        if (std::ranges::find(m_met, field.tag) != m_met.end())
            return;
        m_met.push_back(field.tag);
        std::erase_if(m_fields, [&](const TIFFTags::Field& other) { return other.tag == otherName(field.tag); });
        m_fields.push_back(field);
    }

    ByteSource& m_file;
    const TIFFTags& m_tags;
    std::vector<TIFFTags::Field> m_fields;
    std::vector<std::uint16_t> m_met;
};

/// What libtiff would have to do for a page.
class PageWork {
public:
    PageWork(const Directory& directory, const KnownCompression& compression)
        : m_directory(directory)
        , m_compression(compression)
        , m_width(directory.number(TIFFTAG_IMAGEWIDTH, 0))
        , m_height(directory.number(TIFFTAG_IMAGELENGTH, 0))
        , m_samples(directory.number(TIFFTAG_SAMPLESPERPIXEL, 1))
        , m_tiled(directory.field(TIFFTAG_TILEWIDTH) || directory.field(TIFFTAG_TILELENGTH))
        , m_separate(directory.number(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == PLANARCONFIG_SEPARATE)
        , m_blockWidth(m_tiled ? directory.number(TIFFTAG_TILEWIDTH, 0) : m_width)
        , m_blockHeight(m_tiled ? directory.number(TIFFTAG_TILELENGTH, 0)
                                : std::min(m_height, directory.number(TIFFTAG_ROWSPERSTRIP, kMostRows)))
    {
    }

    /// Whether it is no more than a picture may ask for; `heldBytes` as in `GuardedTIFF`.
    Outcome weigh(const DecodeOptions& options, std::uint64_t& heldBytes) const
    {
        constexpr auto signedSide = [](std::uint64_t side) {
            return static_cast<std::int64_t>(std::min<std::uint64_t>(side, INT64_MAX));
        };
        const std::uint64_t fileBytes = m_directory.fileBytes();
        if (const Outcome claim =
                checkClaim(signedSide(m_width), signedSide(m_height), 0, fileBytes, options, pixelKind());
            !claim)
            return claim;
        if (m_samples == 0 || m_blockWidth == 0 || m_blockHeight == 0)
            return Error{{}, cause::kDamaged};
        if (m_samples > kMostSamples || (m_compression.bilevel && m_samples > 1 && !m_separate))
            return Error{{}, kUnreadKind};
        const std::uint64_t blocks = divideUp(m_width, m_blockWidth) * divideUp(m_height, m_blockHeight);
        const std::uint64_t tableLength = blocks * (m_separate ? m_samples : 1);
        if (tableLength > kMostBlocks)
            return tooLarge(options);
        const Result<Stored> stored = storedBytes(tableLength);
        if (!stored)
            return stored.error();
        // The one strip of a page that isn't packed is cut up by the library, into some of 8 KB with a table.
        constexpr std::uint64_t kCutUp = 512;
        const bool isCutUp = m_compression.number == COMPRESSION_NONE && !m_tiled && !m_separate && tableLength == 1;
        heldBytes = stored->largest / (isCutUp ? kCutUp : 1) + 2 * sizeof(std::uint64_t) * tableLength;
        const double time = decodingTime(blocks) + stored->sum;
        return time <= longestTime() ? success() : tooLarge(options);
    }

private:
    PixelKind pixelKind() const
    {
        return m_samples == 1 && m_directory.number(TIFFTAG_BITSPERSAMPLE, 1) == 1 ? PixelKind::Bilevel
                                                                                   : PixelKind::Any;
    }

    /// What is said of sides that are beyond all memory.
    Outcome tooLarge(const DecodeOptions& options) const
    {
        return checkClaim(static_cast<std::int64_t>(m_width), static_cast<std::int64_t>(m_height), UINT64_MAX,
                          m_directory.fileBytes(), options);
    }

    struct Stored {
        double sum = 0;
        std::uint64_t largest = 0;
    };

    /// What the strips or tiles say of their stored lengths; those that say nothing may be as long as the file.
    Result<Stored> storedBytes(std::uint64_t tableLength) const
    {
        const std::uint64_t fileBytes = m_directory.fileBytes();
        const TIFFTags::Field* counts = m_directory.field(TIFFTAG_STRIPBYTECOUNTS);
        if (!counts)
            counts = m_directory.field(otherName(TIFFTAG_STRIPBYTECOUNTS));
        if (!counts)
            return Stored{static_cast<double>(fileBytes) * static_cast<double>(tableLength), fileBytes};
        Stored stored;
        const bool whole = m_directory.tags().eachNumber(*counts, tableLength, [&](std::uint64_t bytes) {
            stored.largest = std::max(stored.largest, std::min(bytes, fileBytes));
            stored.sum += static_cast<double>(std::min(bytes, fileBytes));
        });
        return whole ? Result<Stored>(stored) : Error{{}, cause::kTruncated};
    }

    /// In nanoseconds, of all strips or tiles that are read: one for each byte and for each sample that comes out.
    double decodingTime(std::uint64_t blocks) const
    {
        return static_cast<double>(blocks * planes()) * m_compression.blockTime +
               static_cast<double>(blocks) * pixelTime() * static_cast<double>(m_blockWidth) *
                   static_cast<double>(m_blockHeight);
    }

    /// What nobody minds; or what goes with many pixels; or what the page itself takes, some times over, so long as
    /// that isn't much; or what goes with a large file.
    double longestTime() const
    {
        constexpr double kUnnoticed = 256e6;
        constexpr double kBearable = 2e9;
        constexpr double kPerPixel = 16; // the bytes of four floats
        constexpr double kTimesOver = 3;
        constexpr double kPerByte = 4;
        const double pixels = static_cast<double>(m_width) * static_cast<double>(m_height);
        return std::max({kUnnoticed, kPerPixel * pixels, std::min(kBearable, kTimesOver * pixelTime() * pixels),
                         kPerByte * static_cast<double>(m_directory.fileBytes())});
    }

    /// How many planes are read.
    std::uint64_t planes() const
    {
        constexpr std::uint64_t kMostPlanes = 5; // four inks and alpha
        return m_separate ? std::min(m_samples, kMostPlanes) : 1;
    }

    /// In nanoseconds, of one pixel with all samples that are gone through.
    double pixelTime() const
    {
        const auto bits = static_cast<double>(m_directory.number(TIFFTAG_BITSPERSAMPLE, 1));
        return static_cast<double>(m_separate ? planes() : m_samples) * std::max(1.0, bits / 8);
    }

    const Directory& m_directory;
    const KnownCompression& m_compression;
    std::uint64_t m_width;
    std::uint64_t m_height;
    std::uint64_t m_samples;
    bool m_tiled;
    bool m_separate;
    std::uint64_t m_blockWidth;
    std::uint64_t m_blockHeight;
};

} // namespace

Result<GuardedTIFF> guardTIFF(ByteSource& file, const DecodeOptions& options)
{
    constexpr std::uint64_t kHeaderBytes = 8;
    const std::optional<TIFFTags> stored = TIFFTags::open(file, {0, file.size()});
    if (!stored)
        return Error{{}, cause::kTruncated};
    if (stored->firstDirectory() < kHeaderBytes)
        return Error{{}, cause::kDamaged};
    Directory whole(file, *stored);
    if (const Outcome read = whole.read(); !read)
        return read.error();
    GuardedTIFF guarded;
    guarded.source = whole.patchedFile();

    // What is weighed is what the library will read: values that stand in the directory itself are other ones now.
    const std::optional<TIFFTags> tags = TIFFTags::open(*guarded.source, {0, file.size()});
    if (!tags || tags->firstDirectory() != stored->firstDirectory())
        return Error{{}, cause::kDamaged};
    Directory directory(*guarded.source, *tags);
    if (const Outcome read = directory.read(); !read)
        return read.error();
    const std::uint64_t number = directory.number(TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    if (number == COMPRESSION_JBIG)
        return Error{{}, "TIFF pages coded with JBIG can't be read"};
    const auto compression = std::ranges::find(kKnownCompressions, number, &KnownCompression::number);
    if (compression == kKnownCompressions.end() || !directory.isEven(TIFFTAG_COMPRESSION))
        return Error{{}, kUnreadKind};
    if (const Outcome weighed = PageWork(directory, *compression).weigh(options, guarded.heldBytes); !weighed)
        return weighed.error();
    return guarded;
}

} // namespace lamina
