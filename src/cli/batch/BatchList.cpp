#include "cli/batch/BatchList.h"

#include "cli/common/Messages.h"
#include "cli/common/StandardInput.h"
#include "gpu/core/TypedValue.h"
#include "platform/files/FileReading.h"

#include <cstdint>
#include <span>
#include <variant>

namespace lamina {

namespace {

constexpr std::size_t kMostBytes = std::size_t{64} << 20;
constexpr std::size_t kMostNames = 1'000'000;

/// Searches through many folders take their time.
constexpr PipePatience kPatience{.writer = 600, .whole = 3600};

} // namespace

Result<Shard> parseShard(const std::string& text)
{
    std::vector<std::uint32_t> numbers;
    for (const std::string_view field : fieldsOf(text, '/')) {
        const Result<TypedValue> number = parseValue(field, kind::kCount);
        numbers.push_back(number ? std::get<std::uint32_t>(*number) : 0);
    }
    if (numbers.size() != 2 || numbers[0] == 0 || numbers[0] > numbers[1])
        return Error{"--shard", "expected K/N with K from 1 to N, as in 2/4"};
    return Shard{numbers[0], numbers[1]};
}

std::vector<std::string> namesIn(std::string_view list)
{
    const char end = list.find('\0') == std::string_view::npos ? '\n' : '\0';
    std::vector<std::string> names;
    while (!list.empty()) {
        const std::size_t length = list.find(end);
        std::string_view name = list.substr(0, length);
        if (end == '\n' && name.ends_with('\r'))
            name.remove_suffix(1);
        if (!name.empty())
            names.emplace_back(name);
        list.remove_prefix(length == std::string_view::npos ? list.size() : length + 1);
    }
    return names;
}

Result<std::vector<std::string>> readNameList(const std::string& path)
{
    const Result<std::vector<std::uint8_t>> bytes =
        path == "-" ? readStandardInput(kMostBytes) : readSmallInput(path, kMostBytes, kPatience);
    if (!bytes)
        return bytes.error();
    std::vector<std::string> names = namesIn({reinterpret_cast<const char*>(bytes->data()), bytes->size()});
    if (names.size() > kMostNames)
        return Error{path, "names more than " + std::to_string(kMostNames) + " files"};
    return names;
}

} // namespace lamina
