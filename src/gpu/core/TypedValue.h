#pragma once

#include "gpu/core/GPUVectors.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace lamina {

struct ValueKind;

/// The name of a file to be read.
struct FilePath {
    std::string path;
    friend bool operator==(const FilePath&, const FilePath&) = default;
};

/// One of a few that have names.
struct NamedChoice {
    const ValueKind* kind = nullptr; ///< whose syntax holds the names; lives as long as the value is used
    int index = 0;                   ///< of the name, from 0
    friend bool operator==(const NamedChoice&, const NamedChoice&) = default;
};

/// A value that can be written as a text: an argument of an operation, a property of a filter. Its alternative is its
/// type.
using TypedValue =
    std::variant<float, int, bool, CGPoint, CGSize, GPUVector3, GPUVector4, GPUMatrix3x3, GPUMatrix4x4, std::string,
                 std::uint32_t, std::vector<CGPoint>, FilePath, CGRect, CGAffineTransform, NamedChoice>;

/// The types, in the order of the alternatives.
enum class ValueType : std::uint8_t {
    Number,
    Integer,
    Flag,
    Point,
    Size,
    Color,
    Vector,
    Matrix3,
    Matrix4,
    Text,
    Count,
    Points,
    File,
    Rectangle,
    Transform,
    Choice,
};

/// As the minimum of a range: whatever is above 0.
inline constexpr double kAboveZero = std::numeric_limits<double>::denorm_min();

/// Numbers from `minimum` to `maximum`, both included.
struct ValueRange {
    double minimum = -std::numeric_limits<double>::infinity();
    double maximum = std::numeric_limits<double>::infinity();

    constexpr bool contains(double value) const { return value >= minimum && value <= maximum; }
};

/// "0 to 1", "from 0", "above 0", "up to 5", or nothing where neither end is bounded.
std::string formatRange(const ValueRange& range);

/// What a value has to be, as tables of options hold it: its type, what is demanded beyond the type, and how both are
/// told.
struct ValueKind {
    ValueType type = ValueType::Number;
    std::string_view name;   ///< for lists: "number", "size", "positive" ...
    std::string_view syntax; ///< for help: "NUMBER", "WxH", "A,B,C;D,E,F;G,H,I" ...; of a choice its names, "one|other"
    std::string_view expected; ///< goes on after "must be": "a number", "a size written WxH" ...
    ValueRange range;          ///< of each number in it
};

/// The kinds that differ by their types alone, and those that several tables share.
namespace kind {

inline constexpr ValueKind kNumber{ValueType::Number, "number", "NUMBER", "a number", {}};
inline constexpr ValueKind kInteger{ValueType::Integer, "integer", "INTEGER", "an integer", {}};
inline constexpr ValueKind kFlag{ValueType::Flag, "flag", "0|1", "a flag written 0|1", {}};
inline constexpr ValueKind kPoint{ValueType::Point, "point", "X,Y", "a point written X,Y", {}};
inline constexpr ValueKind kSize{ValueType::Size, "size", "WxH", "a size written WxH", {}};
inline constexpr ValueKind kColor{ValueType::Color, "color", "R,G,B", "a color written R,G,B", {}};
inline constexpr ValueKind kVector{ValueType::Vector, "vector", "A,B,C,D", "a vector written A,B,C,D", {}};
inline constexpr ValueKind kMatrix3{
    ValueType::Matrix3, "matrix3", "A,B,C;D,E,F;G,H,I", "a matrix3 written A,B,C;D,E,F;G,H,I", {}};
inline constexpr ValueKind kMatrix4{ValueType::Matrix4,
                                    "matrix4",
                                    "A,B,C,D;E,F,G,H;I,J,K,L;M,N,O,P",
                                    "a matrix4 written A,B,C,D;E,F,G,H;I,J,K,L;M,N,O,P",
                                    {}};
inline constexpr ValueKind kText{ValueType::Text, "text", "TEXT", "a text", {}};
/// From 1 to 4294967295.
inline constexpr ValueKind kCount{ValueType::Count, "count", "COUNT", "a whole number above 0", {kAboveZero}};
/// At least one.
inline constexpr ValueKind kPoints{ValueType::Points, "points", "X,Y;X,Y;...", "points written X,Y;X,Y;...", {}};
/// Not empty; in a list with commas it takes the rest with its commas.
inline constexpr ValueKind kFile{ValueType::File, "file", "FILE", "a file", {}};
/// A corner, a width and a height.
inline constexpr ValueKind kRectangle{ValueType::Rectangle, "rectangle", "X,Y,W,H", "a rectangle written X,Y,W,H", {}};
/// x' = A x + C y + TX, y' = B x + D y + TY.
inline constexpr ValueKind kTransform{
    ValueType::Transform, "transform", "A,B,C,D,TX,TY", "a transform written A,B,C,D,TX,TY", {}};
inline constexpr ValueKind kPositive{ValueType::Number, "positive", "NUMBER", "a number above 0", {kAboveZero}};

} // namespace kind

/// The kind that is told by the value's type alone; of a choice its own.
const ValueKind& kindOf(const TypedValue& value);

/// Reads a value of this kind. Numbers are finite, with a decimal point whatever the locale; nothing may stand before
/// or behind them. The error's subject is the text, its cause "expected " and the syntax.
Result<TypedValue> parseValue(std::string_view text, const ValueKind& kind);

/// As `parseValue` reads it: the shortest digits that give the same value back.
std::string formatValue(const TypedValue& value);

/// The texts between the separators, at least one; they may be empty.
std::vector<std::string_view> fieldsOf(std::string_view list, char separator);

/// A number as in `parseValue`, in double precision. The error's subject is the text; its cause names the range.
Result<double> parseNumber(std::string_view text, const ValueRange& range = {});

} // namespace lamina
