#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/HeifItems_p.h"

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace lamina {

/// A HEIF file made of another, which must outlive it: boxes of our own that hold one of its pictures and what that
/// one is made of, and behind them, untouched, the whole of the other file. What reads this sees the items that were
/// weighed and nothing else, however it would have understood the other file's boxes.
class HeifExtract final : public ByteSource {
public:
    /// `id`: a picture that was found sound.
    static Result<HeifExtract> make(ByteSource& source, const HeifItems& items, std::uint64_t id);

    std::uint64_t size() const override { return m_head.size() + m_source->size(); }
    std::size_t read(std::uint64_t offset, std::span<std::uint8_t> target) override;

private:
    HeifExtract(ByteSource& source, std::vector<std::uint8_t> head)
        : m_source(&source)
        , m_head(std::move(head))
    {
    }

    ByteSource* m_source;
    std::vector<std::uint8_t> m_head;
};

} // namespace lamina
