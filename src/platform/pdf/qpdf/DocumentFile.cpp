#include "platform/pdf/qpdf/DocumentFile_p.h"

#include <array>
#include <cstdint>
#include <memory>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <span>
#include <string_view>
#include <vector>
#include <zlib.h>

namespace lamina {

namespace {

/// Counts and checks what it hands on.
class Output {
public:
    explicit Output(const PDFSink& sink)
        : m_sink(sink)
    {
    }

    Outcome write(std::span<const std::uint8_t> bytes)
    {
        m_place += bytes.size();
        m_crc = crc32_z(m_crc, bytes.data(), bytes.size());
        m_adler = adler32_z(m_adler, bytes.data(), bytes.size());
        return m_sink(bytes);
    }

    Output& operator<<(std::string_view text)
    {
        if (const Outcome written = write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}); !written)
            throw CallbackFailure{written.error()};
        return *this;
    }

    /// Bytes written so far.
    std::uint64_t place() const { return m_place; }

    /// Sixteen bytes that depend on all that was written.
    std::string checksum() const
    {
        std::string bytes;
        for (const std::uint64_t part : {std::uint64_t{m_crc} << 32 | m_adler, m_place})
            for (int shift = 56; shift >= 0; shift -= 8)
                bytes.push_back(static_cast<char>(part >> shift & 0xFF));
        return bytes;
    }

private:
    const PDFSink& m_sink;
    std::uint64_t m_place = 0;
    uLong m_crc = 0;
    uLong m_adler = 1;
};

/// Ten digits, and what follows them in a row of twenty bytes.
std::string tableRow(std::uint64_t place)
{
    const std::string digits = std::to_string(place);
    return std::string(digits.size() < 10 ? 10 - digits.size() : 0, '0') + digits + " 00000 n \n";
}

/// The stream's bytes between their two words; how many there are.
std::uint64_t writeStreamBytes(Output& output, QPDFObjectHandle stream, const WrittenStreams& streams)
{
    output << "\nstream\n";
    const std::uint64_t begin = output.place();
    if (const auto made = streams.find(stream.getObjGen()); made != streams.end()) {
        const Outcome written =
            made->second([&output](std::span<const std::uint8_t> bytes) { return output.write(bytes); });
        if (!written)
            throw CallbackFailure{written.error()};
    } else {
        const std::shared_ptr<Buffer> data = stream.getRawStreamData();
        output << std::string_view(reinterpret_cast<const char*>(data->getBuffer()), data->getSize());
    }
    const std::uint64_t end = output.place();
    output << "\nendstream";
    return end - begin;
}

void writeObject(Output& output, QPDF& document, int number, const WrittenStreams& streams)
{
    QPDFObjectHandle object = document.getObject(number, 0);
    output << std::to_string(number) << " 0 obj\n";
    if (object.isStream()) {
        output << object.getDict().unparse();
        const std::uint64_t length = writeStreamBytes(output, object, streams);
        if (streams.contains(object.getObjGen()))
            document.replaceObject(number + 1, 0, QPDFObjectHandle::newInteger(static_cast<long long>(length)));
    } else {
        output << object.unparseResolved();
    }
    output << "\nendobj\n";
}

} // namespace

void writeDocument(QPDF& document, const std::string& version, const WrittenStreams& streams, const PDFSink& sink)
{
    Output output(sink);
    output << "%PDF-" << version << "\n%\xC2\xB5\xC2\xB6\n"; // a comment that shows the file not to be text
    const int count = static_cast<int>(document.getObjectCount());
    std::string table = "0000000000 65535 f \n";
    for (int number = 1; number <= count; ++number) {
        table += tableRow(output.place());
        writeObject(output, document, number, streams);
    }
    const std::uint64_t tablePlace = output.place();
    const std::string size = std::to_string(count + 1);
    QPDFObjectHandle trailer = document.getTrailer();
    trailer.replaceKey("/Size", QPDFObjectHandle::newInteger(count + 1));
    const QPDFObjectHandle id = QPDFObjectHandle::newString(output.checksum());
    trailer.replaceKey("/ID", QPDFObjectHandle::newArray({id, id}));
    output << "xref\n0 " << size << "\n" << table << "trailer\n" << trailer.unparse();
    output << "\nstartxref\n" << std::to_string(tablePlace) << "\n%%EOF\n";
}

} // namespace lamina
