#pragma once

#include "editors/common/RecordValue.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <optional>

/// How the values that compositions are made of stand in a record, beside what the library knows by itself.
namespace lamina {

/// Runs `read`, which takes values out of a record and says whether they make sense; false also where one is missing
/// or of another kind.
template <class Read>
bool readRecordValue(Read read)
{
    try {
        return read();
    } catch (const nlohmann::json::exception&) {
        return false;
    }
}

/// Of a canvas, points: far beyond all that there are, and small enough to be flattened.
inline constexpr double kLargestKeptSide = 2048;

/// Whether a canvas of a record can be shown.
inline bool isKeptSide(double side)
{
    return side >= 1 && side <= kLargestKeptSide;
}

/// [x, y], found by the library beside the type.
inline void to_json(RecordValue& value, const CGPoint& point)
{
    value = std::array{point.x, point.y};
}
/// See to_json.
inline void from_json(const RecordValue& value, CGPoint& point)
{
    const auto read = value.get<std::array<double, 2>>();
    point = {read[0], read[1]};
}

/// [width, height], likewise.
inline void to_json(RecordValue& value, const CGSize& size)
{
    value = std::array{size.width, size.height};
}
/// See to_json.
inline void from_json(const RecordValue& value, CGSize& size)
{
    const auto read = value.get<std::array<double, 2>>();
    size = {read[0], read[1]};
}

/// [red, green, blue, alpha], likewise.
inline void to_json(RecordValue& value, const UIColor& color)
{
    value = std::array{color.red, color.green, color.blue, color.alpha};
}
/// See to_json.
inline void from_json(const RecordValue& value, UIColor& color)
{
    const auto read = value.get<std::array<double, 4>>();
    color = {read[0], read[1], read[2], read[3]};
}

/// A colour or null, which stands for none. False for one that has a component outside 0 to 1; throws for what is none.
inline bool readColor(const RecordValue& value, std::optional<UIColor>& color)
{
    color.reset();
    if (value.is_null())
        return true;
    color = value.get<UIColor>();
    const double components[] = {color->red, color->green, color->blue, color->alpha};
    return std::ranges::all_of(components, [](double component) { return component >= 0 && component <= 1; });
}

/// [a, b, c, d, tx, ty], likewise.
inline void to_json(RecordValue& value, const CGAffineTransform& t)
{
    value = std::array{t.a, t.b, t.c, t.d, t.tx, t.ty};
}
/// See to_json.
inline void from_json(const RecordValue& value, CGAffineTransform& transform)
{
    const auto read = value.get<std::array<double, 6>>();
    transform = {read[0], read[1], read[2], read[3], read[4], read[5]};
}

} // namespace lamina
