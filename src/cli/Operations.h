#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/UIImage.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace lamina {

/// What may stand for an argument on the command line.
enum class ArgumentKind {
    Number,   ///< finite, within single precision: `double`
    Positive, ///< the same, above 0: `double`
    Whole,    ///< an integer of 32 bits: `long`
    Count,    ///< an integer from 1 to 4294967295: `long`
    Flag,     ///< 0 or 1: `bool`
    Size,     ///< WIDTHxHEIGHT, both above 0: `CGSize`
    Picture,  ///< a file, the rest of the text with its commas: its name as `std::string`, then the `UIImage` read from
              ///< it
};

struct OperationArgument {
    std::string_view name;
    ArgumentKind kind;
    std::string_view about;         ///< unit and meaning
    std::string_view fallback = {}; ///< taken when the argument is left out; empty: it may not be
};

/// The arguments of one operation, in order, each of the type that its kind says.
class OperationValues {
public:
    using Value = std::variant<double, long, bool, CGSize, std::string, UIImage>;

    void append(Value value) { m_values.push_back(std::move(value)); }
    std::span<Value> all() { return m_values; }
    std::span<const Value> all() const { return m_values; }

    float number(std::size_t i) const { return static_cast<float>(std::get<double>(m_values.at(i))); }
    long whole(std::size_t i) const { return std::get<long>(m_values.at(i)); }
    bool flag(std::size_t i) const { return std::get<bool>(m_values.at(i)); }
    CGSize size(std::size_t i) const { return std::get<CGSize>(m_values.at(i)); }
    const UIImage& picture(std::size_t i) const { return std::get<UIImage>(m_values.at(i)); }

private:
    std::vector<Value> m_values;
};

/// One operation on a picture as the shell knows it.
struct Operation {
    std::string_view name;
    std::string_view about;
    std::vector<OperationArgument> arguments;
    std::string_view example; ///< arguments as they may be typed; empty where there are none
    UIImage (*perform)(const UIImage& image, const OperationValues& values);
    /// Why good arguments don't suit this picture; empty when they do. Null where any picture will do.
    std::string (*refusal)(const UIImage& image, const OperationValues& values) = nullptr;
};

/// All operations, in the order in which they are listed: parsing, help and the machine-readable list go by this table
/// alone.
std::span<const Operation> operations();

} // namespace lamina
