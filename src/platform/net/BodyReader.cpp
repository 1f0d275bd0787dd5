#include "platform/net/BodyReader_p.h"

namespace lamina {

BodyReader::BodyReader(QIODevice& device, bool isPacked)
    : m_device(device)
    , m_state(isPacked ? State::Unbegun : State::Plain)
{
    constexpr int kLargestWindowOfGzip = 15 + 16;
    if (isPacked && inflateInit2(&m_stream, kLargestWindowOfGzip) != Z_OK)
        m_state = State::Damaged;
}

BodyReader::~BodyReader()
{
    inflateEnd(&m_stream);
}

std::vector<std::uint8_t> BodyReader::read()
{
    std::vector<std::uint8_t> piece(kPiece);
    std::size_t size = 0;
    if (m_state == State::Plain) {
        const qint64 read = m_device.read(reinterpret_cast<char*>(piece.data()), static_cast<qint64>(piece.size()));
        size = read > 0 ? static_cast<std::size_t>(read) : 0;
        m_taken += static_cast<std::int64_t>(size);
    } else {
        size = unpack(piece.data());
    }
    piece.resize(size);
    piece.shrink_to_fit();
    return piece;
}

std::size_t BodyReader::unpack(std::uint8_t* out)
{
    m_stream.next_out = out;
    m_stream.avail_out = kPiece;
    bool mayHoldOutput = m_state == State::Within; // of the call before, whose piece was full
    while (m_stream.avail_out > 0 && (m_stream.avail_in > 0 || refill() || mayHoldOutput)) {
        unpackFurther();
        mayHoldOutput = false;
    }
    return kPiece - m_stream.avail_out;
}

void BodyReader::unpackFurther()
{
    if (m_state == State::Between) {
        constexpr Bytef kFirstOfMember = 0x1F;
        m_state = *m_stream.next_in == kFirstOfMember ? State::Within : State::Behind;
        inflateReset(&m_stream);
    }
    if (m_state == State::Behind || m_state == State::Damaged) {
        m_stream.avail_in = 0;
        return;
    }
    m_state = State::Within;
    const int result = inflate(&m_stream, Z_NO_FLUSH);
    if (result == Z_STREAM_END)
        m_state = State::Between;
    else if (result != Z_OK && result != Z_BUF_ERROR)
        m_state = State::Damaged;
}

bool BodyReader::refill()
{
    m_packed = m_device.read(kPiece);
    m_taken += m_packed.size();
    m_stream.next_in = reinterpret_cast<Bytef*>(m_packed.data());
    m_stream.avail_in = static_cast<uInt>(m_packed.size());
    return !m_packed.isEmpty();
}

} // namespace lamina
