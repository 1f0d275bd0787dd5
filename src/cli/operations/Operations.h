#pragma once

#include "gpu/core/TypedValue.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace lamina {

/// One argument of an operation.
struct OperationArgument {
    std::string_view name;
    ValueKind kind;
    std::string_view about;                  ///< unit and meaning
    std::optional<TypedValue> fallback = {}; ///< taken when the argument is left out; nothing: it may not be
};

/// The arguments of one operation, in order, each of the type that its kind says.
struct OperationValues {
    std::vector<TypedValue> values;
    std::vector<UIImage> pictures; ///< read from the files that the values name, in their order

    // Argument i, from 0, whose kind must be one of the type asked for; throws as `at` and `std::get` do where it
    // isn't.

    /// A number: an amount, an angle, a factor, by what the operation says of it.
    float number(std::size_t i) const { return std::get<float>(values.at(i)); }
    /// A whole number that may be negative, as of a mode.
    int whole(std::size_t i) const { return std::get<int>(values.at(i)); }
    /// A whole number from 0.
    std::uint32_t count(std::size_t i) const { return std::get<std::uint32_t>(values.at(i)); }
    /// Yes or no.
    bool flag(std::size_t i) const { return std::get<bool>(values.at(i)); }
    /// A width and a height, in points.
    CGSize size(std::size_t i) const { return std::get<CGSize>(values.at(i)); }
};

/// One operation on a picture as the shell knows it.
struct Operation {
    std::string_view name;
    std::string_view about;
    std::vector<OperationArgument> arguments;
    std::string_view example; ///< arguments as they may be typed; empty where there are none
    /// The operation itself, on a picture and arguments that `check` has no word against. Empty where there can be no
    /// result.
    UIImage (*perform)(const UIImage& image, const OperationValues& values);
    /// Whether good arguments suit this picture too. Null where any picture will do.
    Outcome (*check)(const UIImage& image, const OperationValues& values) = nullptr;
    /// Of what scales: the size in points that it gives a picture of `own` points. Null for all else.
    CGSize (*scaledSize)(CGSize own, const OperationValues& values) = nullptr;
};

/// All operations, in the order in which they are listed: parsing, help and the machine-readable list go by this table
/// alone.
std::span<const Operation> operations();

} // namespace lamina
