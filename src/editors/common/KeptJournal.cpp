#include "editors/common/KeptJournal.h"

#include <QCryptographicHash>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <optional>

namespace lamina {

namespace {

constexpr std::string_view kMark = "lamina-kept ";
constexpr int kVersion = 1;
constexpr std::size_t kHashDigits = 64;

std::string hashOf(std::string_view text)
{
    return contentHash({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

/// Takes a number and the sign after it off the front.
std::optional<std::size_t> takeNumber(std::string_view& text, char after)
{
    std::size_t value = 0;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, value);
    if (error != std::errc() || end == last || *end != after)
        return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()) + 1);
    return value;
}

/// Takes what follows the version off the front when it is a whole record.
std::optional<std::string_view> takeRecord(std::string_view& text)
{
    std::string_view rest = text;
    const auto length = takeNumber(rest, ' ');
    if (!length || rest.size() < kHashDigits + 1 || *length >= rest.size() - kHashDigits - 1)
        return std::nullopt;
    const std::string_view record = rest.substr(kHashDigits + 1, *length);
    if (rest[kHashDigits] != '\n' || hashOf(record) != rest.substr(0, kHashDigits))
        return std::nullopt;
    text = rest.substr(kHashDigits + 1 + *length);
    return record;
}

} // namespace

std::string contentHash(std::span<const std::uint8_t> bytes)
{
    const QByteArrayView view(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(view);
    return hash.result().toHex().toStdString();
}

std::vector<std::uint8_t> journalOf(std::span<const std::string> records)
{
    std::string text;
    for (const std::string& record : records)
        text.append(kMark)
            .append(std::to_string(kVersion) + ' ' + std::to_string(record.size()) + ' ' + hashOf(record) + '\n')
            .append(record + '\n');
    return {text.begin(), text.end()};
}

JournalContents readJournal(std::span<const std::uint8_t> bytes)
{
    JournalContents contents;
    std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    for (;;) {
        const std::size_t mark = text.find(kMark);
        if (mark == std::string_view::npos)
            return contents;
        text.remove_prefix(mark + kMark.size());
        std::string_view rest = text;
        const auto version = takeNumber(rest, ' ');
        if (version == kVersion) {
            if (const auto record = takeRecord(rest)) {
                contents.records.emplace_back(*record);
                text = rest;
            }
        } else if (version > kVersion) {
            contents.isNewer = true;
        }
    }
}

} // namespace lamina
