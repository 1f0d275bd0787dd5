#pragma once

#include <QByteArray>
#include <QIODevice>

#include <cstddef>
#include <cstdint>
#include <vector>
#include <zlib.h>

namespace lamina {

/// An answer's body piece by piece as it comes, unpacked where it came as gzip (RFC 1952). Never holds more than a
/// piece of either side, whatever the packed bytes unfold to.
class BodyReader {
public:
    static constexpr std::size_t kPiece = 64 << 10;

    /// `device` must outlive this.
    BodyReader(QIODevice& device, bool isPacked);
    ~BodyReader();
    BodyReader(const BodyReader&) = delete;
    BodyReader& operator=(const BodyReader&) = delete;

    /// What comes next, at most `kPiece`; empty when nothing is at hand, or nothing can be made of it.
    std::vector<std::uint8_t> read();
    /// What came is not what its packing should be.
    bool isDamaged() const { return m_state == State::Damaged; }
    /// All that was begun has ended; asked when no more will come.
    bool isWhole() const { return m_state != State::Within && m_state != State::Damaged; }
    /// How many bytes were taken from the device.
    std::int64_t taken() const { return m_taken; }

private:
    enum class State {
        Plain,
        Unbegun, ///< nothing has come
        Within,  ///< a member of the packed stream
        Between, ///< a member has ended; another may follow
        Behind,  ///< what has followed is none
        Damaged
    };

    std::size_t unpack(std::uint8_t* out);
    void unpackFurther();
    bool refill();

    QIODevice& m_device;
    State m_state;
    std::int64_t m_taken = 0;
    QByteArray m_packed;
    z_stream m_stream{};
};

} // namespace lamina
